// Making child windows and reading them.
#pragma once

#include <windows.h>

#include <string>

namespace tool::logpan {

struct scControlKind {
    const wchar_t* windowClass;
    DWORD style;
    DWORD extendedStyle = 0;
};

HWND MakeControl(HWND parent, const scControlKind& kind, int id, const wchar_t* text, HFONT font);

std::wstring TextOf(HWND control);

// The width that a control's text takes in its font.
int TextWidth(HWND control);

} // namespace tool::logpan
