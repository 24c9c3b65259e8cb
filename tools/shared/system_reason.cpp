// The common errors' words, and the way to the system's for the others.
#include "system_reason.h"

#include "text_io.h"

#include <windows.h>

namespace tool {

namespace {

struct scKnown {
    DWORD error;
    const char* reason;
};

constexpr scKnown knownErrors[] = {
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

std::string OwnWords(DWORD error) {
    for (const scKnown& known : knownErrors)
        if (known.error == error)
            return known.reason;
    return {};
}

std::string SystemWords(DWORD error) {
    wchar_t text[512];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        error, 0, text, static_cast<DWORD>(std::size(text)), nullptr);
    const std::wstring_view words{text, length};
    const std::size_t last = words.find_last_not_of(L"\r\n .");
    return last == std::wstring_view::npos ? std::string{} : ToUtf8(words.substr(0, last + 1));
}

} // namespace

std::string SystemReason(unsigned long error) {
    if (std::string words = OwnWords(error); !words.empty())
        return words;
    if (std::string words = SystemWords(error); !words.empty())
        return words;
    return "system error " + std::to_string(error);
}

} // namespace tool
