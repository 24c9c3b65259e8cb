// A listing asks the system for many entries a call and for no short names. A folder that is any reparse
// point counts as a link and is not entered; a file only when it is a symbolic link, since the contents of
// other reparse points are the file's own.
#include "platform/file_finder.h"

#include "platform/exception.h"
#include "platform/long_path.h"
#include "platform/owned.h"
#include "platform/wide.h"

namespace tvut {

namespace {

std::uint64_t Large(DWORD low, DWORD high) {
    return std::uint64_t{high} << 32 | low;
}

std::uint64_t Time(const FILETIME& time) {
    return Large(time.dwLowDateTime, time.dwHighDateTime);
}

// Of WIN32_FIND_DATAW and WIN32_FILE_ATTRIBUTE_DATA.
template <class Data>
scFoundFile Found(const Data& data) {
    return {{},
            data.dwFileAttributes,
            Time(data.ftCreationTime),
            Time(data.ftLastAccessTime),
            Time(data.ftLastWriteTime),
            Large(data.nFileSizeLow, data.nFileSizeHigh),
            (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0,
            (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0};
}

// Files have reparse points for other reasons, too: to be fetched from elsewhere, or to share their bytes.
bool IsLink(const WIN32_FIND_DATAW& data) {
    return (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ||
            data.dwReserved0 == IO_REPARSE_TAG_SYMLINK);
}

bool IsDots(std::wstring_view name) {
    return name == L"." || name == L"..";
}

} // namespace

std::vector<std::u16string> PlatformFindFiles(const std::u16string& path) {
    std::vector<std::u16string> names;
    WIN32_FIND_DATAW data;
    const clsFindHandle search(FindFirstFileW(PlatformLongPath(ToWide(path.c_str())).c_str(), &data));
    if (!search)
        return names;
    do {
        if (!(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
            names.emplace_back(FromWide(std::wstring_view(data.cFileName)));
    } while (FindNextFileW(search.Get(), &data));
    return names;
}

std::optional<scFoundFile> PlatformLookAt(const std::u16string& path, unsigned long& error) {
    WIN32_FILE_ATTRIBUTE_DATA data;
    error = ERROR_SUCCESS;
    if (GetFileAttributesExW(PlatformLongPath(ToWide(path.c_str())).c_str(), GetFileExInfoStandard, &data))
        return Found(data);
    error = GetLastError();
    return {};
}

std::vector<scFoundFile> PlatformListFolder(const std::u16string& folder) {
    std::vector<scFoundFile> files;
    WIN32_FIND_DATAW data;
    const std::wstring pattern = PlatformLongPath(std::wstring(ToWide(folder.c_str())) + L"\\*");
    const clsFindHandle search(FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &data,
                                                FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH));
    BOOL isThere = static_cast<bool>(search);
    for (; isThere; isThere = FindNextFileW(search.Get(), &data)) {
        if (IsDots(data.cFileName))
            continue;
        files.push_back(Found(data));
        files.back().name = FromWide(std::wstring_view(data.cFileName));
        files.back().isLink = IsLink(data);
    }
    const DWORD error = GetLastError();
    if (error != ERROR_NO_MORE_FILES && error != ERROR_FILE_NOT_FOUND) // the root of a drive may be empty
        throw clsException("folder cannot be listed", error);
    return files;
}

} // namespace tvut
