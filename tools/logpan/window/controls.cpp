// Thin wrappers over user32.
#include "controls.h"

namespace tool::logpan {

HWND MakeControl(HWND parent, const scControlKind& kind, int id, const wchar_t* text, HFONT font) {
    const HWND control = CreateWindowExW(
        kind.extendedStyle, kind.windowClass, text, WS_CHILD | WS_VISIBLE | kind.style, 0, 0, 0, 0, parent,
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    return control;
}

std::wstring TextOf(HWND control) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(control)) + 1, L'\0');
    text.resize(
        static_cast<std::size_t>(GetWindowTextW(control, text.data(), static_cast<int>(text.size()))));
    return text;
}

int TextWidth(HWND control) {
    const std::wstring text = TextOf(control);
    const HDC screen = GetDC(control);
    const HGDIOBJ before =
        SelectObject(screen, reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
    RECT area{};
    DrawTextW(screen, text.c_str(), -1, &area, DT_CALCRECT | DT_SINGLELINE);
    SelectObject(screen, before);
    ReleaseDC(control, screen);
    return area.right;
}

} // namespace tool::logpan
