// Asks the system for its message font, and for one of fixed width beside it.
#include "look.h"

#include "system_function.h"

#include <utility>

namespace tool::logpan {

namespace {

constexpr int linesFontPoints = 10;

int FirstDotsPerInch() {
    const HDC screen = GetDC(nullptr);
    const int dotsPerInch = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return dotsPerInch;
}

Font MessageFont(int dotsPerInch) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    metrics.lfMessageFont.lfHeight = MulDiv(metrics.lfMessageFont.lfHeight, dotsPerInch, FirstDotsPerInch());
    return Font{CreateFontIndirectW(&metrics.lfMessageFont)};
}

Font FixedFont(int dotsPerInch) {
    return Font{CreateFontW(-MulDiv(linesFontPoints, dotsPerInch, 72), 0, 0, 0, FW_NORMAL, FALSE, FALSE,
                            FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                            FIXED_PITCH | FF_MODERN, L"Consolas")};
}

struct scLooks {
    const clsLook& before;
    const clsLook& after;
};

BOOL CALLBACK ChangeFont(HWND control, LPARAM changed) {
    const auto& [before, after] = *reinterpret_cast<const scLooks*>(changed);
    const auto font = reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0));
    for (const auto& [old, scaled] :
         {std::pair(before.Controls(), after.Controls()), std::pair(before.Lines(), after.Lines())}) {
        if (font == old)
            SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(scaled), TRUE);
    }
    return TRUE;
}

} // namespace

clsLook::clsLook() : clsLook(FirstDotsPerInch()) {}

clsLook::clsLook(int dotsPerInch)
    : dotsPerInch_(dotsPerInch), controls_(MessageFont(dotsPerInch)), lines_(FixedFont(dotsPerInch)) {
    const HDC screen = GetDC(nullptr);
    const HGDIOBJ before = SelectObject(screen, lines_.get());
    TEXTMETRICW metrics{};
    if (GetTextMetricsW(screen, &metrics)) {
        characterWidth_ = metrics.tmAveCharWidth;
        lineHeight_ = metrics.tmHeight;
    }
    SelectObject(screen, before);
    ReleaseDC(nullptr, screen);
}

void clsLook::ScaleTo(int dotsPerInch, HWND window) {
    const clsLook before = std::exchange(*this, clsLook(dotsPerInch));
    const scLooks changed{before, *this};
    EnumChildWindows(window, ChangeFont, reinterpret_cast<LPARAM>(&changed));
}

// Windows before 10 has one answer for all windows of a program.
int DotsPerInchOf(HWND window) {
    const auto ofWindow = SystemFunction<UINT(WINAPI*)(HWND)>(L"\\user32.dll", "GetDpiForWindow");
    return ofWindow != nullptr ? static_cast<int>(ofWindow(window)) : FirstDotsPerInch();
}

} // namespace tool::logpan
