#pragma once
#include "editors/shader/PassSlotTypes.h"
#include "editors/shader/ShaderBindingEdits.h"

namespace vlEditor {

/** Another constant buffer, empty, at the lowest free slot. */
struct ChangeShaderAddConstantBuffer {
    using Kind = ShaderKind;

    static constexpr auto members() { return std::tuple<>(); }
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const;
    void readFrom(const ShaderUiData&) {}
};

struct ChangeShaderDelConstantBuffer : DelBinding<ShaderBuffers> {};

struct ChangeShaderConstantBufferBindings : ChangeBindingAddress<ShaderBuffers> {
    using ChangeBindingAddress::applyTo;
    void applyTo(ShaderUiData& shown, const ShaderUiData& fresh) const;
};

/** A slot of the constant buffer at an address. Where there is no such slot an edit changes
 * nothing, with an error. */
struct PassSlotPlace : ShaderAddress {
    using Kind = ShaderKind;
    std::uint32_t slotIndex = 0;

    static constexpr auto members() {
        return std::tuple_cat(ShaderAddress::members(),
                              std::tuple{Member{"slotIndex", &PassSlotPlace::slotIndex}});
    }
    /// Null where there is none.
    const ShaderPassSlotUiData* find(const ShaderUiData& record) const;
    ShaderPassSlotUiData* find(ShaderUiData& record) const;
    std::vector<ShaderPassSlotUiData>* findSlots(ShaderUiData& record) const;
    vlCommon::Result<vlGraphics::ShaderPassMemorySlot*> find(vlGraphics::Shader& shader) const;
    /// The slot is shown as it was read.
    void takeFresh(ShaderUiData& shown, const ShaderUiData& fresh) const;

    void readFrom(const ShaderUiData&) {}
};

struct ChangeShaderAddPassSlot : ShaderAddress {
    using Kind = ShaderKind;

    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const;
    void readFrom(const ShaderUiData&) {}
    void applyTo(ShaderUiData& shown, const ShaderUiData& fresh) const;
};

struct ChangeShaderDelPassSlot : PassSlotPlace {
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const;
    void applyTo(ShaderUiData& shown, const ShaderUiData& fresh) const;
};

/** Swaps a slot with the one before or behind it; the first does not go up, the last not down. */
template <int by> struct MovePassSlot : PassSlotPlace {
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const;
    void applyTo(ShaderUiData& shown, const ShaderUiData& fresh) const;
};
struct ChangeShaderUpPassSlot : MovePassSlot<-1> {};
struct ChangeShaderDownPassSlot : MovePassSlot<1> {};

/** A slot of another type begins anew. What the window goes on showing of its former value follows
 *  the numbering of the slot list (PassSlotTypes::labelInList), not that of the types. */
struct ChangeShaderPassSlotType : PassSlotPlace {
    std::uint32_t value = PassSlotTypes::vector;

    static constexpr auto members() {
        return std::tuple_cat(PassSlotPlace::members(),
                              std::tuple{Member{"value", &ChangeShaderPassSlotType::value}});
    }
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const;
    void readFrom(const ShaderUiData& record);
    void applyTo(ShaderUiData& shown, const ShaderUiData& fresh) const;
};

struct ChangeShaderUpdateVectorSlot : PassSlotPlace {
    std::array<float, 4> value{};

    static constexpr auto members() {
        return std::tuple_cat(PassSlotPlace::members(),
                              std::tuple{Member{"value", &ChangeShaderUpdateVectorSlot::value}});
    }
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const;
    void readFrom(const ShaderUiData& record);
    void applyTo(ShaderUiData& shown, const ShaderUiData& fresh) const { takeFresh(shown, fresh); }
};

/** Row by row. */
struct ChangeShaderUpdateMatrixSlot : PassSlotPlace {
    PassSlotValue value{};

    static constexpr auto members() {
        return std::tuple_cat(PassSlotPlace::members(),
                              std::tuple{Member{"value", &ChangeShaderUpdateMatrixSlot::value}});
    }
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const;
    void readFrom(const ShaderUiData& record);
    void applyTo(ShaderUiData& shown, const ShaderUiData& fresh) const { takeFresh(shown, fresh); }
};

/** Has a slot look through a camera, which is made where there is none of that name. The context's
 *  camera (ReservedNames::contextCamera) is none: whichever the pass renders with. */
struct ChangeShaderUpdateCameraSlot : PassSlotPlace {
    std::string value;

    static constexpr auto members() {
        return std::tuple_cat(PassSlotPlace::members(),
                              std::tuple{Member{"value", &ChangeShaderUpdateCameraSlot::value}});
    }
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const;
    void readFrom(const ShaderUiData& record);
    void applyTo(ShaderUiData& shown, const ShaderUiData& fresh) const;
};

struct ChangeShaderUpdateTextureSlot : PassSlotPlace {
    std::string value;

