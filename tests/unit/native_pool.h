// What tests of the native build know of a pool's threads.
#pragma once

#include <atomic>

namespace tvut {

// The system gives no thread.
extern std::atomic<bool> g_noThreads;

// Waits until all threads of pools have returned, which pools do not wait for.
void WaitForPoolThreads();

} // namespace tvut
