// What of the menu depends on the window's state: marks, greyed items, and the items of columns and saved
// filters.
#include "main_window.h"

#include "list_columns.h"
#include "resource.h"

#include <algorithm>

namespace tool::logpan {

namespace {

// The menu in which an item stands, itself or one below it.
HMENU MenuWith(HMENU menu, UINT id) {
    for (int at = 0; at < GetMenuItemCount(menu); ++at) {
        if (GetMenuItemID(menu, at) == id)
            return menu;
        const HMENU below = GetSubMenu(menu, at);
        if (const HMENU found = below == nullptr ? nullptr : MenuWith(below, id))
            return found;
    }
    return nullptr;
}

void Mark(HMENU menu, UINT id, bool marked) {
    CheckMenuItem(menu, id, MF_BYCOMMAND | (marked ? MF_CHECKED : MF_UNCHECKED));
}

void Enable(HMENU menu, UINT id, bool enabled) {
    EnableMenuItem(menu, id, MF_BYCOMMAND | (enabled ? MF_ENABLED : MF_GRAYED));
}

void FillColumns(HMENU menu, const clsLineList& list) {
    const HMENU columns = MenuWith(menu, ID_FIRST_COLUMN);
    const std::span<const scListColumn> all = ListColumns();
    if (GetMenuItemCount(columns) == 1) // the one that the resource has
        for (UINT at = 1; at + 1 < all.size(); ++at)
            AppendMenuW(columns, MF_STRING, ID_FIRST_COLUMN + at, all[at].title);
    for (UINT at = 0; at + 1 < all.size(); ++at)
        Mark(columns, ID_FIRST_COLUMN + at, list.ShowsColumn(at));
}

// A menu takes & for a mark of the letter after it.
std::wstring MenuText(const std::wstring& name) {
    std::wstring text;
    for (const wchar_t unit : name)
        text.append(unit == L'&' ? 2 : 1, unit);
    return text;
}

// After those that the resource has.
void FillSaved(HMENU menu, const std::vector<scNamedFilter>& filters) {
    constexpr int own = 2;
    constexpr std::size_t most = ID_LAST_SAVED - ID_FIRST_SAVED + 1;
    const HMENU saved = MenuWith(menu, ID_SAVE_FILTER);
    while (GetMenuItemCount(saved) > own)
        DeleteMenu(saved, own, MF_BYPOSITION);
    if (!filters.empty())
        AppendMenuW(saved, MF_SEPARATOR, 0, nullptr);
    for (std::size_t at = 0; at < std::min(filters.size(), most); ++at)
        AppendMenuW(saved, MF_STRING, ID_FIRST_SAVED + at, MenuText(filters[at].name).c_str());
}

} // namespace

void clsMainWindow::PrepareMenu() const {
    const HMENU menu = GetMenu(window_);
    FillColumns(menu, *list_);
    FillSaved(menu, settings_.settings.filters);
    Mark(menu, ID_PAUSE, pausedAt_.has_value());
    Mark(menu, ID_FOLLOW, bar_->IsChecked(ID_FOLLOW));
    Mark(menu, ID_REGULAR, bar_->IsChecked(ID_REGULAR));
    CheckMenuRadioItem(MenuWith(menu, ID_THEME_SYSTEM), ID_THEME_SYSTEM, ID_THEME_DARK,
                       ID_THEME_SYSTEM + static_cast<UINT>(theme_.Choice()), MF_BYCOMMAND);
    Enable(menu, ID_LIVE, files_.has_value() && port_ != 0);
    for (UINT id = ID_ONLY_MODULE; id <= ID_HIDE_PROCESS; ++id)
        Enable(menu, id, list_->FocusedRow().has_value());
    for (const UINT id : {ID_BOOKMARK, ID_NEXT_BOOKMARK, ID_PREVIOUS_BOOKMARK})
        Enable(menu, id, list_->FocusedRow().has_value());
}

// The menu of filters, where the mouse is; by a key, where the list begins.
void clsMainWindow::ShowContextMenu(LPARAM position) const {
    POINT at{static_cast<short>(LOWORD(position)), static_cast<short>(HIWORD(position))};
    if (position == -1) {
        at = {};
        ClientToScreen(list_->Handle(), &at);
    }
    TrackPopupMenu(MenuWith(GetMenu(window_), ID_ONLY_MODULE), TPM_RIGHTBUTTON, at.x, at.y, 0, window_,
                   nullptr);
}

} // namespace tool::logpan
