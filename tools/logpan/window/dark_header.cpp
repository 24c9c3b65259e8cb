// Draws each title whole: its area, a line at its right, its text.
#include "dark_header.h"

#include <iterator>

namespace tool::logpan {

namespace {

constexpr COLORREF lineColour = RGB(80, 80, 80);
constexpr int textMargin = 6;

void DrawTitle(const NMCUSTOMDRAW& drawing, const clsTheme& theme) {
    RECT area = drawing.rc;
    FillRect(drawing.hdc, &area, theme.Background());
    SetDCBrushColor(drawing.hdc, lineColour);
    const RECT line{area.right - 1, area.top, area.right, area.bottom};
    FillRect(drawing.hdc, &line, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    wchar_t title[64] = L"";
    HDITEMW item{};
    item.mask = HDI_TEXT;
    item.pszText = title;
    item.cchTextMax = static_cast<int>(std::size(title));
    SendMessageW(drawing.hdr.hwndFrom, HDM_GETITEMW, drawing.dwItemSpec, reinterpret_cast<LPARAM>(&item));
    SetBkMode(drawing.hdc, TRANSPARENT);
    SetTextColor(drawing.hdc, theme.Controls().text);
    area.left += textMargin;
    DrawTextW(drawing.hdc, title, -1, &area, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
}

} // namespace

LRESULT DrawHeader(const NMCUSTOMDRAW& drawing, const clsTheme& theme) {
    if (!theme.IsDark())
        return CDRF_DODEFAULT;
    if (drawing.dwDrawStage == CDDS_PREPAINT)
        return CDRF_NOTIFYITEMDRAW;
    if (drawing.dwDrawStage != CDDS_ITEMPREPAINT)
        return CDRF_DODEFAULT;
    DrawTitle(drawing, theme);
    return CDRF_SKIPDEFAULT;
}

} // namespace tool::logpan
