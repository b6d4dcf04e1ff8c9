#pragma once
#include "editors/shader/ShaderKind.h"
#include "interfaces/kinds/ElementRows.h"

namespace vlEditor {

/** Fills the list, "<prefix>_WANTED_LIST", of what the shader's program uses behind registers of
 * the letter and nothing is bound to. A click on an entry, or Enter, binds it: to the engine's
 * default, or, where only a buffer will do, to the one that the person takes from the pick list;
 * of an array every register that has nothing. `rows` are
 * the ones that it comes to; they select it. */
void bindWanted(Bindings<ShaderKind>& window,
                ElementRows<ShaderKind>& rows,
                const std::string& prefix,
                const std::string& letter,
                const std::string& pickList);

} // namespace vlEditor
