// Asks the system why a file cannot be read or written: the library reports only that it cannot.
#include "file_access.h"

#include "input_file.h"
#include "system_reason.h"

#include <windows.h>

namespace tool::prof {

namespace {

bool IsFolder(DWORD attributes) {
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::wstring FolderOf(const std::wstring& path) {
    const std::size_t separator = path.find_last_of(L"\\/");
    return separator == std::wstring::npos || separator == 0 ? std::wstring{} : path.substr(0, separator);
}

} // namespace

std::string WhyNotReadable(const std::wstring& path) {
    if (IsFolder(GetFileAttributesW(path.c_str())))
        return "is a folder";
    const clsInputFile file{path};
    return file.IsOpen() ? std::string{} : SystemReason(file.Error());
}

std::string WhyNotChangeable(const std::wstring& path) {
    const clsHandle file = FileHandle(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ,
                                                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    return file ? std::string{} : SystemReason(GetLastError());
}

std::string WhyNotWritable(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (IsFolder(attributes))
        return "is a folder";
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0)
        return "the file is read-only";
    const std::wstring folder = FolderOf(path);
    if (!folder.empty() && !IsFolder(GetFileAttributesW((folder + L"\\").c_str())))
        return "no such folder";
    return {};
}

} // namespace tool::prof
