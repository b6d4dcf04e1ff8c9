#include "programs/ModuleFault.h"

#include <vlMemory/Utf8.h>

#include <spirv-tools/libspirv.hpp>

#include <optional>

namespace vlGraphics {

namespace {

/// The first line of what the validator says; nothing where it says nothing.
std::optional<std::string> validate(std::span<const std::uint32_t> spirv, bool withNames) {
    spvtools::SpirvTools tools(SPV_ENV_VULKAN_1_1);
    std::string fault;
    tools.SetMessageConsumer([&fault](auto, auto, auto, const char* text) {
        if (fault.empty()) fault = text;
    });
    spvtools::ValidatorOptions options;
    options.SetFriendlyNames(withNames);
    if (tools.Validate(spirv.data(), spirv.size(), options)) return std::nullopt;
    return fault.substr(0, fault.find('\n'));
}

} // namespace

std::string findModuleFault(std::span<const std::uint32_t> spirv) {
    // Names for a message take nearly as long as the rest, and hardly any module needs one.
    if (!validate(spirv, false)) return {};
    const std::string fault = validate(spirv, true).value_or(std::string());
    return "the compiler makes of it what no device takes: " + vlMemory::printable(fault);
}

} // namespace vlGraphics
