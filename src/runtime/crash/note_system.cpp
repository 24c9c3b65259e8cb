// Apart from system_facts.cpp: this is asked while all is well, by whatever calls the system has. What a
// crash asks itself stands there.
#include "platform/processor.h"
#include "runtime/crash/system_facts.h"

#include <windows.h>

namespace tvut {

namespace {

// The one call that tells the truth to programs that name no version in their manifest.
OSVERSIONINFOEXW Version() noexcept {
    OSVERSIONINFOEXW version{};
    version.dwOSVersionInfoSize = sizeof version;
    using GetVersion = LONG(NTAPI*)(OSVERSIONINFOEXW*);
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion");
    if (found)
        reinterpret_cast<GetVersion>(reinterpret_cast<void*>(found))(&version);
    return version;
}

} // namespace

void UtilpNoteSystem(scPreparation& preparation) noexcept {
    const OSVERSIONINFOEXW version = Version();
    SYSTEM_INFO system{};
    GetSystemInfo(&system);
    MEMORYSTATUSEX memory{};
    memory.dwLength = sizeof memory;
    GlobalMemoryStatusEx(&memory);
    const auto addresses = reinterpret_cast<std::uintptr_t>(system.lpMaximumApplicationAddress);
    preparation.system = {.major = version.dwMajorVersion,
                          .minor = version.dwMinorVersion,
                          .build = version.dwBuildNumber,
                          .processors = system.dwNumberOfProcessors,
                          .memoryThere = static_cast<std::uint32_t>(memory.ullTotalPhys >> 20),
                          .addressesThere = static_cast<std::uint32_t>(addresses >> 20)};
    const scProcessorIdentity processor = PlatformProcessorIdentity();
    preparation.dumpSystem = {.processorLevel = system.wProcessorLevel,
                              .processorRevision = system.wProcessorRevision,
                              .processors = static_cast<std::uint8_t>(
                                  system.dwNumberOfProcessors < 255 ? system.dwNumberOfProcessors : 255),
                              .productType = version.wProductType,
                              .major = version.dwMajorVersion,
                              .minor = version.dwMinorVersion,
                              .build = version.dwBuildNumber,
                              .suiteMask = version.wSuiteMask,
                              .vendor = processor.vendor,
                              .processorVersion = processor.version,
                              .processorFeatures = processor.features};
    preparation.pageSize = system.dwPageSize;
    preparation.lastAddress = static_cast<std::uint32_t>(addresses);
    preparation.processId = GetCurrentProcessId();
    preparation.drives.Look();
}

} // namespace tvut
