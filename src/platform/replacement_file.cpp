// What a killed process has left is known by its name, its age, and that nobody has it open: it is opened
// without sharing, to be deleted when it is closed. A young one may be between the end of its writing and its
// renaming. Folders that were looked at are known by their hashes; where two have the same, one of them is
// not looked at.
#include "platform/replacement_file.h"

#include "platform/left_files.h"
#include "platform/long_path.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <string_view>

namespace tvut {

namespace {

constexpr std::wstring_view prefix = L"~PRF", ending = L".tmp", keptEnding = L".sav";
constexpr std::size_t digits = 8;
constexpr ULONGLONG longestSearch = 500; // milliseconds

// ---- Those that were left ----------------------------------------------------------------------------

// Zero for a place that is free.
std::array<std::atomic<std::uint32_t>, 256> foldersLookedAt;

// Whether this is the first time; without room for more folders, no longer.
bool IsFirstTime(std::wstring_view folder) {
    const std::uint32_t hash = std::hash<std::wstring_view>{}(folder) | 1;
    for (std::size_t tried = 0; tried < foldersLookedAt.size(); ++tried) {
        auto& place = foldersLookedAt[(hash / 2 + tried) % foldersLookedAt.size()];
        std::uint32_t there = 0;
        if (place.compare_exchange_strong(there, hash))
            return true;
        if (there == hash)
            return false;
    }
    return false;
}

bool IsReplacement(std::wstring_view name) {
    return name.size() == prefix.size() + digits + ending.size() && name.starts_with(prefix) &&
           name.ends_with(ending) && PlatformIsHexadecimal(name.substr(prefix.size(), digits), digits);
}

void RemoveUnlessOpen(const std::wstring& path) {
    const clsFileHandle file(CreateFileW(path.c_str(), DELETE, 0, nullptr, OPEN_EXISTING,
                                         FILE_FLAG_DELETE_ON_CLOSE | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
}

void RemoveLeft(const std::wstring& folder) {
    const clsLastErrorKept lastError;
    const ULONGLONG deadline = GetTickCount64() + longestSearch;
    WIN32_FIND_DATAW entry;
    const clsFindHandle search(FindFirstFileW(PlatformLongPath(folder + L"~PRF*.tmp").c_str(), &entry));
    if (!search)
        return;
    do {
        if (IsReplacement(entry.cFileName) && (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 &&
            PlatformIsOld(entry.ftLastWriteTime))
            RemoveUnlessOpen(PlatformLongPath(folder + entry.cFileName));
    } while (GetTickCount64() < deadline && FindNextFileW(search.Get(), &entry));
}

std::wstring LeafOf(unsigned number) {
    std::wstring leaf(prefix);
    for (std::size_t left = digits; left-- > 0;)
        leaf += L"0123456789ABCDEF"[number >> 4 * left & 0xF];
    return leaf.append(ending);
}

} // namespace

clsFileHandle PlatformMakeReplacement(const std::wstring& folder, std::wstring& name) {
    if (IsFirstTime(PlatformFullPath(folder.empty() ? L"." : folder)))
        RemoveLeft(folder);
    clsFileHandle file;
    const auto seed =
        static_cast<unsigned>(GetTickCount64()) ^ GetCurrentProcessId() << 16 ^ GetCurrentThreadId();
    for (unsigned attempt = 0; !file && attempt < 100; ++attempt) {
        name = PlatformLongPath(folder + LeafOf(seed + attempt * 0x9E3779B1u));
        file = clsFileHandle(
            CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!file && GetLastError() != ERROR_FILE_EXISTS)
            break;
    }
    return file;
}

bool PlatformKeepReplacement(std::wstring& name) {
    std::wstring kept = name.substr(0, name.size() - ending.size()).append(keptEnding);
    if (!MoveFileExW(name.c_str(), kept.c_str(), 0))
        return false;
    name = std::move(kept);
    return true;
}

} // namespace tvut
