#pragma once
#include "editors/shader/ShaderKind.h"

namespace vlEditor {

/** Binds what the program wants at an address where nothing is bound: the named source, or the
 *  engine's default. A constant buffer is made of slots that fill the program's members. */
struct ChangeShaderBindWanted {
    using Kind = ShaderKind;
    std::string letter; ///< of the register: "b", "t", "s" or "u"
    std::uint32_t slot = 0;
    std::uint32_t space = 0;
    std::string value; ///< as an entry of the pick list for the register; empty: the default

    static constexpr auto members() {
        return std::tuple{Member{"letter", &ChangeShaderBindWanted::letter},
                          Member{"slot", &ChangeShaderBindWanted::slot},
                          Member{"space", &ChangeShaderBindWanted::space},
                          Member{"value", &ChangeShaderBindWanted::value}};
    }
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const;
    void readFrom(const ShaderUiData&) {}
};

using ChangeShaderBindWantedMessage = ResourceEditMessage<ChangeShaderBindWanted>;

/// The types of slots, one behind the other, that fill a constant buffer as its members lie in it:
/// by their size, and where that fits by what they are called.
std::vector<std::uint32_t> guessSlots(const vlGraphics::ReflectedResource& buffer);

} // namespace vlEditor
