// A dialog in which lines of text are edited, such as rules.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>

namespace tool::logpan {

struct scTextQuestion {
    const wchar_t* title;
    const wchar_t* hint;
    std::wstring text;
    std::function<void(const std::wstring& text)> check; // throws BadPattern, which the dialog shows
};

// The text once it is good; nothing when the user gave up.
std::optional<std::wstring> AskForText(HWND owner, scTextQuestion question);

} // namespace tool::logpan
