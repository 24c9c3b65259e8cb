// A dump of a process that goes on: this one, or another.
#pragma once

#include "platform/crash_handlers.h"
#include "runtime/result.h"

namespace tvut {

struct scDumpWish {
    const char16_t* file = nullptr; // terminated
    bool isFull = false;
    DWORD process = 0;                             // 0: this one
    DWORD thread = 0;                              // of the exception; 0: the caller
    const EXCEPTION_POINTERS* exception = nullptr; // in this process; may be null
};

// Writes a new file that takes the place of an old one when it is complete. All threads of the process but
// the caller stand still meanwhile. `caller`: its registers. Throws clsException, std::bad_alloc.
UtilResult UtilpWriteProcessDump(const scDumpWish& wish, const CONTEXT& caller);

} // namespace tvut
