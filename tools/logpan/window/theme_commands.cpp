// Light or dark.
#include "main_window.h"

namespace tool::logpan {

void clsMainWindow::Choose(ThemeChoice choice) {
    theme_.Choose(choice);
    ApplyTheme();
}

void clsMainWindow::ApplyTheme() {
    theme_.ApplyToFrame(window_);
    bar_->ApplyTheme(theme_);
    list_->ApplyTheme();
    theme_.ApplyToControl(detail_);
    status_->ApplyTheme(theme_);
    RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

// 0: as the system does.
LRESULT clsMainWindow::ControlColours(HDC context) const {
    if (!theme_.IsDark())
        return 0;
    SetTextColor(context, theme_.Controls().text);
    SetBkColor(context, theme_.Controls().background);
    return reinterpret_cast<LRESULT>(theme_.Background());
}

bool clsMainWindow::PaintBackground(HDC context) const {
    RECT area{};
    if (!theme_.IsDark() || !GetClientRect(window_, &area))
        return false;
    FillRect(context, &area, theme_.Background());
    return true;
}

} // namespace tool::logpan
