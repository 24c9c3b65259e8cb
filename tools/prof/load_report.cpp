// Catches the library's load error line on its way to a debugger.
#include "load_report.h"

#include "text_io.h"

#include <windows.h>

#include <string_view>

namespace prof_tool {

namespace {

constexpr DWORD printException = 0x40010006;     // length, 8-bit text
constexpr DWORD printExceptionWide = 0x4001000a; // length, UTF-16 text, length, 8-bit text
constexpr std::string_view marker = "PROF load error line ";

// The handler runs inside the library's call and must neither allocate nor throw: the line is kept here.
char lastError[1024];
std::size_t lastErrorLength;

std::string_view printedText(const EXCEPTION_RECORD& record) {
    const DWORD first = record.ExceptionCode == printExceptionWide ? 2 : 0;
    if (record.NumberParameters < first + 2)
        return {};
    const auto* text = reinterpret_cast<const char*>(record.ExceptionInformation[first + 1]);
    const std::string_view whole{text, record.ExceptionInformation[first]};
    return whole.substr(0, whole.find('\0'));
}

void keep(std::string_view text) {
    const std::size_t start = text.find(marker);
    if (start == std::string_view::npos)
        return;
    const std::string_view error = text.substr(start + marker.size());
    lastErrorLength = error.copy(lastError, std::size(lastError));
}

LONG CALLBACK listen(EXCEPTION_POINTERS* exception) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    if (record.ExceptionCode != printException && record.ExceptionCode != printExceptionWide)
        return EXCEPTION_CONTINUE_SEARCH;
    keep(printedText(record));
    return EXCEPTION_CONTINUE_EXECUTION;
}

std::string fromCodePage(std::string_view text) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), size);
    return toUtf8({wide.data(), static_cast<std::size_t>(length)});
}

} // namespace

LoadReport::LoadReport() : handler_(AddVectoredExceptionHandler(1, listen)) {
    lastErrorLength = 0;
}

LoadReport::~LoadReport() {
    RemoveVectoredExceptionHandler(handler_);
}

std::string LoadReport::reason() const {
    const std::string_view error{lastError, lastErrorLength};
    const std::size_t colon = error.find(": '");
    const std::size_t quote = error.rfind('\'');
    if (colon == std::string_view::npos || quote < colon + 3)
        return {};
    const std::string message = fromCodePage(error.substr(colon + 3, quote - (colon + 3)));
    const std::string_view line = error.substr(0, colon);
    return line == "0" ? message : "line " + std::string{line} + ": " + message; // 0: before any line
}

} // namespace prof_tool
