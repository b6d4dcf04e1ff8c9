#pragma once
#include <vlGraphics/ResourceManager.h>
#include <vlMaths/Matrix.h>
#include <vlMaths/Quaternion.h>
#include <vlMaths/Vector.h>

#include <array>

namespace vlGraphics {

class RenderContext;

/** Where a picture is taken from. Left-handed: looks along its own +Z, +Y up, +X right.
 *  Starts at the origin with a perspective of 60 degrees, near 0.1, far 1000. */
class Camera final : public Resource {
public:
    static constexpr vlMemory::StringView kindName = "camera";

    struct Settings {
        vlMaths::Vector position{0, 0, 0, 1};
        vlMaths::Quaternion orientation;
        bool orthographic = false;
        float fieldOfView = 1.0471976F; ///< vertical, radians, above 0 and below pi
        float nearDistance = 0.1F;      ///< above 0 for perspective
        float farDistance = 1000;       ///< above nearDistance
        float orthographicHeight = 10;  ///< of the visible box, world units
    };

    const Settings& getSettings() const { return settings_; }
    /// Why these values make no camera (not finite, out of range, near not below far), without its
    /// name: "the near distance must be above 0 and below the far one".
    static vlCommon::Result<> check(const Settings& settings);
    /// Values that make no camera are refused, here and below: false, and nothing has changed.
    bool setSettings(const Settings& settings);

    const vlMaths::Vector& getPositionAbsolute() const { return settings_.position; }
    const vlMaths::Quaternion& getOrientationAbsolute() const { return settings_.orientation; }
    bool getOrthographic() const { return settings_.orthographic; }
    float getFieldOfView() const { return settings_.fieldOfView; }
    float getNearDistance() const { return settings_.nearDistance; }
    float getFarDistance() const { return settings_.farDistance; }
    float getOrthographicHeight() const { return settings_.orthographicHeight; }
    bool setPosition(const vlMaths::Vector& position);
    bool setOrientation(const vlMaths::Quaternion& orientation);
    bool setOrthographic(bool orthographic);
    bool setFieldOfView(float radians);
    bool setNearDistance(float distance);
    bool setFarDistance(float distance);
    bool setOrthographicHeight(float height);
    /// Moves by a vector given in the camera's own frame.
    void translateLocal(const vlMaths::Vector& offset);
    void rotateWorld(const vlMaths::Vector& axis, float radians);
    void rotateLocal(const vlMaths::Vector& axis, float radians);
    /// Turns towards a point. The second vector is the wished up direction; zero, or one along the
    /// view, means +Y (+Z where that is along the view too). False, with nothing changed, where the
    /// target gives no direction: it is at the camera, or not finite.
    bool lookAt(const vlMaths::Vector& target, const vlMaths::Vector& up);
    vlMaths::Vector getAbsoluteRight() const;
    vlMaths::Vector getAbsoluteUp() const;
    vlMaths::Vector getAbsoluteFront() const;

    /// Takes the aspect ratio of the context's back buffer.
    void prepareForContext(const RenderContext& context);
    void setAspectRatio(float widthOverHeight);
    float getAspectRatio() const { return aspectRatio_; }

    const vlMaths::Matrix& getViewMatrix() const;
    const vlMaths::Matrix& getProjectionMatrix() const;
    /// projection * view
    const vlMaths::Matrix& getViewProjectionMatrix() const;
    /// World direction (unit) through the middle of pixel (x, y) of a picture of that size.
    vlMaths::Vector
    getDirectionAtPixelWorld(float x, float y, std::uint32_t width, std::uint32_t height) const;
    /// The far plane's corners: top left, top right, bottom left, bottom right.
    std::array<vlMaths::Vector, 4> getCornersView() const;
    std::array<vlMaths::Vector, 4> getCornersWorld() const;

private:
    void update() const;
    void changed();
    template <class Value> bool change(Value Settings::*setting, const Value& value);

    Settings settings_;
    float aspectRatio_ = 16.0F / 9.0F;
    mutable bool stale_ = true;
    mutable vlMaths::Matrix view_;
    mutable vlMaths::Matrix projection_;
    mutable vlMaths::Matrix viewProjection_;
};

class CameraManager final : public ResourceManager<Camera>,
                            public vlCommon::MaybeSingletonClass<CameraManager> {
public:
    /// Renders where a context or a pass names no camera. Hidden, exists while the engine runs.
    Camera* getDefaultCamera();
    /// The camera of the context being drawn; the default camera outside a frame.
    Camera* getActiveRenderCamera();
};

} // namespace vlGraphics
