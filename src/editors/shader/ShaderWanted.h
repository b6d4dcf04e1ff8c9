#pragma once
#include "editors/shader/ShaderAddress.h"
#include "editors/shader/ShaderKind.h"

namespace vlEditor {

/** Binds what the program wants at an address, where nothing is bound: the named source, or the
 *  engine's default; of an array all registers that nothing is bound to. A constant buffer is made
 *  of slots that fill the program's members. */
struct ChangeShaderBindWanted : ShaderAddress {
    using Kind = ShaderKind;
    std::string letter; ///< of the register: "b", "t", "s" or "u"
    std::string value;  ///< as an entry of the pick list for the register; empty: the default

    static constexpr auto members() {
        return std::tuple_cat(ShaderAddress::members(),
                              std::tuple{Member{"letter", &ChangeShaderBindWanted::letter},
                                         Member{"value", &ChangeShaderBindWanted::value}});
    }
    vlCommon::Result<> applyTo(vlGraphics::Shader& shader) const;
    void readFrom(const ShaderUiData&) {}
};

using ChangeShaderBindWantedMessage = ResourceEditMessage<ChangeShaderBindWanted>;

/// Which registers of a resource of the program want a binding and have none. Those that no program
/// reaches are not among them; an array without a count wants its first, unless it has another.
/// Graphics thread.
std::vector<std::uint32_t> unboundSlots(const vlGraphics::Shader& shader,
                                        const vlGraphics::ReflectedResource& resource);

/// The types of slots, one behind the other, that fill a constant buffer as its members lie in it:
/// by their size, and where that fits by what they are called.
std::vector<std::uint32_t> guessSlots(const vlGraphics::ReflectedResource& buffer);

} // namespace vlEditor
