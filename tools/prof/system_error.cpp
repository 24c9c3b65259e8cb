// Asks the system why a file cannot be read or written: the library reports only that it cannot.
#include "system_error.h"

#include "input_file.h"
#include "text_io.h"

#include <windows.h>

namespace prof_tool {

namespace {

struct Known {
    DWORD error;
    const char* reason;
};

constexpr Known knownErrors[] = {
    {ERROR_FILE_NOT_FOUND, "no such file"},
    {ERROR_PATH_NOT_FOUND, "no such folder"},
    {ERROR_INVALID_NAME, "not a valid file name"},
    {ERROR_BAD_PATHNAME, "not a valid file name"},
    {ERROR_ACCESS_DENIED, "access denied"},
    {ERROR_SHARING_VIOLATION, "in use by another program"},
    {ERROR_LOCK_VIOLATION, "in use by another program"},
    {ERROR_DISK_FULL, "no space left on the disk"},
    {ERROR_BROKEN_PIPE, "the reader has gone away"},
    {ERROR_NO_DATA, "the reader has gone away"},
    {ERROR_PIPE_NOT_CONNECTED, "the reader has gone away"},
};

std::string ownWords(DWORD error) {
    for (const Known& known : knownErrors)
        if (known.error == error)
            return known.reason;
    return {};
}

std::string systemWords(DWORD error) {
    wchar_t text[512];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        error, 0, text, static_cast<DWORD>(std::size(text)), nullptr);
    const std::wstring_view words{text, length};
    const std::size_t last = words.find_last_not_of(L"\r\n .");
    return last == std::wstring_view::npos ? std::string{} : toUtf8(words.substr(0, last + 1));
}

bool isFolder(DWORD attributes) {
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::wstring folderOf(const std::wstring& path) {
    const std::size_t separator = path.find_last_of(L"\\/");
    return separator == std::wstring::npos || separator == 0 ? std::wstring{} : path.substr(0, separator);
}

} // namespace

std::string systemReason(unsigned long error) {
    if (std::string words = ownWords(error); !words.empty())
        return words;
    if (std::string words = systemWords(error); !words.empty())
        return words;
    return "system error " + std::to_string(error);
}

std::string whyNotReadable(const std::wstring& path) {
    if (isFolder(GetFileAttributesW(path.c_str())))
        return "is a folder";
    const InputFile file{path};
    return file.isOpen() ? std::string{} : systemReason(file.error());
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

} // namespace prof_tool
