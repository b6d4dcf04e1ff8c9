#pragma once
// Textures, samplers and UAV buffers are bound alike: each family says once how the engine is told,
// and the edits are written once over that.
#include "editors/shader/ShaderAddress.h"
#include "editors/shader/ShaderKind.h"

namespace vlEditor {

struct ShaderTextures {
    using Resource = vlGraphics::ShaderResource;
    static constexpr std::string_view letter = "t";
    static constexpr auto list = &ShaderUiData::textures;
    static constexpr auto at = &vlGraphics::Shader::getTexturePerIndex;
    static constexpr auto add = &vlGraphics::Shader::addTexture;
    static constexpr auto forget = &vlGraphics::Shader::forgetTexture;
    static constexpr auto move = &vlGraphics::Shader::changeTextureAddress;
    static constexpr auto set = &vlGraphics::Shader::setTexture;
    /// Of "T. name" a texture, of "B. name" a buffer, which is made where there is none, and of any
    /// other letter a render queue. Empty: the engine's default texture.
    static vlCommon::Result<Resource> resolve(const vlGraphics::Shader& shader,
                                              const std::string& source);
};

struct ShaderSamplers {
    using Resource = vlGraphics::Handle<vlGraphics::Sampler>;
    static constexpr std::string_view letter = "s";
    static constexpr auto list = &ShaderUiData::samplers;
    static constexpr auto at = &vlGraphics::Shader::getSamplerPerIndex;
    static constexpr auto add = &vlGraphics::Shader::addSampler;
    static constexpr auto forget = &vlGraphics::Shader::forgetSampler;
    static constexpr auto move = &vlGraphics::Shader::changeSamplerAddress;
    static constexpr auto set = &vlGraphics::Shader::setSampler;
    /// Made where there is none. Empty: the engine's default.
    static vlCommon::Result<Resource> resolve(const vlGraphics::Shader& shader,
                                              const std::string& source);
};

struct ShaderUavs {
    using Resource = vlGraphics::Handle<vlGraphics::Buffer>;
    static constexpr std::string_view letter = "u";
    static constexpr auto list = &ShaderUiData::uavs;
    static constexpr auto at = &vlGraphics::Shader::getUavBufferPerIndex;
    static constexpr auto add = &vlGraphics::Shader::addUavBuffer;
    static constexpr auto forget = &vlGraphics::Shader::forgetUavBuffer;
    static constexpr auto move = &vlGraphics::Shader::changeUavBufferAddress;
    static constexpr auto set = &vlGraphics::Shader::setUavBuffer;
    static vlCommon::Result<Resource> resolve(const vlGraphics::Shader& shader,
                                              const std::string& source);
};

/// What moving and removing need: a constant buffer has no resource of its own.
struct ShaderBuffers {
    static constexpr std::string_view letter = "b";
    static constexpr auto list = &ShaderUiData::constantBuffers;
    static constexpr auto at =
            static_cast<const vlGraphics::ConstantBuffer* (vlGraphics::Shader::*)(std::uint32_t)
                                const>(&vlGraphics::Shader::getConstantBufferPerIndex);
    static constexpr auto forget = &vlGraphics::Shader::deleteConstantBuffer;
    static constexpr auto move = &vlGraphics::Shader::changeConstantBufferAddress;
};

namespace detail {

inline std::uint32_t slotOf(const vlGraphics::ConstantBuffer& buffer) {
    return buffer.getSlot();
}
inline std::uint32_t spaceOf(const vlGraphics::ConstantBuffer& buffer) {
    return buffer.getSpace();
}
template <class Reference>
std::uint32_t slotOf(const vlGraphics::ShaderBinding<Reference>& binding) {
    return binding.slot;
}
template <class Reference>
std::uint32_t spaceOf(const vlGraphics::ShaderBinding<Reference>& binding) {
    return binding.space;
}

} // namespace detail

/// The lowest slot of space 0 that none of the entries has; those in other spaces do not count.
template <class Entry>
std::uint32_t lowestFreeSlot(const vlGraphics::Shader& shader,
                             const Entry* (vlGraphics::Shader::*at)(std::uint32_t) const) {
    std::uint32_t candidate = 0;
    for (std::uint32_t i = 0; const Entry* entry = (shader.*at)(i); ++i) {
        if (detail::spaceOf(*entry) != 0 || detail::slotOf(*entry) != candidate) continue;
        ++candidate;
        i = ~std::uint32_t{0}; // once more from the first
    }
    return candidate;
}

/// An error that names the address where it is taken or out of reach.
template <class Family>
vlCommon::Result<> addBinding(vlGraphics::Shader& shader,
                              const std::string& source,
                              std::uint32_t slot,
                              std::uint32_t space) {
    if (auto good = checkAddress(shader, Family::letter, slot, space); !good) return good;
    const auto resource = Family::resolve(shader, source);
    if (!resource) return vlCommon::fail(resource.error().message);
    if ((shader.*Family::add)(*resource, slot, space)) return {};
    return refuseShader(shader, addressText(Family::letter, slot, space) + " is taken");
}

/** Binds another one at the lowest free slot: the engine's default. */
template <class Family> struct AddDefaultBinding {
    using Kind = ShaderKind;

    static constexpr auto members() { return std::tuple<>(); }
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const {
        return addBinding<Family>(shader, {}, lowestFreeSlot(shader, Family::at), 0);
    }
    void readFrom(const ShaderUiData&) {}
};

/** The same of a given one. */
template <class Family> struct AddNamedBinding {
    using Kind = ShaderKind;
    std::string value;

    static constexpr auto members() { return std::tuple{Member{"value", &AddNamedBinding::value}}; }
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const {
        return addBinding<Family>(shader, value, lowestFreeSlot(shader, Family::at), 0);
    }
    void readFrom(const ShaderUiData&) {}
};

template <class Family> struct DelBinding : ShaderAddress {
    using Kind = ShaderKind;

    void applyTo(vlGraphics::Shader& shader) const { (shader.*Family::forget)(slot, space); }
    void readFrom(const ShaderUiData&) {}
};

/** Moves a binding to another address. */
template <class Family> struct ChangeBindingAddress {
    using Kind = ShaderKind;
    std::uint32_t index = 0;
    std::uint32_t newSpace = 0;
    std::uint32_t newSlot = 0;

    static constexpr auto members() {
        return std::tuple{Member{"index", &ChangeBindingAddress::index},
                          Member{"newSpace", &ChangeBindingAddress::newSpace},
                          Member{"newSlot", &ChangeBindingAddress::newSlot}};
    }
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const {
        if ((shader.*Family::at)(index) == nullptr) return {};
        if (auto good = checkAddress(shader, Family::letter, newSlot, newSpace); !good) return good;
        if ((shader.*Family::move)(index, newSlot, newSpace)) return {};
        return refuseShader(shader, addressText(Family::letter, newSlot, newSpace) + " is taken");
    }
    void readFrom(const ShaderUiData& record) {
        if (index >= (record.*Family::list).size()) return;
        newSlot = (record.*Family::list)[index].slot;
        newSpace = (record.*Family::list)[index].space;
    }
};

/** Binds another resource where one is bound. */
template <class Family> struct ChangeBindingSource {
    using Kind = ShaderKind;
    std::uint32_t index = 0;
    std::string value;

    static constexpr auto members() {
        return std::tuple{Member{"index", &ChangeBindingSource::index},
                          Member{"value", &ChangeBindingSource::value}};
    }
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const {
        if ((shader.*Family::at)(index) == nullptr) return {};
        const auto resource = Family::resolve(shader, value);
        if (!resource) return vlCommon::fail(resource.error().message);
        (shader.*Family::set)(index, *resource);
        return {};
    }
    void readFrom(const ShaderUiData& record) {
        if (index < (record.*Family::list).size()) value = (record.*Family::list)[index].resource;
    }
};

struct ChangeShaderAddTexture : AddDefaultBinding<ShaderTextures> {};
struct ChangeShaderDelTexture : DelBinding<ShaderTextures> {};
struct ChangeShaderTextureBindings : ChangeBindingAddress<ShaderTextures> {};
struct ChangeShaderAddSampler : AddDefaultBinding<ShaderSamplers> {};
struct ChangeShaderDelSampler : DelBinding<ShaderSamplers> {};
struct ChangeShaderSamplerBindings : ChangeBindingAddress<ShaderSamplers> {};
struct ChangeShaderSamplerSource : ChangeBindingSource<ShaderSamplers> {};
struct ChangeShaderAddUav : AddNamedBinding<ShaderUavs> {};
struct ChangeShaderDelUav : DelBinding<ShaderUavs> {};
struct ChangeShaderUavBindings : ChangeBindingAddress<ShaderUavs> {};
struct ChangeShaderUavSource : ChangeBindingSource<ShaderUavs> {};

/** With the address that the texture had when its source was chosen: one that has moved since in
 *  the list is found by it. */
struct ChangeShaderTextureSource : ChangeBindingSource<ShaderTextures>, ShaderAddress {
    static constexpr auto members() {
        return std::tuple_cat(ChangeBindingSource::members(), ShaderAddress::members());
    }
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const;
};

using ChangeShaderAddTextureMessage = ResourceEditMessage<ChangeShaderAddTexture>;
using ChangeShaderDelTextureMessage = ResourceEditMessage<ChangeShaderDelTexture>;
using ChangeShaderTextureBindingsMessage = ResourceEditMessage<ChangeShaderTextureBindings>;
using ChangeShaderTextureSourceMessage = ResourceEditMessage<ChangeShaderTextureSource>;
using ChangeShaderAddSamplerMessage = ResourceEditMessage<ChangeShaderAddSampler>;
using ChangeShaderDelSamplerMessage = ResourceEditMessage<ChangeShaderDelSampler>;
using ChangeShaderSamplerBindingsMessage = ResourceEditMessage<ChangeShaderSamplerBindings>;
using ChangeShaderSamplerSourceMessage = ResourceEditMessage<ChangeShaderSamplerSource>;
using ChangeShaderAddUavMessage = ResourceEditMessage<ChangeShaderAddUav>;
using ChangeShaderDelUavMessage = ResourceEditMessage<ChangeShaderDelUav>;
using ChangeShaderUavBindingsMessage = ResourceEditMessage<ChangeShaderUavBindings>;
using ChangeShaderUavSourceMessage = ResourceEditMessage<ChangeShaderUavSource>;

/// A handle to the resource of that name, which is made, with its device side, where there is none;
/// the UI hears of it as of a loaded one. An error where the engine refuses the name.
vlCommon::Result<vlGraphics::Handle<vlGraphics::Camera>> cameraNamed(const std::string& name);

} // namespace vlEditor
