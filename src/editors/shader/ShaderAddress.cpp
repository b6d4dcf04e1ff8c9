#include "editors/shader/ShaderAddress.h"

#include "editors/shader/ShaderKind.h"

#include <fmt/format.h>

namespace vlEditor {

std::string addressText(std::string_view letter, std::uint32_t slot, std::uint32_t space) {
    return space == 0 ? fmt::format("{}{}", letter, slot)
                      : fmt::format("{}{} of space {}", letter, slot, space);
}

vlCommon::Result<> checkAddress(const vlGraphics::Shader& shader,
                                std::string_view letter,
                                std::uint32_t slot,
                                std::uint32_t space) {
    using vlGraphics::Shader;
    if (slot <= Shader::lastSlot && space <= Shader::lastSpace) return {};
    return refuseShader(shader,
                        fmt::format("{} is out of reach: slots end at {}, spaces at {}",
                                    addressText(letter, slot, space),
                                    Shader::lastSlot,
                                    Shader::lastSpace));
}

} // namespace vlEditor
