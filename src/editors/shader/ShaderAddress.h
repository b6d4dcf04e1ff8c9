#pragma once
#include "core/Members.h"

#include <vlCommon/Result.h>
#include <vlGraphics/Shader.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace vlEditor {

/** A register of HLSL, but for its letter. Edits that act at one derive from it. */
struct ShaderAddress {
    std::uint32_t slot = 0;
    std::uint32_t space = 0;

    static constexpr auto members() {
        return std::tuple{Member{"slot", &ShaderAddress::slot},
                          Member{"space", &ShaderAddress::space}};
    }
};

/// "t3", or "t3 of space 1".
std::string addressText(std::string_view letter, std::uint32_t slot, std::uint32_t space);
/// Whether a program can reach the address; an error that names it where it cannot. Graphics
/// thread.
vlCommon::Result<> checkAddress(const vlGraphics::Shader& shader,
                                std::string_view letter,
                                std::uint32_t slot,
                                std::uint32_t space);

} // namespace vlEditor
