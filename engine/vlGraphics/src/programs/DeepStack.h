#pragma once
#include <functional>

namespace vlGraphics {

/** Runs the work on a thread of its own with a stack of 256 MiB (of which only what is touched
 * takes memory) and waits for it: for a recursion whose depth the input decides. The work must not
 * throw. False, with nothing run, where the system gives no such thread. */
bool runOnDeepStack(const std::function<void()>& work);

} // namespace vlGraphics
