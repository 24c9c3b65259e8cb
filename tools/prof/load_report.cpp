// Reads the library's lines from its log file.
#include "load_report.h"

#include "text_io.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace tool::prof {

namespace {

constexpr const wchar_t* logVariable = L"TVUT22_LOG";
constexpr std::string_view marker = "PROF load error line ";
constexpr std::string_view warningMarker = " WRN: ";
constexpr long long mostRead = 64 * 1024; // bytes; a load writes two lines, each with a limit

using Path = std::array<wchar_t, MAX_PATH + 1>;

HANDLE OpenLog(const wchar_t* name, DWORD disposition, DWORD flags) {
    return CreateFileW(name, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                       disposition, flags, nullptr);
}

HANDLE MakeOwnLog() {
    Path folder{};
    Path name{};
    if (GetTempPathW(MAX_PATH, folder.data()) == 0 ||
        GetTempFileNameW(folder.data(), L"prf", 0, name.data()) == 0)
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
    std::string text(static_cast<std::size_t>(std::min(LogSize() - start, mostRead)), '\0');
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

// The rest of the first line that has a mark; nothing when none has.
std::string_view BehindMark(std::string_view lines, std::string_view mark) {
    const std::size_t found = lines.find(mark);
    if (found == std::string_view::npos)
        return {};
    const std::string_view rest = lines.substr(found + mark.size());
    return rest.substr(0, rest.find('\r'));
}

} // namespace

clsLoadReport::clsLoadReport() : start_(LogSize()) {}

std::string clsLoadReport::Reason() const {
    const std::string lines = ReadLog(start_);
    const std::string_view error = BehindMark(lines, marker);
    const std::size_t colon = error.find(": '");
    const std::size_t quote = error.rfind('\'');
    if (colon == std::string_view::npos || quote < colon + 3)
        return {};
    const std::string message = FromCodePage(error.substr(colon + 3, quote - (colon + 3)));
    const std::string_view line = error.substr(0, colon);
    return line == "0" ? message : "line " + std::string{line} + ": " + message; // 0: before any line
}

std::string clsLoadReport::Warning() const {
    const std::string lines = ReadLog(start_);
    std::string_view warning = BehindMark(lines, warningMarker);
    const std::size_t end = warning.find("': ");
    if (warning.starts_with('\'') &&
        end != std::string_view::npos) // the input's name, which the caller reports
        warning.remove_prefix(end + 3);
    return FromCodePage(warning);
}

} // namespace tool::prof
