// The hooks that wait for Ctrl+Break in a console, of all threads.
#pragma once

#include "window/hooks_chain.h"

namespace tvut {

// From now on the hook is asked. Throws std::bad_alloc.
void UtilpAwaitConsole(const std::shared_ptr<scHook>& hook);

void UtilpLeaveConsole(const scHook& hook) noexcept;

} // namespace tvut
