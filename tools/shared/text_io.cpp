// UTF-8 and UTF-16, consoles and pipes.
#include "text_io.h"

#include "printable.h"
#include "system_reason.h"

#include <windows.h>

#include <algorithm>
#include <utility>

namespace tool {

namespace {

constexpr std::size_t bufferSize = 64 * 1024;
constexpr std::size_t consolePiece = 8 * 1024; // older consoles refuse more than 64 KB a call
constexpr std::wstring_view byteOrderMark = L"\xfeff";

bool IsConsole(HANDLE handle) {
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0;
}

bool WriteBytes(HANDLE handle, std::string_view bytes) {
    while (!bytes.empty()) {
        DWORD written = 0;
        if (!WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr))
            return false;
        bytes.remove_prefix(written);
    }
    return true;
}

[[noreturn]] void FailToWrite(DWORD error) {
    scFailure failure{ExitCode::cannotSave, "standard output", SystemReason(error)};
    if (error == ERROR_NO_DATA || error == ERROR_BROKEN_PIPE)
        throw scReaderGone{std::move(failure)};
    throw failure;
}

bool WriteToConsole(HANDLE handle, std::wstring_view text) {
    while (!text.empty()) {
        DWORD written = 0;
        const auto piece = static_cast<DWORD>(std::min(text.size(), consolePiece));
        if (!WriteConsoleW(handle, text.data(), piece, &written, nullptr))
            return false;
        text.remove_prefix(written);
    }
    return true;
}

bool WriteText(HANDLE handle, bool console, std::string_view utf8) {
    return console ? WriteToConsole(handle, ToWide(utf8)) : WriteBytes(handle, utf8);
}

// The characters of a UTF-16 document with a byte-order mark, or nothing for other bytes.
std::wstring_view WideDocument(std::string_view bytes) {
    const std::wstring_view text{reinterpret_cast<const wchar_t*>(bytes.data()),
                                 bytes.size() / sizeof(wchar_t)};
    return text.starts_with(byteOrderMark) ? text.substr(1) : std::wstring_view{};
}

} // namespace

std::wstring ToWide(std::string_view utf8) {
    const int size = static_cast<int>(utf8.size());
    std::wstring text(utf8.size(), L'\0');
    const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, text.data(), size);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

std::string ToUtf8(std::wstring_view text) {
    const int size = static_cast<int>(text.size());
    const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, utf8.data(), length, nullptr, nullptr);
    return utf8;
}

void AppendEscaped(std::string& line, std::wstring_view text) {
    line += ToUtf8(Printable(text));
}

clsOutput& clsOutput::Standard() {
    static clsOutput output;
    return output;
}

clsOutput::clsOutput() : handle_(GetStdHandle(STD_OUTPUT_HANDLE)), console_(IsConsole(handle_)) {
    buffer_.reserve(bufferSize);
}

void clsOutput::Write(std::string_view utf8) {
    if (buffer_.size() + utf8.size() > bufferSize)
        Flush();
    buffer_ += utf8;
}

void clsOutput::WriteLine(std::string_view utf8) {
    Write(utf8);
    Write("\n");
}

void clsOutput::WriteDocument(std::string_view bytes) {
    Flush();
    const std::wstring_view text = WideDocument(bytes);
    if (console_ && text.empty())
        throw scFailure{ExitCode::cannotSave, "standard output", "a console cannot show binary contents"};
    if (!(console_ ? WriteToConsole(handle_, text) : WriteBytes(handle_, bytes)))
        FailToWrite(GetLastError());
}

void clsOutput::Flush() {
    const bool written = WriteText(handle_, console_, buffer_);
    const DWORD error = GetLastError();
    buffer_.clear();
    if (!written)
        FailToWrite(error);
}

void PrintError(std::string_view program, std::string_view subject, std::string_view reason) {
    std::string line{program};
    line += ": ";
    if (!subject.empty())
        line.append(subject).append(": ");
    line.append(reason).append("\n");
    const HANDLE handle = GetStdHandle(STD_ERROR_HANDLE);
    WriteText(handle, IsConsole(handle), line);
}

std::string ReadStandardInput() {
    const HANDLE handle = GetStdHandle(STD_INPUT_HANDLE);
    std::string contents;
    for (DWORD count = 1; count > 0;) {
        const std::size_t size = contents.size();
        contents.resize(size + std::max(size, bufferSize));
        const auto room = static_cast<DWORD>(contents.size() - size);
        count = 0;
        const bool read = ReadFile(handle, contents.data() + size, room, &count, nullptr) != 0;
        const DWORD error = GetLastError();
        contents.resize(size + count);
        if (!read && error != ERROR_BROKEN_PIPE) // the writer's end of a pipe was closed: the end
            throw scFailure{ExitCode::cannotOpen, "standard input", SystemReason(error)};
    }
    return contents;
}

} // namespace tool
