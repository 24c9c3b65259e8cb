#include "progress_line.h"

#include "column_width.h"
#include "printable.h"
#include "text_io.h"

#include <windows.h>

#include <algorithm>
#include <string>

namespace tool::tvut {

namespace {

constexpr ULONGLONG interval = 100; // milliseconds
constexpr std::size_t lineWidth = 78;

void* StandardErrorConsole() {
    const HANDLE handle = GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) ? handle : nullptr;
}

void Write(void* console, std::wstring_view text) {
    DWORD written = 0;
    WriteConsoleW(console, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

std::wstring Percent(unsigned long long done, unsigned long long total) {
    if (total == 0)
        return done == 0 ? L"    " : std::to_wstring(done) + L" bytes";
    std::wstring text = std::to_wstring(std::min(done, total) * 100 / total) + L"%";
    return std::wstring(4 - text.size(), L' ') + text;
}

// As much of a path's end as has room: that tells files apart. A line that is wider than the terminal would
// stay on it.
std::wstring Fitting(std::wstring path, std::size_t columns) {
    constexpr std::wstring_view cut = L"...";
    std::size_t width = ColumnsOf(Units(path)), start = 0;
    if (width > columns) {
        while (width > columns - cut.size()) {
            const scCharacter first = CharacterAt(Units(path), start);
            width -= first.columns;
            start += first.length;
        }
        path.replace(0, start, cut);
        width += cut.size();
    }
    return path.append(columns - width, L' ');
}

} // namespace

clsProgressLine::clsProgressLine() : console_(StandardErrorConsole()) {}

clsProgressLine::~clsProgressLine() {
    if (isShown_)
        Write(console_, L"\r" + std::wstring(lineWidth, L' ') + L"\r");
}

void clsProgressLine::Show(std::wstring_view name, unsigned long long done, unsigned long long total) {
    const ULONGLONG now = GetTickCount64();
    if (!console_ || now - shownAt_ < interval)
        return;
    shownAt_ = now;
    isShown_ = true;
    const std::wstring head = Percent(done, total) + L" ";
    Write(console_, L"\r" + head + Fitting(Printable(name), lineWidth - head.size()));
}

} // namespace tool::tvut
