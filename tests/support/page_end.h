// Memory that ends where an inaccessible page begins: one byte too many, read or written, is a crash.
#pragma once

#include <windows.h>

#include <cstring>
#include <string_view>

namespace testing_prof {

class clsPageEnd {
  public:
    clsPageEnd()
        : memory_(static_cast<char*>(
              VirtualAlloc(nullptr, 3 * pageBytes, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE))) {
        DWORD before;
        VirtualProtect(memory_ + 2 * pageBytes, pageBytes, PAGE_NOACCESS, &before);
    }
    clsPageEnd(const clsPageEnd&) = delete;
    clsPageEnd& operator=(const clsPageEnd&) = delete;
    ~clsPageEnd() { VirtualFree(memory_, 0, MEM_RELEASE); }

    // The last bytes before the inaccessible page, filled with 0xCC.
    char* Last(size_t bytes) {
        std::memset(memory_, 0xCC, 2 * pageBytes);
        return memory_ + 2 * pageBytes - bytes;
    }
    wchar_t* LastUnits(size_t units) { return reinterpret_cast<wchar_t*>(Last(units * sizeof(wchar_t))); }

    // A text whose terminator is the last unit.
    wchar_t* Text(std::wstring_view characters) { return Text(characters, characters.size() + 1); }
    // A text in a buffer of some units that ends there.
    wchar_t* Text(std::wstring_view characters, size_t units) {
        wchar_t* const place = LastUnits(units);
        std::memcpy(place, characters.data(), characters.size() * sizeof(wchar_t));
        place[characters.size()] = L'\0';
        return place;
    }

  private:
    static constexpr size_t pageBytes = 4096;
    char* memory_;
};

} // namespace testing_prof
