// Making child windows and reading them.
#ifndef LOGPAN_CONTROLS_H
#define LOGPAN_CONTROLS_H

#include <windows.h>

#include <string>

namespace tool::logpan {

struct ControlKind {
    const wchar_t* windowClass;
    DWORD style;
    DWORD extendedStyle = 0;
};

HWND makeControl(HWND parent, const ControlKind& kind, int id, const wchar_t* text, HFONT font);

std::wstring textOf(HWND control);

// The width that a control's text takes in its font.
int textWidth(HWND control);

} // namespace tool::logpan

#endif
