// The guard of exports that work with files, streams and the clipboard: where one fails, the thread's last
// error is the reason.
#pragma once

#include "platform/exception.h"

#include <new>
#include <utility>
#include <windows.h>

namespace tvut {

// Calls the body of an export; what it throws becomes the export's failure value, and the reason is set when
// all that the body held is gone. What the body sets without throwing stays.
template <class Result, class Body>
Result UtilpGuardWithReason(Result failure, Body&& body) noexcept {
    unsigned long why = 0;
    try {
        return std::forward<Body>(body)();
    } catch (const clsException& exception) {
        why = exception.Reason();
    } catch (const std::bad_alloc&) {
        why = reason::noMemory;
    } catch (...) {
        why = reason::invalidData;
    }
    SetLastError(why);
    return failure;
}

template <class... Pointers>
void RequireArguments(Pointers... pointers) {
    if (!(pointers && ...))
        throw clsException("an argument is missing", reason::invalidArgument);
}

} // namespace tvut
