#pragma once
#include "interfaces/ContainerType.h"
#include "interfaces/kinds/ResourceInterface.h"

#include <vlGraphics/Camera.h>

namespace vlEditor {

struct CameraKind;

/** What the UI knows of a camera, as the engine holds it: world units and radians. */
struct CameraRecord {
    std::string name;
    vlMaths::Vector position{0, 0, 0, 1};
    vlMaths::Quaternion orientation;
    bool orthographic = false;
    float fieldOfView = 1.0471976F;
    float nearDistance = 0.1F;
    float farDistance = 1000;
    float orthographicHeight = 10;

    template <class K = CameraKind> static constexpr auto members() { return membersOfFields<K>(); }
    friend bool operator==(const CameraRecord&, const CameraRecord&) = default;
};

struct CameraKind {
    using Record = CameraRecord;
    using Engine = vlGraphics::Camera;
    using Manager = vlGraphics::CameraManager;
    /// What makes a camera are all its values at once.
    using Memento = TreeMemento<CameraKind>;

    static constexpr ContainerType containerType = ContainerType::camera;
    static constexpr KindTexts texts{
            .kind = "Camera",
            .title = "Cameras",
            .prefix = "EDITOR_CAMERA_",
            .creation = "CAMERA_CREATION",
            .creationTitle = "Camera Creation",
            .explorer = "EDITOR_CAMERA_EXPLO",
            .filterLabel = "Camera Decl Files",
            .extension = "vlca",
            .pickLists = {{{"CAMERA_POP_UP_LIST"}}},
            .subject = "Camera",
            .deleteStart = "Deleting Camera '",
    };
    static constexpr KindHooks<Engine> hooks{
            .load = &vlGraphics::ContentLoader::loadCameraDeclaration};
    static constexpr std::tuple fields{
            VL_FIELD(position, getPositionAbsolute, setPosition),
            VL_FIELD(orientation, getOrientationAbsolute, setOrientation),
            VL_FIELD(orthographic, getOrthographic, setOrthographic),
            VL_FIELD(fieldOfView, getFieldOfView, setFieldOfView),
            VL_FIELD(nearDistance, getNearDistance, setNearDistance),
            VL_FIELD(farDistance, getFarDistance, setFarDistance),
            VL_FIELD(orthographicHeight, getOrthographicHeight, setOrthographicHeight),
    };
    static KindLayout layout() { return {"camera.json", {}}; }
    static void bind(Bindings<CameraKind>& window);
};

VL_RESOURCE_KIND_NAMES(Camera);

// What the engine refuses is an error that names the camera and the reason; the camera then stays
// as it was.

struct CameraProjection {
    using Kind = CameraKind;
    static constexpr std::uint32_t perspective = 0, orthographic = 1;
    std::uint32_t value = perspective;

    static constexpr auto members() {
        return std::tuple{Member{"value", &CameraProjection::value}};
    }
    vlCommon::Result<> applyTo(Kind::Engine& camera) const;
    void readFrom(const CameraRecord& record) {
        value = record.orthographic ? orthographic : perspective;
    }
};

struct CameraFieldOfView {
    using Kind = CameraKind;
    float value = 0; ///< vertical, degrees

    static constexpr auto members() {
        return std::tuple{Member{"value", &CameraFieldOfView::value}};
    }
    vlCommon::Result<> applyTo(Kind::Engine& camera) const;
    void readFrom(const CameraRecord& record);
};

struct CameraPlanes {
    using Kind = CameraKind;
    float nearDistance = 0;
    float farDistance = 0;

    static constexpr auto members() {
        return std::tuple{Member{"nearDistance", &CameraPlanes::nearDistance},
                          Member{"farDistance", &CameraPlanes::farDistance}};
    }
    vlCommon::Result<> applyTo(Kind::Engine& camera) const;
    void readFrom(const CameraRecord& record) {
        nearDistance = record.nearDistance;
        farDistance = record.farDistance;
    }
};

struct CameraSize {
    using Kind = CameraKind;
    float value = 0; ///< height of the orthographic box

    static constexpr auto members() { return std::tuple{Member{"value", &CameraSize::value}}; }
    vlCommon::Result<> applyTo(Kind::Engine& camera) const;
    void readFrom(const CameraRecord& record) { value = record.orthographicHeight; }
};

struct CameraPosition {
    using Kind = CameraKind;
    float x = 0;
    float y = 0;
    float z = 0;

    static constexpr auto members() {
        return std::tuple{Member{"x", &CameraPosition::x},
                          Member{"y", &CameraPosition::y},
                          Member{"z", &CameraPosition::z}};
    }
    vlCommon::Result<> applyTo(Kind::Engine& camera) const;
    void readFrom(const CameraRecord& record) {
        x = record.position.x;
        y = record.position.y;
        z = record.position.z;
    }
};

/** Degrees, as CameraAngles has them. Those that the camera has already leave it as it is, however
 *  they are rounded. */
struct CameraOrientation {
    using Kind = CameraKind;
    float pitch = 0;
    float yaw = 0;
    float roll = 0;

    static constexpr auto members() {
        return std::tuple{Member{"pitch", &CameraOrientation::pitch},
                          Member{"yaw", &CameraOrientation::yaw},
                          Member{"roll", &CameraOrientation::roll}};
    }
    vlCommon::Result<> applyTo(Kind::Engine& camera) const;
    void readFrom(const CameraRecord& record);
};

/** Turns a camera to a point, its head up. */
struct CameraLookAt {
    using Kind = CameraKind;
    float x = 0;
    float y = 0;
    float z = 0;

    static constexpr auto members() {
        return std::tuple{Member{"x", &CameraLookAt::x},
                          Member{"y", &CameraLookAt::y},
                          Member{"z", &CameraLookAt::z}};
    }
    vlCommon::Result<> applyTo(Kind::Engine& camera) const;
    void readFrom(const CameraRecord&) {}
};

/** Makes a camera see what the viewport shows that had the input focus last. */
struct CameraCopyViewport {
    using Kind = CameraKind;

    static constexpr auto members() { return std::tuple<>(); }
    vlCommon::Result<> applyTo(Kind::Engine& camera) const;
    void readFrom(const CameraRecord&) {}
};

using CameraProjectionMessage = ResourceEditMessage<CameraProjection>;
using CameraFieldOfViewMessage = ResourceEditMessage<CameraFieldOfView>;
using CameraPlanesMessage = ResourceEditMessage<CameraPlanes>;
using CameraSizeMessage = ResourceEditMessage<CameraSize>;
using CameraPositionMessage = ResourceEditMessage<CameraPosition>;
using CameraOrientationMessage = ResourceEditMessage<CameraOrientation>;
using CameraLookAtMessage = ResourceEditMessage<CameraLookAt>;
using CameraCopyViewportMessage = ResourceEditMessage<CameraCopyViewport>;

} // namespace vlEditor
