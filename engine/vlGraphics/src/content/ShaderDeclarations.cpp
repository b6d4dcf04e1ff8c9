#include "content/KindLoader.h"
#include "resources/EnumTexts.h"

#include <vlGraphics/RenderQueue.h>
#include <vlGraphics/Shader.h>

#include <utility>

namespace vlGraphics {

namespace {

struct BindingValues {
    vlMemory::String resource;
    std::uint32_t slot = 0;
    std::uint32_t space = 0;
};

/// At most one has a name.
struct TextureValues {
    vlMemory::String texture;
    vlMemory::String buffer;
    vlMemory::String renderQueue;
    std::uint32_t slot = 0;
    std::uint32_t space = 0;
};

struct PassSlotValues {
    PASS_SLOT_TYPE type = PASS_SLOT_TYPE::VECTOR;
    vlMaths::Vector vector{0, 0, 0, 1};
    vlMaths::Matrix matrix;
    vlMemory::String camera;
    vlMemory::String texture;
    vlMemory::String typeName; ///< of a slot that somebody outside the engine fills
    std::uint32_t timeModuloMs = 1000;
};

struct BufferValues {
    std::uint32_t slot = 0;
    std::uint32_t space = 0;
    std::vector<PassSlotValues> slots;
};

struct InstanceSlotValues {
    INSTANCE_SLOT_TYPE type = INSTANCE_SLOT_TYPE::WORLD_MATRIX;
    vlMemory::String semantic; ///< of a slot that somebody outside the engine fills
};

using CameraSetter = void (ShaderPassMemorySlot::*)(Handle<Camera>);

/// Null for a type that looks through no camera.
CameraSetter cameraSetter(PASS_SLOT_TYPE type) {
    static constexpr std::pair<PASS_SLOT_TYPE, CameraSetter> setters[] = {
            {PASS_SLOT_TYPE::CAM_CORNERS_WORLD, &ShaderPassMemorySlot::setAsCamCornersWorld},
            {PASS_SLOT_TYPE::CAM_CORNERS_VIEW, &ShaderPassMemorySlot::setAsCamCornersView},
            {PASS_SLOT_TYPE::PROJECTION_PARAMS, &ShaderPassMemorySlot::setAsProjectionParameters},
            {PASS_SLOT_TYPE::VIEW_MATRIX, &ShaderPassMemorySlot::setAsViewMatrix},
            {PASS_SLOT_TYPE::VIEW_MATRIX_INV, &ShaderPassMemorySlot::setAsViewMatrixInv},
            {PASS_SLOT_TYPE::PROJECTION_MATRIX, &ShaderPassMemorySlot::setAsProjectionMatrix},
            {PASS_SLOT_TYPE::PROJECTION_MATRIX_INV,
             &ShaderPassMemorySlot::setAsProjectionMatrixInv},
            {PASS_SLOT_TYPE::CAMERA_POSITION, &ShaderPassMemorySlot::setAsCameraPosition},
            {PASS_SLOT_TYPE::CAMERA_DIRECTION_WORLD,
             &ShaderPassMemorySlot::setAsCameraDirectionWorld}};
    for (const auto& [known, setter] : setters) {
        if (known == type) return setter;
    }
    return nullptr;
}

template <class Archive, class V> void describePassSlot(Archive& archive, V& slot) {
    archive.required("type", slot.type, EnumTexts<PASS_SLOT_TYPE>::table);
    switch (slot.type) {
    case PASS_SLOT_TYPE::VECTOR:
        archive.optional("value", slot.vector);
        break;
    case PASS_SLOT_TYPE::MATRIX:
        archive.optional("value", slot.matrix);
        break;
    case PASS_SLOT_TYPE::TEXTURE_SIZE:
        archive.optional("texture", slot.texture);
        break;
    case PASS_SLOT_TYPE::TIME:
        archive.optional("moduloMs", slot.timeModuloMs);
        break;
    case PASS_SLOT_TYPE::CUSTOM:
        archive.optional("typeName", slot.typeName);
        archive.check(!Archive::reading, "type", "is CUSTOM, which only the maker can fill");
        break;
    default:
        if (cameraSetter(slot.type) == nullptr) break;
        if (Archive::reading || !slot.camera.empty()) archive.optional("camera", slot.camera);
    }
}

template <class Archive, class V> void describeInstanceSlot(Archive& archive, V& slot) {
    archive.required("type", slot.type, EnumTexts<INSTANCE_SLOT_TYPE>::table);
    if (slot.type != INSTANCE_SLOT_TYPE::CUSTOM) return;
    archive.optional("semantic", slot.semantic);
    archive.check(!Archive::reading, "type", "is CUSTOM, which only the maker can fill");
}

template <class Archive, class V> void describeAddress(Archive& archive, V& values) {
    archive.required("slot", values.slot);
    archive.optional("space", values.space);
}

template <class Archive, class List>
void describeBindings(Archive& archive,
                      vlMemory::StringView list,
                      vlMemory::StringView member,
                      List& values) {
    archive.optionalArray(list, values, [&](auto& child, auto& binding) {
        child.optional(member, binding.resource);
        describeAddress(child, binding);
    });
}

template <class Archive, class List> void describeTextures(Archive& archive, List& values) {
    archive.optionalArray("textures", values, [](auto& child, auto& binding) {
        const auto describe = [&](vlMemory::StringView member, auto& name) {
            if (Archive::reading || !name.empty()) child.optional(member, name);
        };
        describe("texture", binding.texture);
        describe("buffer", binding.buffer);
        describe("renderQueue", binding.renderQueue);
        const bool several = int{!binding.texture.empty()} + int{!binding.buffer.empty()} +
                                     int{!binding.renderQueue.empty()} >
                             1;
        child.check(!several, "texture", "stands beside another resource");
        describeAddress(child, binding);
    });
}

TextureValues valuesOf(const TextureBinding& binding) {
    TextureValues values;
    values.slot = binding.slot;
    values.space = binding.space;
    if (const auto* texture = std::get_if<Handle<Texture>>(&binding.resource))
        values.texture = TextureManager::getInstance()->nameOf(*texture);
    if (const auto* buffer = std::get_if<Handle<Buffer>>(&binding.resource))
        values.buffer = BufferManager::getInstance()->nameOf(*buffer);
    if (const auto* queue = std::get_if<Handle<RenderQueue>>(&binding.resource))
        values.renderQueue = RenderQueueManager::getInstance()->nameOf(*queue);
    return values;
}

ShaderResource resourceOf(const TextureValues& values) {
    if (!values.buffer.empty()) return BufferManager::getInstance()->handleOf(values.buffer);
    if (!values.renderQueue.empty())
        return RenderQueueManager::getInstance()->handleOf(values.renderQueue);
    return TextureManager::getInstance()->handleOf(values.texture);
}

template <class List>
vlCommon::Result<> checkAddresses(vlMemory::StringView list, const List& values) {
    std::set<std::pair<std::uint32_t, std::uint32_t>> taken;
    for (const auto& value : values) {
        if (taken.emplace(value.slot, value.space).second) continue;
        return vlCommon::fail(
                fmt::format("'{}' has slot {} of space {} twice", list, value.slot, value.space));
    }
    return {};
}

PassSlotValues valuesOf(const ShaderPassMemorySlot& slot) {
    PassSlotValues values;
    values.type = slot.getType();
    if (values.type == PASS_SLOT_TYPE::VECTOR) values.vector = slot.getDataAsVector();
    if (values.type == PASS_SLOT_TYPE::MATRIX) values.matrix = slot.getDataAsMatrix();
    values.camera = CameraManager::getInstance()->nameOf(slot.getCamera());
    values.texture = TextureManager::getInstance()->nameOf(slot.getTexture());
    values.timeModuloMs = slot.getTimeModuloMs();
    if (const ShaderPassCustomSlot* custom = slot.getData()) {
        values.typeName = custom->getTypeName();
        if (custom->getDeclaredTexture()) values.type = PASS_SLOT_TYPE::TEXTURE_SIZE;
    }
    return values;
}

void applySlot(ShaderPassMemorySlot& slot, const PassSlotValues& values) {
    switch (values.type) {
    case PASS_SLOT_TYPE::VECTOR:
        return slot.setFromVector(values.vector);
    case PASS_SLOT_TYPE::MATRIX:
        return slot.setFromMatrix(values.matrix);
    case PASS_SLOT_TYPE::TARGET_SIZE:
        return slot.setAsTargetSize();
    case PASS_SLOT_TYPE::TIME:
        return slot.setAsTime(values.timeModuloMs);
    case PASS_SLOT_TYPE::TEXTURE_SIZE:
        return slot.setAsTextureSize(TextureManager::getInstance()->handleOf(values.texture));
    default:
        break;
    }
    const CameraSetter setter = cameraSetter(values.type);
    if (setter != nullptr) (slot.*setter)(CameraManager::getInstance()->handleOf(values.camera));
}

void clear(Shader& shader) {
    while (const auto* binding = shader.getTexturePerIndex(0)) {
        shader.forgetTexture(binding->slot, binding->space);
    }
    while (const auto* binding = shader.getSamplerPerIndex(0)) {
        shader.forgetSampler(binding->slot, binding->space);
    }
    while (const auto* binding = shader.getUavBufferPerIndex(0)) {
        shader.forgetUavBuffer(binding->slot, binding->space);
    }
    while (const ConstantBuffer* buffer = shader.getConstantBufferPerIndex(0)) {
        shader.deleteConstantBuffer(buffer->getSlot(), buffer->getSpace());
    }
    while (shader.deleteInstanceMemorySlot(0)) {
    }
}

} // namespace

template <> struct Declared<Shader> {
    using Manager = ShaderManager;
    static constexpr vlMemory::StringView list = "shaders";
    struct Values {
        vlMemory::String program;
        std::vector<TextureValues> textures;
        std::vector<BindingValues> samplers;
        std::vector<BindingValues> uavBuffers;
        std::vector<BufferValues> constantBuffers;
        std::vector<InstanceSlotValues> instanceSlots;
        std::uint32_t maxInstancesPerBuffer = Shader::startMaxInstances;
    };
    template <class Archive, class V> static void describe(Archive& archive, V& values) {
        archive.optional("program", values.program);
        describeTextures(archive, values.textures);
        describeBindings(archive, "samplers", "sampler", values.samplers);
        if (Archive::reading || !values.uavBuffers.empty())
            describeBindings(archive, "uavBuffers", "buffer", values.uavBuffers);
        archive.optionalArray(
                "constantBuffers", values.constantBuffers, [](auto& child, auto& buffer) {
                    describeAddress(child, buffer);
                    child.optionalArray("slots", buffer.slots, [](auto& inner, auto& slot) {
                        describePassSlot(inner, slot);
                    });
                });
        archive.optionalArray("instanceSlots", values.instanceSlots, [](auto& child, auto& slot) {
            describeInstanceSlot(child, slot);
        });
        archive.optional("maxInstancesPerBuffer", values.maxInstancesPerBuffer, 1U, 65536U);
    }
    static Values from(const Shader& shader, const DeclarationFolders&) {
        Values values;
        values.program = ProgramManager::getInstance()->nameOf(shader.getProgramHandle());
        for (std::uint32_t i = 0; const auto* binding = shader.getTexturePerIndex(i); ++i) {
            values.textures.push_back(valuesOf(*binding));
        }
        for (std::uint32_t i = 0; const auto* binding = shader.getSamplerPerIndex(i); ++i) {
            const auto name = SamplerManager::getInstance()->nameOf(binding->resource);
            values.samplers.push_back({vlMemory::String(name), binding->slot, binding->space});
        }
        for (std::uint32_t i = 0; const auto* binding = shader.getUavBufferPerIndex(i); ++i) {
            const auto name = BufferManager::getInstance()->nameOf(binding->resource);
            values.uavBuffers.push_back({vlMemory::String(name), binding->slot, binding->space});
        }
        for (std::uint32_t i = 0; const auto* buffer = shader.getConstantBufferPerIndex(i); ++i) {
            BufferValues& to = values.constantBuffers.emplace_back();
            to.slot = buffer->getSlot();
            to.space = buffer->getSpace();
            for (std::uint32_t j = 0; const auto* slot = buffer->getPassMemorySlotReadOnly(j);
                 ++j) {
                to.slots.push_back(valuesOf(*slot));
            }
        }
        for (std::uint32_t i = 0; const auto* slot = shader.getInstanceMemorySlot(i); ++i) {
            InstanceSlotValues& to = values.instanceSlots.emplace_back();
            to.type = slot->getType();
            to.semantic = slot->getSemantic();
        }
        values.maxInstancesPerBuffer = shader.getMaxInstancePerBuffer();
        return values;
    }
    static vlCommon::Result<> prepare(Values& values, const DeclarationFolders&) {
        auto checked = checkAddresses("textures", values.textures);
        if (checked) checked = checkAddresses("samplers", values.samplers);
        if (checked) checked = checkAddresses("uavBuffers", values.uavBuffers);
        if (checked) checked = checkAddresses("constantBuffers", values.constantBuffers);
        return checked;
    }
    static void apply(Shader& shader, const Values& values) {
        clear(shader);
        shader.setProgram(ProgramManager::getInstance()->handleOf(values.program));
        for (const TextureValues& binding : values.textures) {
            shader.addTexture(resourceOf(binding), binding.slot, binding.space);
        }
        for (const BindingValues& binding : values.samplers) {
            const auto sampler = SamplerManager::getInstance()->handleOf(binding.resource);
            shader.addSampler(sampler, binding.slot, binding.space);
        }
        for (const BindingValues& binding : values.uavBuffers) {
            const auto buffer = BufferManager::getInstance()->handleOf(binding.resource);
            shader.addUavBuffer(buffer, binding.slot, binding.space);
        }
        for (const BufferValues& from : values.constantBuffers) {
            ConstantBuffer* buffer = shader.addConstantBuffer(from.slot, from.space);
            for (const PassSlotValues& slot : from.slots) {
                applySlot(*buffer->addPassMemorySlot(), slot);
            }
        }
        for (std::size_t index = 0; index < values.instanceSlots.size(); ++index) {
            shader.addInstanceMemorySlot()->setAsWorldMatrix();
        }
        shader.setMaxInstancePerBuffer(values.maxInstancesPerBuffer);
    }
};

} // namespace vlGraphics

VL_DECLARED_KIND(Shader);
