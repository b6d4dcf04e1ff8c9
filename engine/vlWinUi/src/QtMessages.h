#pragma once

namespace vlWinUi {

/** Sends what Qt has to say to the library's log, from whichever thread it says it; what ends the
 *  program still goes to standard error. Installed before the application exists. */
void installQtMessages();

} // namespace vlWinUi
