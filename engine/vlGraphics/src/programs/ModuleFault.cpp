#include "programs/ModuleFault.h"

#include <vlMemory/Utf8.h>

#include <spirv-tools/libspirv.hpp>

namespace vlGraphics {

std::string findModuleFault(std::span<const std::uint32_t> spirv) {
    spvtools::SpirvTools tools(SPV_ENV_VULKAN_1_1);
    std::string fault;
    tools.SetMessageConsumer([&fault](auto, auto, auto, const char* text) {
        if (fault.empty()) fault = text;
    });
    if (tools.Validate(spirv.data(), spirv.size())) return {};
    fault = vlMemory::printable(fault.substr(0, fault.find('\n')));
    return "the compiler makes of it what no device takes: " + fault;
}

} // namespace vlGraphics
