// The thread pools of the process, by their handles, and what diagnostic lines tell about them.
#pragma once

#include "runtime/pool/pool.h"

namespace tvut {

// A pool with at most this many threads, 1 to 256. Result: its handle; 0: no memory, or 255 pools are open.
std::uint32_t UtilpOpenPool(std::u16string_view name, unsigned threads, bool background) noexcept;

// As clsPool has them; for a handle that no open pool has: badArgument.
UtilResult UtilpAddToPool(std::uint32_t pool, scPoolJob job) noexcept;
UtilResult UtilpAbortPool(std::uint32_t pool) noexcept;
UtilResult UtilpFinalizePool(std::uint32_t pool, std::uint32_t milliseconds, bool mayWait) noexcept;
UtilResult UtilpClosePool(std::uint32_t pool, bool mayWait) noexcept;

} // namespace tvut
