// The walk keeps one path and a stack of levels, in pages of its own, because a process that ends may have no
// heap any more. Each folder on the stack is held open and not shared for deletion: nobody can rename it or
// put a link in its place, so a path below it leads where it led when the folder was looked at. The handle,
// not the path, tells whether it is a link.
#include "platform/folder_walk.h"

#include "platform/long_path.h"
#include "platform/owned.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <memory>

namespace tvut {

namespace {

constexpr std::size_t longestPath = 32767;
constexpr std::size_t mostLevels = longestPath / 2; // a separator and one character each

struct scLevel {
    clsFileHandle folder;
    clsFindHandle search; // none until its first entry is looked for
    std::size_t length;   // of the folder's path
};

struct scSpace {
    std::array<wchar_t, longestPath + 1> path;
    alignas(scLevel) std::array<std::byte, mostLevels * sizeof(scLevel)> levels;
};

struct scSpacePolicy {
    using Value = scSpace*;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { VirtualFree(value, 0, MEM_RELEASE); }
};
using clsSpace = clsOwned<scSpacePolicy>;

bool IsGone(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

bool IsFolderToEnter(DWORD attributes) {
    return (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) ==
           FILE_ATTRIBUTE_DIRECTORY;
}

DWORD ErrorOf(BOOL succeeded) {
    return succeeded || IsGone(GetLastError()) ? ERROR_SUCCESS : GetLastError();
}

// A file, a link, or an empty folder.
DWORD RemoveOne(const wchar_t* path, DWORD attributes) {
    auto* const remove = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? RemoveDirectoryW : DeleteFileW;
    const bool readOnly = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (readOnly)
        SetFileAttributesW(path, attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
    const DWORD error = ErrorOf(remove(path));
    if (error != ERROR_SUCCESS && readOnly)
        SetFileAttributesW(path, attributes);
    return error;
}

class clsFolderWalk {
  public:
    clsFolderWalk(std::wstring_view except, ULONGLONG deadline) noexcept
        : except_(except), deadline_(deadline),
          space_(static_cast<scSpace*>(
              VirtualAlloc(nullptr, sizeof(scSpace), MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE))) {}

    DWORD Empty(std::wstring_view path) noexcept {
        if (!space_)
            return ERROR_NOT_ENOUGH_MEMORY;
        const auto [prefix, rest] = PlatformVerbatimPath(path);
        const std::size_t length = prefix.size() + rest.size();
        if (length > longestPath)
            return ERROR_FILENAME_EXCED_RANGE;
        wchar_t* const afterPrefix = std::copy(prefix.begin(), prefix.end(), Path());
        *std::copy(rest.begin(), rest.end(), afterPrefix) = L'\0';
        Enter(length);
        while (depth_ > 0) {
            if (GetTickCount64() > deadline_)
                return Abandon();
            if (FindNext())
                TakeEntry();
            else
                Leave();
        }
        return error_;
    }

  private:
    wchar_t* Path() noexcept { return space_.Get()->path.data(); }
    scLevel* Levels() noexcept { return reinterpret_cast<scLevel*>(space_.Get()->levels.data()); }
    scLevel& Top() noexcept { return Levels()[depth_ - 1]; }

    void Note(DWORD error) noexcept {
        if (error_ == ERROR_SUCCESS && !IsGone(error))
            error_ = error;
    }

    // The folder that the path names.
    void Enter(std::size_t length) noexcept {
        clsFileHandle folder(CreateFileW(Path(), FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                         nullptr, OPEN_EXISTING,
                                         FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
        BY_HANDLE_FILE_INFORMATION found;
        if (!folder || !GetFileInformationByHandle(folder.Get(), &found))
            Note(GetLastError());
        else if (!IsFolderToEnter(found.dwFileAttributes))
            Note(ERROR_DIRECTORY); // it is something else by now
        else
            std::construct_at(&Levels()[depth_++], scLevel{std::move(folder), {}, length});
    }

    bool FindNext() noexcept {
        scLevel& top = Top();
        if (top.search)
            return FindNextFileW(top.search.Get(), &entry_) != FALSE;
        if (!Append(L"*"))
            return false;
        top.search = clsFindHandle(
            FindFirstFileExW(Path(), FindExInfoBasic, &entry_, FindExSearchNameMatch, nullptr, 0));
        if (!top.search)
            Note(GetLastError());
        return static_cast<bool>(top.search);
    }

    bool Append(std::wstring_view name) noexcept {
        const std::size_t length = Top().length;
        if (name.size() + 1 > longestPath - length) {
            Note(ERROR_FILENAME_EXCED_RANGE);
            return false;
        }
        Path()[length] = L'\\';
        *std::copy(name.begin(), name.end(), Path() + length + 1) = L'\0';
        return true;
    }

    void TakeEntry() noexcept {
        const std::wstring_view name = entry_.cFileName;
        if (name == L"." || name == L".." || (depth_ == 1 && name == except_) || !Append(name))
            return;
        if (IsFolderToEnter(entry_.dwFileAttributes))
            Enter(Top().length + 1 + name.size());
        else
            Note(RemoveOne(Path(), entry_.dwFileAttributes));
    }

    void Leave() noexcept {
        const std::size_t length = Top().length;
        std::destroy_at(&Top());
        if (--depth_ == 0)
            return;
        Path()[length] = L'\0';
        const DWORD attributes = GetFileAttributesW(Path());
        Note(attributes == INVALID_FILE_ATTRIBUTES ? GetLastError() : RemoveOne(Path(), attributes));
    }

    DWORD Abandon() noexcept {
        for (; depth_ > 0; --depth_)
            std::destroy_at(&Top());
        return ERROR_TIMEOUT;
    }

    std::wstring_view except_;
    ULONGLONG deadline_;
    clsSpace space_;
    std::size_t depth_ = 0;
    DWORD error_ = ERROR_SUCCESS;
    WIN32_FIND_DATAW entry_;
};

} // namespace

DWORD PlatformEmptyFolder(const wchar_t* path, std::wstring_view except, ULONGLONG deadline) noexcept {
    return clsFolderWalk(except, deadline).Empty(path);
}

DWORD PlatformRemoveTree(const wchar_t* path, ULONGLONG deadline) noexcept {
    if (DeleteFileW(path)) // mostly
        return ERROR_SUCCESS;
    const DWORD attributes = GetFileAttributesW(path);
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return ErrorOf(FALSE);
    const DWORD error = RemoveOne(path, attributes);
    if (error == ERROR_SUCCESS || !IsFolderToEnter(attributes))
        return error;
    const DWORD inside = PlatformEmptyFolder(path, {}, deadline);
    return inside == ERROR_SUCCESS ? RemoveOne(path, attributes) : inside;
}

} // namespace tvut
