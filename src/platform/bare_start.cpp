// Apart from what uses the calls: finding them asks the loader.
#include "platform/bare_start.h"

#include "platform/bare_calls.h"

#include <array>
#include <atomic>

namespace tvut {

constinit scBareCalls g_bareCalls{};

namespace {

using Call = void*;

constexpr std::array names{
    "NtCreateFile",
    "NtWriteFile",
    "NtFlushBuffersFile",
    "NtSetInformationFile",
    "NtQueryInformationFile",
    "NtClose",
    "NtCreateSection",
    "NtMapViewOfSection",
    "NtUnmapViewOfSection",
    "NtQueryVirtualMemory",
    "NtReadVirtualMemory",
    "NtQuerySystemInformation",
    "NtQuerySystemTime",
    "NtOpenThread",
    "NtQueryInformationThread",
    "NtSuspendThread",
    "NtResumeThread",
    "NtGetContextThread",
    "NtSetEvent",
    "NtResetEvent",
    "NtWaitForSingleObject",
    "NtTerminateProcess",
    "RtlDllShutdownInProgress",
};
static_assert(sizeof(scBareCalls) == names.size() * sizeof(Call));

} // namespace

bool PlatformFindBareSystem() noexcept {
    static constinit std::atomic<bool> found{false};
    if (found.load(std::memory_order_acquire))
        return true;
    const HMODULE library = GetModuleHandleW(L"ntdll.dll");
    auto* call = reinterpret_cast<Call*>(&g_bareCalls);
    bool all = library != nullptr;
    for (const char* name : names) {
        *call = library ? reinterpret_cast<Call>(GetProcAddress(library, name)) : nullptr;
        all = all && *call;
        ++call;
    }
    found.store(all, std::memory_order_release);
    return all;
}

} // namespace tvut
