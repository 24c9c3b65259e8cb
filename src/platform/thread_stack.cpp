#include "platform/thread_stack.h"

#include <cstdint>
#include <windows.h>

namespace tvut {

namespace {

constexpr ULONG kept = 32 * 1024;

// The pages in use reach up to the stack's end; all of it was reserved at once.
std::size_t ReservedStack() noexcept {
    MEMORY_BASIC_INFORMATION here{};
    if (VirtualQuery(&here, &here, sizeof here) == 0)
        return 0;
    const auto end = reinterpret_cast<std::uintptr_t>(here.BaseAddress) + here.RegionSize;
    return end - reinterpret_cast<std::uintptr_t>(here.AllocationBase);
}

} // namespace

void PlatformKeepStackForOverflow() noexcept {
    ULONG wanted = 0;
    if (ReservedStack() < 10 * kept || !SetThreadStackGuarantee(&wanted) || wanted >= kept)
        return;
    wanted = kept;
    SetThreadStackGuarantee(&wanted);
}

} // namespace tvut
