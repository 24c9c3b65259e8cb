// A folder is removed only if four things hold: its name has the form that processes give, it is a folder
// and no link, it belongs to the same user, and its lock can be taken or it is old and has none. The lock
// is held while the folder is emptied and removed last, so a sweep that is interrupted is continued by the
// next.
#include "runtime/temp_files/sweep.h"

#include "platform/folder_walk.h"
#include "platform/left_files.h"
#include "platform/long_path.h"
#include "platform/private_folder.h"
#include "platform/wide.h"
#include "runtime/diagnostics.h"
#include "runtime/temp_files/own_folder.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr ULONGLONG longestSweep = 2000; // milliseconds

bool IsProcessFolder(std::wstring_view name) {
    const std::size_t dash = std::min(name.find(L'-'), name.size() - 1);
    return PlatformIsHexadecimal(name.substr(0, dash), 8) && PlatformIsHexadecimal(name.substr(dash + 1), 16);
}

bool IsFolderItself(DWORD attributes) {
    return (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) ==
           FILE_ATTRIBUTE_DIRECTORY;
}

void Tell(const std::wstring& folder) {
    clsDiagnosticLine()
        .Put(u"clsTempFileRemover: '")
        .Put(FromWide(std::wstring_view(folder)))
        .Put(u"' of a process that is gone removed")
        .Write();
}

// The lock goes last: until then it tells the next sweep that the process is dead. While it is open, no other
// sweep is at work here.
bool SweepLocked(const std::wstring& folder, const std::wstring& lockPath, clsFileHandle lock,
                 ULONGLONG deadline) {
    if (PlatformEmptyFolder(folder.c_str(), tempLockName, deadline) != ERROR_SUCCESS)
        return false;
    lock.Reset();
    return DeleteFileW(lockPath.c_str()) && RemoveDirectoryW(folder.c_str());
}

bool Sweep(const std::wstring& path, const FILETIME& written, ULONGLONG deadline) {
    const std::wstring folder = PlatformLongPath(path);
    const std::wstring lockPath = PlatformLongPath(path + L"\\" + tempLockName);
    clsFileHandle lock(CreateFileW(lockPath.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                   FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (lock)
        return SweepLocked(folder, lockPath, std::move(lock), deadline);
    // A process makes its lock right after its folder: a young one without a lock may be a living process's.
    return GetLastError() == ERROR_FILE_NOT_FOUND && PlatformIsOld(written) &&
           PlatformRemoveTree(folder.c_str(), deadline) == ERROR_SUCCESS;
}

void SweepAll(const std::wstring& root) {
    const ULONGLONG deadline = GetTickCount64() + longestSweep;
    const DWORD attributes = GetFileAttributesW(PlatformLongPath(root).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || !IsFolderItself(attributes))
        return;
    WIN32_FIND_DATAW entry;
    const clsFindHandle search(FindFirstFileExW(PlatformLongPath(root + L"\\*").c_str(), FindExInfoBasic,
                                                &entry, FindExSearchNameMatch, nullptr, 0));
    if (!search)
        return;
    do {
        const std::wstring folder = root + L"\\" + entry.cFileName;
        if (IsFolderItself(entry.dwFileAttributes) && IsProcessFolder(entry.cFileName) &&
            PlatformIsOwnFolder(PlatformLongPath(folder).c_str()) &&
            Sweep(folder, entry.ftLastWriteTime, deadline))
            Tell(folder);
    } while (GetTickCount64() <= deadline && FindNextFileW(search.Get(), &entry));
}

} // namespace

void UtilpSweepTempFolders() noexcept {
    try {
        const clsOwnIdentity processItself;
        const std::wstring root = UtilpTempRoot();
        if (!root.empty())
            SweepAll(root);
    } catch (...) { // without memory the next process sweeps
    }
}

} // namespace tvut
