#include "editors/camera/Camera.h"

#include "editors/AllKinds.h"
#include "editors/camera/CameraAngles.h"
#include "interfaces/FollowCameraMessage.h"
#include "interfaces/ViewedCamera.h"
#include "interfaces/kinds/KindEntry.h"

namespace vlEditor {
namespace {

using Engine = vlGraphics::Camera;

vlCommon::Result<> refuse(const Engine& camera, const std::string& reason) {
    return vlCommon::fail(thingNamed(CameraKind::texts, camera.getName()) + ": " + reason);
}

template <class Change> vlCommon::Result<> changeSettings(Engine& camera, Change change) {
    Engine::Settings settings = camera.getSettings();
    change(settings);
    const auto good = Engine::check(settings);
    if (!good) return refuse(camera, good.error().message);
    camera.setSettings(settings);
    return {};
}

/// What is typed there is no part of the camera, so the boxes keep it.
void bindLookAt(Bindings<CameraKind>& window) {
    const std::string base = window.getBase() + "_LOOK_AT_";
    const auto pressed = [&window, base] {
        const auto typed = [&base](const char* axis) {
            return parseNumber<float>(editText(base + "EDIT_" + axis).value_or(""));
        };
        const CameraLookAt target{typed("X"), typed("Y"), typed("Z")};
        window.post(target, [](CameraLookAt&) {});
    };
    bindButton(base + "BUTTON", pressed);
    for (const char* axis : {"X", "Y", "Z"})
        bindEdit(base + "EDIT_" + axis, pressed);
}

} // namespace

vlCommon::Result<> CameraProjection::applyTo(Engine& camera) const {
    if (value > orthographic)
        return refuse(camera, "there is no projection " + std::to_string(value));
    return changeSettings(camera,
                          [&](auto& settings) { settings.orthographic = value == orthographic; });
}

vlCommon::Result<> CameraFieldOfView::applyTo(Engine& camera) const {
    if (value == degreesOf(camera.getFieldOfView())) return {};
    if (!(value > 0 && value < 180))
        return refuse(camera, "the field of view must be above 0 and below 180 degrees");
    return changeSettings(camera, [&](auto& settings) { settings.fieldOfView = radiansOf(value); });
}

void CameraFieldOfView::readFrom(const CameraRecord& record) {
    value = degreesOf(record.fieldOfView);
}

vlCommon::Result<> CameraPlanes::applyTo(Engine& camera) const {
    return changeSettings(camera, [&](auto& settings) {
        settings.nearDistance = nearDistance;
        settings.farDistance = farDistance;
    });
}

vlCommon::Result<> CameraSize::applyTo(Engine& camera) const {
    return changeSettings(camera, [&](auto& settings) { settings.orthographicHeight = value; });
}

vlCommon::Result<> CameraPosition::applyTo(Engine& camera) const {
    return changeSettings(camera, [&](auto& settings) { settings.position = {x, y, z, 1}; });
}

vlCommon::Result<> CameraOrientation::applyTo(Engine& camera) const {
    const CameraAngles wanted{pitch, yaw, roll};
    if (wanted == CameraAngles::of(camera.getOrientationAbsolute())) return {};
    return changeSettings(camera,
                          [&](auto& settings) { settings.orientation = wanted.toOrientation(); });
}

void CameraOrientation::readFrom(const CameraRecord& record) {
    const CameraAngles angles = CameraAngles::of(record.orientation);
    pitch = angles.pitch;
    yaw = angles.yaw;
    roll = angles.roll;
}

vlCommon::Result<> CameraLookAt::applyTo(Engine& camera) const {
    if (camera.lookAt({x, y, z, 1}, {0, 1, 0})) return {};
    return refuse(camera, "the point to look at is where the camera is");
}

vlCommon::Result<> CameraCopyViewport::applyTo(Engine& camera) const {
    ViewedCamera* viewed = ViewedCamera::current();
    const Engine* source = viewed == nullptr ? nullptr : viewed->getCamera();
    if (source == nullptr) return refuse(camera, "no viewport is open to copy from");
    camera.setSettings(source->getSettings());
    return {};
}

void CameraKind::bind(Bindings<CameraKind>& window) {
    window.combo("_PROJECTION_COMBO",
                 CameraProjection{},
                 {{"Perspective", CameraProjection::perspective},
                  {"Orthographic", CameraProjection::orthographic}});
    window.number("_FOV_EDIT", "_FOV_BUTTON", CameraFieldOfView{});
    window.numbers("_PLANES_BUTTON",
                   CameraPlanes{},
                   NumberBox{"_NEAR_EDIT", &CameraPlanes::nearDistance},
                   NumberBox{"_FAR_EDIT", &CameraPlanes::farDistance});
    window.number("_SIZE_EDIT", "_SIZE_BUTTON", CameraSize{});
    window.numbers("_POS_BUTTON",
                   CameraPosition{},
                   NumberBox{"_POS_EDIT_X", &CameraPosition::x},
                   NumberBox{"_POS_EDIT_Y", &CameraPosition::y},
                   NumberBox{"_POS_EDIT_Z", &CameraPosition::z});
    window.numbers("_ROT_BUTTON",
                   CameraOrientation{},
                   NumberBox{"_ROT_EDIT_X", &CameraOrientation::pitch},
                   NumberBox{"_ROT_EDIT_Y", &CameraOrientation::yaw},
                   NumberBox{"_ROT_EDIT_Z", &CameraOrientation::roll});
    bindLookAt(window);
    window.button("_COPY_VIEWPORT_BUTTON", [&window](const auto&) {
        window.post(CameraCopyViewport{}, [](CameraCopyViewport&) {});
    });
    window.button("_SHOW_VIEWPORT_BUTTON",
                  [](const auto& names) { postToGraphics(FollowCameraMessage(names.front())); });
    bindButton(window.getBase() + "_OWN_VIEW_BUTTON",
               [] { postToGraphics(FollowCameraMessage()); });
}

const AnyKind& cameraKind() {
    static const KindEntry<CameraKind,
                           CameraProjection,
                           CameraFieldOfView,
                           CameraPlanes,
                           CameraSize,
                           CameraPosition,
                           CameraOrientation,
                           CameraLookAt,
                           CameraCopyViewport>
            kind;
    return kind;
}

} // namespace vlEditor
