// Asks the system why a file cannot be read or written: the library reports only that it cannot.
#include "file_access.h"

#include "input_file.h"
#include "system_reason.h"

#include <windows.h>

namespace tool::prof {

namespace {

bool isFolder(DWORD attributes) {
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::wstring folderOf(const std::wstring& path) {
    const std::size_t separator = path.find_last_of(L"\\/");
    return separator == std::wstring::npos || separator == 0 ? std::wstring{} : path.substr(0, separator);
}

} // namespace

std::string whyNotReadable(const std::wstring& path) {
    if (isFolder(GetFileAttributesW(path.c_str())))
        return "is a folder";
    const InputFile file{path};
    return file.isOpen() ? std::string{} : systemReason(file.error());
}

std::string whyNotChangeable(const std::wstring& path) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return systemReason(GetLastError());
    CloseHandle(file);
    return {};
}

std::string whyNotWritable(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (isFolder(attributes))
        return "is a folder";
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0)
        return "the file is read-only";
    const std::wstring folder = folderOf(path);
    if (!folder.empty() && !isFolder(GetFileAttributesW((folder + L"\\").c_str())))
        return "no such folder";
    return {};
}

} // namespace tool::prof
