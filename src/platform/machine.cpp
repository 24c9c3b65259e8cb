#include "platform/machine.h"

#include "platform/wide.h"

#include <windows.h>

#include <psapi.h>

namespace tvut {

namespace {

// An exception must not pass through the system's frames; a monitor for which there is no memory is left out.
BOOL CALLBACK AddMonitor(HMONITOR monitor, HDC, LPRECT, LPARAM monitors) {
    MONITORINFO info{};
    info.cbSize = sizeof info;
    if (!GetMonitorInfoW(monitor, &info))
        return TRUE;
    const RECT& at = info.rcMonitor;
    try {
        reinterpret_cast<std::vector<scMonitor>*>(monitors)->push_back(
            {at.left, at.top, at.right - at.left, at.bottom - at.top,
             (info.dwFlags & MONITORINFOF_PRIMARY) != 0});
    } catch (...) {
        return FALSE;
    }
    return TRUE;
}

std::u16string LocaleText(LCTYPE what) {
    wchar_t text[16];
    const int length = GetLocaleInfoW(LOCALE_USER_DEFAULT, what, text, static_cast<int>(std::size(text)));
    return length > 0 ? std::u16string(FromWide(text), static_cast<std::size_t>(length - 1))
                      : std::u16string();
}

} // namespace

std::vector<scMonitor> PlatformMonitors() {
    std::vector<scMonitor> monitors;
    EnumDisplayMonitors(nullptr, nullptr, AddMonitor, reinterpret_cast<LPARAM>(&monitors));
    return monitors;
}

std::vector<scDriveRoom> PlatformDriveRooms() {
    std::vector<scDriveRoom> rooms;
    const DWORD there = GetLogicalDrives();
    for (unsigned number = 0; number < 26; ++number) {
        const wchar_t root[] = {static_cast<wchar_t>(L'A' + number), L':', L'\\', L'\0'};
        ULARGE_INTEGER free, total;
        if ((there >> number & 1) != 0 && GetDriveTypeW(root) == DRIVE_FIXED &&
            GetDiskFreeSpaceExW(root, &free, &total, nullptr))
            rooms.push_back({static_cast<char16_t>(root[0]), free.QuadPart, total.QuadPart});
    }
    return rooms;
}

scMemoryUse PlatformMemoryUse() noexcept {
    PROCESS_MEMORY_COUNTERS counters{};
    K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return {counters.WorkingSetSize, counters.PeakWorkingSetSize};
}

std::u16string PlatformUserLocale() {
    return LocaleText(LOCALE_SISO639LANGNAME) + u"-" + LocaleText(LOCALE_SISO3166CTRYNAME);
}

} // namespace tvut
