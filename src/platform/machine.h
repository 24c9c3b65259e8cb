// What machine and user a program runs for, in words of a support desk: screens, drives, memory, language.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tvut {

struct scMonitor { // pixels
    std::int32_t left, top, width, height;
    bool isPrimary;
};
std::vector<scMonitor> PlatformMonitors(); // throws std::bad_alloc

struct scDriveRoom { // bytes
    char16_t letter;
    std::uint64_t free, total;
};
// Of drives that are built in: others may let their caller wait. Throws std::bad_alloc.
std::vector<scDriveRoom> PlatformDriveRooms();

struct scMemoryUse { // of this process, bytes
    std::uint64_t now, most;
};
scMemoryUse PlatformMemoryUse() noexcept;

// "de-AT", as the user has chosen how dates and numbers are written. Throws std::bad_alloc.
std::u16string PlatformUserLocale();

} // namespace tvut
