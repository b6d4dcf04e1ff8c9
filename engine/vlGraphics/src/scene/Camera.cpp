#include <vlGraphics/Camera.h>
#include <vlGraphics/DefaultNames.h>

#include <cmath>
#include <numbers>

namespace vlGraphics {

namespace {

bool isFinitePoint(const vlMaths::Vector& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

bool hasLength(const vlMaths::Quaternion& q) {
    const float size = lengthSquared(q);
    return size > 0.0F && std::isfinite(size);
}

/// Nearly unit orientations stay bit by bit what they are, so that they survive files.
vlMaths::Quaternion unit(const vlMaths::Quaternion& q) {
    constexpr float tolerance = 1e-5F;
    return std::abs(lengthSquared(q) - 1.0F) <= tolerance ? q : normalised(q);
}

vlMaths::Matrix projectionOf(const Camera::Settings& s, float aspect) {
    if (s.orthographic) {
        return vlMaths::Matrix::orthographic(
                s.orthographicHeight * aspect, s.orthographicHeight, s.nearDistance, s.farDistance);
    }
    return vlMaths::Matrix::perspective(s.fieldOfView, aspect, s.nearDistance, s.farDistance);
}

bool equal(const Camera::Settings& a, const Camera::Settings& b) {
    return a.position == b.position && a.orientation == b.orientation &&
           a.orthographic == b.orthographic && a.fieldOfView == b.fieldOfView &&
           a.nearDistance == b.nearDistance && a.farDistance == b.farDistance &&
           a.orthographicHeight == b.orthographicHeight;
}

/// Half of what the camera sees at distance 1 (perspective) or anywhere (orthographic): x, y.
vlMaths::Vector halfExtent(const Camera::Settings& s, float aspect) {
    const float height =
            s.orthographic ? s.orthographicHeight * 0.5F : std::tan(s.fieldOfView * 0.5F);
    return {height * aspect, height, 0};
}

} // namespace

vlCommon::Result<> Camera::check(const Settings& s) {
    if (!isFinitePoint(s.position)) return vlCommon::fail("the position must be finite");
    if (!hasLength(s.orientation)) return vlCommon::fail("the orientation must have a length");
    if (!(s.fieldOfView > 0) || !(s.fieldOfView < std::numbers::pi_v<float>))
        return vlCommon::fail("the field of view must be above 0 and below half a turn");
    const bool isOrdered = s.nearDistance < s.farDistance && std::isfinite(s.farDistance);
    if (!s.orthographic && !(isOrdered && s.nearDistance > 0))
        return vlCommon::fail("the near distance must be above 0 and below the far one");
    if (!isOrdered || !std::isfinite(s.nearDistance))
        return vlCommon::fail("the near distance must be below the far one");
    if (!(s.orthographicHeight > 0) || !std::isfinite(s.orthographicHeight))
        return vlCommon::fail("the height of the orthographic box must be above 0");
    if (!isFinite(projectionOf(s, 1)))
        return vlCommon::fail("its distances, angle and height are too extreme to project with");
    return {};
}

bool Camera::setSettings(const Settings& settings) {
    if (!check(settings)) return false;
    Settings taken = settings;
    taken.position = settings.position.withW(1);
    taken.orientation = unit(settings.orientation);
    // A zero's sign makes no other picture, but it is kept, for files.
    const bool isSame = equal(taken, settings_);
    settings_ = taken;
    if (!isSame) changed();
    return true;
}

template <class Value> bool Camera::change(Value Settings::*setting, const Value& value) {
    Settings settings = settings_;
    settings.*setting = value;
    return setSettings(settings);
}

bool Camera::setPosition(const vlMaths::Vector& position) {
    return change(&Settings::position, position);
}
bool Camera::setOrientation(const vlMaths::Quaternion& orientation) {
    return change(&Settings::orientation, orientation);
}
bool Camera::setOrthographic(bool orthographic) {
    return change(&Settings::orthographic, orthographic);
}
bool Camera::setFieldOfView(float radians) {
    return change(&Settings::fieldOfView, radians);
}
bool Camera::setNearDistance(float distance) {
    return change(&Settings::nearDistance, distance);
}
bool Camera::setFarDistance(float distance) {
    return change(&Settings::farDistance, distance);
}
bool Camera::setOrthographicHeight(float height) {
    return change(&Settings::orthographicHeight, height);
}

void Camera::translateLocal(const vlMaths::Vector& offset) {
    setPosition(settings_.position + rotate(settings_.orientation, offset));
}

void Camera::rotateWorld(const vlMaths::Vector& axis, float radians) {
    setOrientation(
            normalised(vlMaths::Quaternion::fromAxisAngle(axis, radians) * settings_.orientation));
}

void Camera::rotateLocal(const vlMaths::Vector& axis, float radians) {
    setOrientation(
            normalised(settings_.orientation * vlMaths::Quaternion::fromAxisAngle(axis, radians)));
}

bool Camera::lookAt(const vlMaths::Vector& target, const vlMaths::Vector& up) {
    const vlMaths::Vector way = (target - settings_.position).withW(0);
    if (way == vlMaths::Vector() || !isFinitePoint(way) || !isFinitePoint(up)) return false;
    return setOrientation(vlMaths::Quaternion::lookAt(settings_.position, target, up));
}

vlMaths::Vector Camera::getAbsoluteRight() const {
    return rotate(settings_.orientation, {1, 0, 0});
}
vlMaths::Vector Camera::getAbsoluteUp() const {
    return rotate(settings_.orientation, {0, 1, 0});
}
vlMaths::Vector Camera::getAbsoluteFront() const {
    return rotate(settings_.orientation, {0, 0, 1});
}

// A context sets its own ratio each frame, so this must not make the pictures of others out of
// date.
void Camera::setAspectRatio(float widthOverHeight) {
    if (!std::isfinite(widthOverHeight) || !(widthOverHeight > 0)) return;
    if (aspectRatio_ == widthOverHeight) return;
    aspectRatio_ = widthOverHeight;
    stale_ = true;
}

const vlMaths::Matrix& Camera::getViewMatrix() const {
    update();
    return view_;
}
const vlMaths::Matrix& Camera::getProjectionMatrix() const {
    update();
    return projection_;
}
const vlMaths::Matrix& Camera::getViewProjectionMatrix() const {
    update();
    return viewProjection_;
}

vlMaths::Vector Camera::getDirectionAtPixelWorld(float x,
                                                 float y,
                                                 std::uint32_t width,
                                                 std::uint32_t height) const {
    if (settings_.orthographic || width == 0 || height == 0) return getAbsoluteFront();
    const auto w = static_cast<float>(width);
    const auto h = static_cast<float>(height);
    const vlMaths::Vector half = halfExtent(settings_, w / h);
    const vlMaths::Vector inView{
            ((x + 0.5F) / w * 2 - 1) * half.x, (1 - (y + 0.5F) / h * 2) * half.y, 1};
    return normalised(rotate(settings_.orientation, inView));
}

std::array<vlMaths::Vector, 4> Camera::getCornersView() const {
    const float reach = settings_.orthographic ? 1 : settings_.farDistance;
    const vlMaths::Vector half = halfExtent(settings_, aspectRatio_) * reach;
    const float depth = settings_.farDistance;
    return {vlMaths::Vector{-half.x, half.y, depth, 1},
            vlMaths::Vector{half.x, half.y, depth, 1},
            vlMaths::Vector{-half.x, -half.y, depth, 1},
            vlMaths::Vector{half.x, -half.y, depth, 1}};
}

std::array<vlMaths::Vector, 4> Camera::getCornersWorld() const {
    auto corners = getCornersView();
    for (vlMaths::Vector& corner : corners) {
        corner = (settings_.position + rotate(settings_.orientation, corner)).withW(1);
    }
    return corners;
}

void Camera::update() const {
    if (!stale_) return;
    view_ = vlMaths::Matrix::view(settings_.position, settings_.orientation);
    projection_ = projectionOf(settings_, aspectRatio_);
    viewProjection_ = projection_ * view_;
    stale_ = false;
}

void Camera::changed() {
    stale_ = true;
    markChanged();
}

Camera* CameraManager::getDefaultCamera() {
    if (Camera* known = get(DefaultNames::camera)) return known;
    Camera* camera = createOrRetrieve(DefaultNames::camera);
    if (camera == nullptr) return nullptr; // cannot be: the name is a good one
    camera->setHidden(true);
    camera->setPosition({0, 2, -6, 1});
    camera->lookAt({0, 0, 0, 1}, {});
    return camera;
}

} // namespace vlGraphics
