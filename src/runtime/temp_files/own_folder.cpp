// The folder's name holds the process's number and start, which no other process ever shares. The lock file
// in it is open without sharing while the process lives: the system closes it however the process ends, and
// whoever can open it knows that the folder is nobody's any more.
#include "runtime/temp_files/own_folder.h"

#include "platform/known_folders.h"
#include "platform/long_path.h"
#include "platform/private_folder.h"
#include "platform/wide.h"

#include <array>
#include <bit>

namespace tvut {

namespace {

constexpr unsigned mostAttempts = 16;

// When this process began, in units of 100 ns: with its number it is the only one ever.
std::uint64_t StartOfProcess() {
    FILETIME start{}, unused;
    GetProcessTimes(GetCurrentProcess(), &start, &unused, &unused, &unused);
    return std::bit_cast<std::uint64_t>(start);
}

std::wstring Hexadecimal(std::uint64_t number) {
    std::wstring text;
    do
        text.insert(text.begin(), L"0123456789abcdef"[number % 16]);
    while ((number /= 16) != 0);
    return text;
}

} // namespace

std::wstring UtilpTempRoot() {
    const std::u16string folder = clsKnownFolders().Folder(KnownFolder::temp);
    if (folder.empty())
        return {};
    std::wstring root(ToWide(folder.c_str()), folder.size());
    return root.append(root.ends_with(L'\\') ? L"" : L"\\").append(L"tvUT22");
}

DWORD clsOwnTempFolder::Make() {
    if (!path_.empty())
        return ERROR_SUCCESS;
    const clsOwnIdentity processItself;
    const std::wstring root = UtilpTempRoot();
    if (root.empty())
        return ERROR_PATH_NOT_FOUND;
    CreateDirectoryW(PlatformLongPath(root).c_str(), nullptr);
    return MakeNumbered(root);
}

// A copy of the library, or one that was unloaded before, may have the folder of the process's own start:
// then a later start stands in. A folder that was there before is never taken over.
DWORD clsOwnTempFolder::MakeNumbered(const std::wstring& root) {
    const std::wstring beginning = root + L"\\" + Hexadecimal(GetCurrentProcessId()) + L"-";
    DWORD error = ERROR_ALREADY_EXISTS;
    for (unsigned attempt = 0; error == ERROR_ALREADY_EXISTS && attempt < mostAttempts; ++attempt) {
        std::wstring path = beginning + Hexadecimal(StartOfProcess() + attempt);
        std::wstring systemPath = PlatformLongPath(path);
        std::wstring lockPath = PlatformLongPath(path + L"\\" + tempLockName);
        error = PlatformMakePrivateFolder(systemPath.c_str());
        if (error != ERROR_SUCCESS)
            continue;
        lock_ = clsFileHandle(CreateFileW(lockPath.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                          FILE_ATTRIBUTE_HIDDEN, nullptr));
        if (!lock_) {
            error = GetLastError();
            RemoveDirectoryW(systemPath.c_str());
            return error;
        }
        path_ = std::move(path);
        systemPath_ = std::move(systemPath);
        lockPath_ = std::move(lockPath);
    }
    return error;
}

void clsOwnTempFolder::End() noexcept {
    if (!lock_)
        return;
    lock_.Reset();
    DeleteFileW(lockPath_.c_str());
    RemoveDirectoryW(systemPath_.c_str());
    path_.clear();
}

} // namespace tvut
