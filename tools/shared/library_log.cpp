#include "library_log.h"

#include "text_io.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace tool {

namespace {

constexpr const wchar_t* logVariable = L"TVUT22_LOG";
constexpr long long mostRead = 16 * 1024 * 1024; // bytes

using Path = std::array<wchar_t, MAX_PATH + 1>;

HANDLE OpenLog(const wchar_t* name, DWORD disposition, DWORD flags) {
    return CreateFileW(name, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                       disposition, flags, nullptr);
}

HANDLE MakeOwnLog() {
    Path folder{};
    Path name{};
    if (GetTempPathW(MAX_PATH, folder.data()) == 0 ||
        GetTempFileNameW(folder.data(), L"tvu", 0, name.data()) == 0)
        return INVALID_HANDLE_VALUE;
    SetEnvironmentVariableW(logVariable, name.data());
    return OpenLog(name.data(), OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE);
}

HANDLE MakeLog() {
    Path name{};
    const DWORD length = GetEnvironmentVariableW(logVariable, name.data(), static_cast<DWORD>(name.size()));
    if (length == 0 || length >= name.size())
        return MakeOwnLog();
    return OpenLog(name.data(), OPEN_ALWAYS, 0);
}

HANDLE Log() {
    static const HANDLE file = MakeLog(); // the process's end closes it
    return file;
}

long long LogSize() {
    LARGE_INTEGER size{};
    return GetFileSizeEx(Log(), &size) ? size.QuadPart : 0;
}

std::string ReadLog(long long start) {
    std::string text(static_cast<std::size_t>(std::clamp(LogSize() - start, 0ll, mostRead)), '\0');
    LARGE_INTEGER from{};
    from.QuadPart = start;
    DWORD length = 0;
    if (text.empty() || !SetFilePointerEx(Log(), from, nullptr, FILE_BEGIN) ||
        !ReadFile(Log(), text.data(), static_cast<DWORD>(text.size()), &length, nullptr))
        return {};
    text.resize(length);
    return text;
}

std::string FromCodePage(std::string_view text) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), size);
    return ToUtf8({wide.data(), static_cast<std::size_t>(length)});
}

} // namespace

clsLibraryLog::clsLibraryLog() : start_(LogSize()) {}

std::string clsLibraryLog::Text() const {
    return FromCodePage(ReadLog(start_));
}

std::vector<std::string> clsLibraryLog::Reports() const {
    const std::string text = Text();
    std::vector<std::string> reports;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find("\r\n"));
        rest.remove_prefix(std::min(line.size() + 2, rest.size()));
        const std::size_t start = std::min(line.find("ERR: "), line.find("WRN: "));
        if (start != std::string_view::npos)
            reports.emplace_back(line.substr(start));
    }
    return reports;
}

} // namespace tool
