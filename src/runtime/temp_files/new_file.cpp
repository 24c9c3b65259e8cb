// A file is made by the one call that fails where it exists, so that two processes never get the same one.
// The first number to try is a hint; where all numbers from it on are taken, those before it are tried as
// well. A denied name may be that of a file that is about to go, so the next one is tried; after eight in a
// row it is the folder that denies.
#include "runtime/temp_files/new_file.h"

#include "platform/long_path.h"
#include "platform/owned.h"
#include "runtime/digits.h"

namespace tvut {

namespace {

constexpr std::uint32_t lastNumber = 9999;

DWORD MakeOne(const std::wstring& path, bool isFolder) {
    if (isFolder)
        return CreateDirectoryW(path.c_str(), nullptr) ? ERROR_SUCCESS : GetLastError();
    const clsFileHandle file(
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    return file ? ERROR_SUCCESS : GetLastError();
}

constexpr int mostDenied = 8; // in a row; after that it is the folder

bool IsThere(DWORD error) {
    return error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS;
}

// Access is denied to any name in a folder of others, but also to the one name of a file that is about to go.
bool MayBeAboutToGo(DWORD error, const std::wstring& path) {
    return error == ERROR_ACCESS_DENIED && (GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES ||
                                            GetLastError() == ERROR_ACCESS_DENIED);
}

DWORD MakeFrom(clsWishedPaths& paths, bool isFolder, std::uint32_t& number, std::uint32_t last) {
    for (int denied = 0; number <= last; ++number) {
        paths.Number(number);
        const DWORD error = MakeOne(paths.SystemPath(), isFolder);
        const bool isDenied = !IsThere(error) && MayBeAboutToGo(error, paths.SystemPath());
        denied = isDenied ? denied + 1 : 0;
        if (!IsThere(error) && (!isDenied || denied > mostDenied))
            return error;
    }
    return ERROR_FILE_EXISTS;
}

} // namespace

clsWishedPaths::clsWishedPaths(const std::wstring& folder, const scTempFileWish& wish)
    : wish_(wish), path_(folder) {
    if (!path_.ends_with(L'\\'))
        path_ += L'\\';
    leafAt_ = path_.size();
    Number(1);
}

void clsWishedPaths::Number(std::uint32_t number) {
    path_.resize(leafAt_);
    path_ += wish_.stem;
    if (number > 1)
        path_.append(L" (").append(clsDigits<wchar_t>(number, 10, 1).View()).append(L")");
    path_ += wish_.extension;
    systemPath_ = PlatformLongPath(PlatformPlainPath(path_));
}

unsigned long UtilpMakeNewFile(clsWishedPaths& paths, bool isFolder, std::uint32_t& number) {
    const std::uint32_t first = number;
    const DWORD error = MakeFrom(paths, isFolder, number, lastNumber);
    if (error != ERROR_FILE_EXISTS || first == 1)
        return error;
    number = 1;
    return MakeFrom(paths, isFolder, number, first - 1);
}

} // namespace tvut
