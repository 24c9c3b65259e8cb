// The system raises the overflow when the guard page above the kept part is touched. A stack that was made
// with all of its memory in place has its guard at the very end, with next to nothing below it, so there the
// guard is put where it belongs.
#include "platform/thread_stack.h"

#include <cstdint>
#include <windows.h>

namespace tvut {

namespace {

constexpr ULONG kept = 32 * 1024;
constexpr std::size_t page = 4096;

struct scStack {
    std::uintptr_t begin = 0, end = 0; // of what was reserved
};

// The pages in use reach up to the stack's end; all of it was reserved at once.
scStack OwnStack() noexcept {
    MEMORY_BASIC_INFORMATION here{};
    if (VirtualQuery(&here, &here, sizeof here) == 0)
        return {};
    return {reinterpret_cast<std::uintptr_t>(here.AllocationBase),
            reinterpret_cast<std::uintptr_t>(here.BaseAddress) + here.RegionSize};
}

// Between the first page, which is never used, and where the stack grows to.
void RaiseGuard(const scStack& stack) noexcept {
    MEMORY_BASIC_INFORMATION last{};
    const auto place = stack.begin + page + kept;
    const bool isAtEnd =
        VirtualQuery(reinterpret_cast<const void*>(stack.begin + page), &last, sizeof last) != 0 &&
        (last.Protect & PAGE_GUARD) != 0 &&
        reinterpret_cast<std::uintptr_t>(last.BaseAddress) + last.RegionSize <= place;
    DWORD before = 0;
    if (isAtEnd && reinterpret_cast<std::uintptr_t>(&last) > place + 2 * page)
        VirtualProtect(reinterpret_cast<void*>(place), page, PAGE_READWRITE | PAGE_GUARD, &before);
}

} // namespace

void PlatformKeepStackForOverflow() noexcept {
    const scStack stack = OwnStack();
    ULONG guarantee = 0;
    if (stack.end - stack.begin < 10 * kept || !SetThreadStackGuarantee(&guarantee) || guarantee >= kept)
        return;
    guarantee = kept;
    if (SetThreadStackGuarantee(&guarantee))
        RaiseGuard(stack);
}

} // namespace tvut
