// Asks the system for its message font, and for one of fixed width beside it.
#include "look.h"

namespace tool::logpan {

namespace {

constexpr int linesFontPoints = 10;

Font MessageFont() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    return Font{CreateFontIndirectW(&metrics.lfMessageFont)};
}

Font FixedFont(int dotsPerInch) {
    return Font{CreateFontW(-MulDiv(linesFontPoints, dotsPerInch, 72), 0, 0, 0, FW_NORMAL, FALSE, FALSE,
                            FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                            FIXED_PITCH | FF_MODERN, L"Consolas")};
}

} // namespace

clsLook::clsLook() : controls_(MessageFont()) {
    const HDC screen = GetDC(nullptr);
    dotsPerInch_ = GetDeviceCaps(screen, LOGPIXELSY);
    lines_ = FixedFont(dotsPerInch_);
    const HGDIOBJ before = SelectObject(screen, lines_.get());
    TEXTMETRICW metrics{};
    if (GetTextMetricsW(screen, &metrics)) {
        characterWidth_ = metrics.tmAveCharWidth;
        lineHeight_ = metrics.tmHeight;
    }
    SelectObject(screen, before);
    ReleaseDC(nullptr, screen);
}

} // namespace tool::logpan
