#include "runtime/call_stack.h"

#include "platform/process_heap.h"

#include <windows.h>

namespace tvut {

static_assert(sizeof(scCallStack) == 360);

scCallStack* UtilpCaptureCallStack(std::size_t skip) noexcept {
    auto* const stack = static_cast<scCallStack*>(PlatformProcessHeapAlloc(sizeof(scCallStack)));
    if (stack)
        stack->count =
            CaptureStackBackTrace(static_cast<DWORD>(skip), static_cast<DWORD>(scCallStack::mostFrames),
                                  const_cast<void**>(stack->addresses.data()), nullptr);
    return stack;
}

} // namespace tvut
