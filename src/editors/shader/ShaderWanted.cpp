#include "editors/shader/ShaderWanted.h"

#include "editors/shader/PassSlotTypes.h"
#include "editors/shader/ShaderBindingEdits.h"

#include <algorithm>
#include <array>

namespace vlEditor {
namespace {

using vlGraphics::ReflectedMember;
using vlGraphics::ReflectedResource;

constexpr std::uint32_t vectorBytes = 16;
constexpr std::uint32_t matrixBytes = 64;
constexpr std::uint32_t mostSlots = 1024; ///< what a person could still make sense of

std::string lower(std::string_view text) {
    std::string all(text);
    std::ranges::transform(all, all.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return all;
}

bool says(std::string_view name, std::string_view word) {
    return name.find(word) != std::string_view::npos;
}

std::uint32_t guessMatrix(std::string_view memberName) {
    const std::string name = lower(memberName);
    const bool isInverse = says(name, "inv");
    const bool isView = says(name, "view");
    const bool isProjection = says(name, "proj");
    constexpr std::uint32_t viewMatrix = 8;
    constexpr std::uint32_t projectionMatrix = 10;
    if (isView == isProjection) return PassSlotTypes::matrix;
    return (isView ? viewMatrix : projectionMatrix) + (isInverse ? 1 : 0);
}

bool isMatrix(const ReflectedMember& member) {
    return member.byteSize == matrixBytes && (member.type.empty() || says(member.type, "4x4"));
}

const ReflectedResource* find(const vlGraphics::Shader& shader,
                              std::string_view letter,
                              std::uint32_t slot,
                              std::uint32_t space) {
    const vlGraphics::Program* program = shader.getProgram();
    if (program == nullptr) return nullptr;
    const auto& all = program->getReflection().resources;
    const auto found = std::ranges::find_if(all, [&](const ReflectedResource& resource) {
        const char of = "btsu"[static_cast<std::size_t>(resource.resourceClass)];
        return letter == std::string_view(&of, 1) && resource.slot == slot &&
               resource.space == space;
    });
    return found == all.end() ? nullptr : &*found;
}

vlCommon::Result<>
addBuffer(vlGraphics::Shader& shader, const ReflectedResource& wanted, std::uint32_t slot) {
    vlGraphics::ConstantBuffer* buffer = shader.addConstantBuffer(slot, wanted.space);
    if (buffer == nullptr)
        return refuseShader(shader,
                            addressText(ShaderBuffers::letter, slot, wanted.space) + " is taken");
    for (const std::uint32_t type : guessSlots(wanted))
        PassSlotTypes::become(type, *buffer->addPassMemorySlot());
    return {};
}

template <class Family>
std::vector<std::uint32_t> slotsOf(const vlGraphics::Shader& shader, std::uint32_t space) {
    std::vector<std::uint32_t> slots;
    for (std::uint32_t i = 0; const auto* entry = (shader.*Family::at)(i); ++i)
        if (detail::spaceOf(*entry) == space) slots.push_back(detail::slotOf(*entry));
    return slots;
}

std::vector<std::uint32_t> boundSlots(const vlGraphics::Shader& shader,
                                      const ReflectedResource& resource) {
    using vlGraphics::RESOURCE_CLASS;
    switch (resource.resourceClass) {
    case RESOURCE_CLASS::TEXTURE:
        return slotsOf<ShaderTextures>(shader, resource.space);
    case RESOURCE_CLASS::SAMPLER:
        return slotsOf<ShaderSamplers>(shader, resource.space);
    case RESOURCE_CLASS::UAV:
        return slotsOf<ShaderUavs>(shader, resource.space);
    case RESOURCE_CLASS::CONSTANT_BUFFER:
        break;
    }
    return slotsOf<ShaderBuffers>(shader, resource.space);
}

} // namespace

std::vector<std::uint32_t> unboundSlots(const vlGraphics::Shader& shader,
                                        const ReflectedResource& resource) {
    constexpr std::uint32_t end = vlGraphics::Shader::lastSlot + 1;
    const std::vector<std::uint32_t> bound = boundSlots(shader, resource);
    const bool isEndless = resource.arrayCount == 0;
    const auto isItsOwn = [&](std::uint32_t slot) { return slot >= resource.slot; };
    if (isEndless && std::ranges::any_of(bound, isItsOwn)) return {};
    std::vector<std::uint32_t> slots;
    for (std::uint32_t i = 0; i < std::max(resource.arrayCount, 1U); ++i) {
        const std::uint32_t slot = resource.slot + i;
        if (slot >= end) break;
        if (std::ranges::find(bound, slot) == bound.end()) slots.push_back(slot);
    }
    return slots;
}

std::vector<std::uint32_t> guessSlots(const ReflectedResource& buffer) {
    std::vector<std::uint32_t> slots;
    std::uint32_t at = 0;
    const auto fillTo = [&](std::uint32_t end) {
        for (; at < end && slots.size() < mostSlots; at += vectorBytes)
            slots.push_back(PassSlotTypes::vector);
    };
    std::vector<ReflectedMember> members = buffer.members;
    std::ranges::sort(members, {}, &ReflectedMember::offset);
    for (const ReflectedMember& member : members) {
        fillTo(member.offset / vectorBytes * vectorBytes);
        if (isMatrix(member) && member.offset == at && slots.size() < mostSlots) {
            slots.push_back(guessMatrix(member.name));
            at += matrixBytes;
        }
        fillTo(member.offset + member.byteSize);
    }
    fillTo(buffer.byteSize);
    return slots;
}

vlCommon::Result<> ChangeShaderBindWanted::applyTo(vlGraphics::Shader& shader) const {
    const ReflectedResource* wanted = find(shader, letter, slot, space);
    if (wanted == nullptr)
        return refuseShader(shader,
                            "its program wants nothing at " + addressText(letter, slot, space));
    if (auto good = checkAddress(shader, letter, slot, space); !good) return good;
    const std::vector<std::uint32_t> slots = unboundSlots(shader, *wanted);
    if (slots.empty()) return refuseShader(shader, addressText(letter, slot, space) + " is taken");
    const auto bind = [&](std::uint32_t at) {
        if (letter == ShaderBuffers::letter) return addBuffer(shader, *wanted, at);
        if (letter == ShaderTextures::letter)
            return addBinding<ShaderTextures>(shader, value, at, space);
        if (letter == ShaderSamplers::letter)
            return addBinding<ShaderSamplers>(shader, value, at, space);
        return addBinding<ShaderUavs>(shader, value, at, space);
    };
    for (const std::uint32_t at : slots)
        if (auto bound = bind(at); !bound) return bound;
    return {};
}

} // namespace vlEditor