    static constexpr auto members() {
        return std::tuple_cat(PassSlotPlace::members(),
                              std::tuple{Member{"value", &ChangeShaderUpdateTextureSlot::value}});
    }
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const;
    void readFrom(const ShaderUiData& record);
    void applyTo(ShaderUiData& shown, const ShaderUiData& fresh) const;
};

/** In milliseconds; the engine counts 0 as 1. */
struct ChangeShaderUpdateTimeModSlot : PassSlotPlace {
    std::uint32_t value = 0;

    static constexpr auto members() {
        return std::tuple_cat(PassSlotPlace::members(),
                              std::tuple{Member{"value", &ChangeShaderUpdateTimeModSlot::value}});
    }
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const;
    void readFrom(const ShaderUiData& record);
    void applyTo(ShaderUiData& shown, const ShaderUiData& fresh) const { takeFresh(shown, fresh); }
};

struct ChangeShaderAddInstanceSlot {
    using Kind = ShaderKind;

    static constexpr auto members() { return std::tuple<>(); }
    void applyTo(vlGraphics::Shader& shader) const {
        shader.addInstanceMemorySlot()->setAsWorldMatrix();
    }
    void readFrom(const ShaderUiData&) {}
};

/** Acts on an instance slot; an index past the last changes nothing. */
struct InstanceSlotPlace {
    using Kind = ShaderKind;
    std::uint32_t index = 0;

    static constexpr auto members() {
        return std::tuple{Member{"index", &InstanceSlotPlace::index}};
    }
    void readFrom(const ShaderUiData&) {}
};

struct ChangeShaderDelInstanceSlot : InstanceSlotPlace {
    void applyTo(vlGraphics::Shader& shader) const { shader.deleteInstanceMemorySlot(index); }
};
struct ChangeShaderUpInstanceSlot : InstanceSlotPlace {
    void applyTo(vlGraphics::Shader& shader) const {
        if (index > 0) shader.changeInstanceMemorySlotOrder(index, index - 1);
    }
};
struct ChangeShaderDownInstanceSlot : InstanceSlotPlace {
    void applyTo(vlGraphics::Shader& shader) const {
        if (index < shader.getInstanceMemorySlotCount())
            shader.changeInstanceMemorySlotOrder(index, index + 1);
    }
};

struct ChangeShaderMaxInstanceSlot {
    using Kind = ShaderKind;
    std::uint32_t value = 0;

    static constexpr auto members() {
        return std::tuple{Member{"value", &ChangeShaderMaxInstanceSlot::value}};
    }
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const;
    void readFrom(const ShaderUiData& record) { value = record.maxInstancesPerBuffer; }
};

struct ChangeShaderProgram {
    using Kind = ShaderKind;
    std::string value; ///< the program's name

    static constexpr auto members() {
        return std::tuple{Member{"value", &ChangeShaderProgram::value}};
    }
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const;
    void readFrom(const ShaderUiData& record) { value = record.programName; }
};

using ChangeShaderAddConstantBufferMessage = ResourceEditMessage<ChangeShaderAddConstantBuffer>;
using ChangeShaderDelConstantBufferMessage = ResourceEditMessage<ChangeShaderDelConstantBuffer>;
using ChangeShaderConstantBufferBindingsMessage =
        ResourceEditMessage<ChangeShaderConstantBufferBindings>;
using ChangeShaderAddPassSlotMessage = ResourceEditMessage<ChangeShaderAddPassSlot>;
using ChangeShaderDelPassSlotMessage = ResourceEditMessage<ChangeShaderDelPassSlot>;
using ChangeShaderUpPassSlotMessage = ResourceEditMessage<ChangeShaderUpPassSlot>;
using ChangeShaderDownPassSlotMessage = ResourceEditMessage<ChangeShaderDownPassSlot>;
using ChangeShaderPassSlotTypeMessage = ResourceEditMessage<ChangeShaderPassSlotType>;
using ChangeShaderUpdateVectorSlotMessage = ResourceEditMessage<ChangeShaderUpdateVectorSlot>;
using ChangeShaderUpdateMatrixSlotMessage = ResourceEditMessage<ChangeShaderUpdateMatrixSlot>;
using ChangeShaderUpdateCameraSlotMessage = ResourceEditMessage<ChangeShaderUpdateCameraSlot>;
using ChangeShaderUpdateTextureSlotMessage = ResourceEditMessage<ChangeShaderUpdateTextureSlot>;
using ChangeShaderUpdateTimeModSlotMessage = ResourceEditMessage<ChangeShaderUpdateTimeModSlot>;
using ChangeShaderAddInstanceSlotMessage = ResourceEditMessage<ChangeShaderAddInstanceSlot>;
using ChangeShaderDelInstanceSlotMessage = ResourceEditMessage<ChangeShaderDelInstanceSlot>;
using ChangeShaderUpInstanceSlotMessage = ResourceEditMessage<ChangeShaderUpInstanceSlot>;
using ChangeShaderDownInstanceSlotMessage = ResourceEditMessage<ChangeShaderDownInstanceSlot>;
using ChangeShaderMaxInstanceSlotMessage = ResourceEditMessage<ChangeShaderMaxInstanceSlot>;
using ChangeShaderProgramMessage = ResourceEditMessage<ChangeShaderProgram>;

} // namespace vlEditor
