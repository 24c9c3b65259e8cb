// Memory that ends where an inaccessible page begins: one byte too many, read or written, is a crash.
#pragma once

#include <windows.h>

#include <cstring>
#include <string_view>

namespace testing_prof {

class PageEnd {
  public:
    PageEnd()
        : memory_(static_cast<char*>(
              VirtualAlloc(nullptr, 3 * kPage, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE))) {
        DWORD before;
        VirtualProtect(memory_ + 2 * kPage, kPage, PAGE_NOACCESS, &before);
    }
    PageEnd(const PageEnd&) = delete;
    PageEnd& operator=(const PageEnd&) = delete;
    ~PageEnd() { VirtualFree(memory_, 0, MEM_RELEASE); }

    // The last bytes before the inaccessible page, filled with 0xCC.
    char* last(size_t bytes) {
        std::memset(memory_, 0xCC, 2 * kPage);
        return memory_ + 2 * kPage - bytes;
    }
    wchar_t* lastUnits(size_t units) { return reinterpret_cast<wchar_t*>(last(units * sizeof(wchar_t))); }

    // A text whose terminator is the last unit.
    wchar_t* text(std::wstring_view characters) { return text(characters, characters.size() + 1); }
    // A text in a buffer of some units that ends there.
    wchar_t* text(std::wstring_view characters, size_t units) {
        wchar_t* const place = lastUnits(units);
        std::memcpy(place, characters.data(), characters.size() * sizeof(wchar_t));
        place[characters.size()] = L'\0';
        return place;
    }

  private:
    static constexpr size_t kPage = 4096;
    char* memory_;
};

} // namespace testing_prof
