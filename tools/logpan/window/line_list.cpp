// A report view of common controls with LVS_OWNERDATA: it knows how many rows there are, and asks for the
// texts and colours of those that it paints. Rows are only added at the end and taken away at the front, so
// what it remembers by row (selection, focus, what is in view) is moved by hand when the front leaves.
#include "line_list.h"

#include "controls.h"
#include "resource.h"
#include "severity.h"

#include <algorithm>

namespace tool::logpan {

namespace {

constexpr int cellMargin = 12;
constexpr int narrowestText = 40; // characters

constexpr std::wstring_view bookmarkSign = L"\u25cf "; // a dot

constexpr scControlKind listKind{WC_LISTVIEWW, WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS |
                                                   LVS_NOSORTHEADER};

} // namespace

clsLineList::clsLineList(HWND parent, const clsLook& look, const clsShownLines& lines, const scMarks& marks,
                         const clsTheme& theme)
    : list_(MakeControl(parent, listKind, ID_LINES, L"", look.Lines())), look_(look), lines_(lines),
      marks_(marks), theme_(theme) {
    ListView_SetExtendedListViewStyle(list_, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    SendMessageW(ListView_GetHeader(list_), WM_SETFONT, reinterpret_cast<WPARAM>(look.Controls()), FALSE);
}

void clsLineList::ShowColumns(const std::map<std::wstring, int>& widths) {
    for (std::size_t at = shown_.size(); at-- > 0;)
        ListView_DeleteColumn(list_, static_cast<int>(at));
    shown_.clear();
    const std::span<const scListColumn> columns = ListColumns();
    for (std::size_t at = 0; at < columns.size(); ++at) {
        const scListColumn& column = columns[at];
        const auto known = widths.find(column.title);
        const bool isText = at + 1 == columns.size();
        if (!isText && (known == widths.end() ? !column.shown : known->second == 0))
            continue;
        LVCOLUMNW description{};
        description.mask = LVCF_TEXT | LVCF_WIDTH;
        description.pszText = const_cast<wchar_t*>(column.title);
        description.cx = known != widths.end() && known->second > 0
                             ? look_.Scaled(known->second)
                             : column.characters * look_.CharacterWidth() + look_.Scaled(cellMargin);
        SendMessageW(list_, LVM_INSERTCOLUMNW, shown_.size(), reinterpret_cast<LPARAM>(&description));
        shown_.push_back(at);
    }
    width_ = 0;
    FillWidth();
}

std::map<std::wstring, int> clsLineList::ColumnWidths() const {
    std::map<std::wstring, int> widths;
    for (const scListColumn& column : ListColumns())
        widths.emplace(column.title, 0);
    for (std::size_t at = 0; at < shown_.size(); ++at)
        widths[ListColumns()[shown_[at]].title] =
            look_.Unscaled(ListView_GetColumnWidth(list_, static_cast<int>(at)));
    return widths;
}

void clsLineList::ToggleColumn(std::size_t column) {
    std::map<std::wstring, int> widths = ColumnWidths();
    if (ShowsColumn(column))
        widths[ListColumns()[column].title] = 0;
    else
        widths[ListColumns()[column].title] =
            look_.Unscaled(ListColumns()[column].characters * look_.CharacterWidth()) + cellMargin;
    ShowColumns(widths);
}

bool clsLineList::ShowsColumn(std::size_t column) const {
    return std::find(shown_.begin(), shown_.end(), column) != shown_.end();
}

void clsLineList::ApplyTheme() {
    const scCellColours colours = theme_.Lines();
    ListView_SetBkColor(list_, colours.background);
    ListView_SetTextBkColor(list_, colours.background);
    ListView_SetTextColor(list_, colours.text);
    theme_.ApplyToControl(list_);
    InvalidateRect(ListView_GetHeader(list_), nullptr, TRUE);
}

void clsLineList::Place(const RECT& area) {
    MoveWindow(list_, area.left, area.top, area.right - area.left, area.bottom - area.top, TRUE);
    FillWidth();
}

void clsLineList::ScaleColumns(int dotsBefore, int dotsPerInch) {
    for (int at = 0; at < TextAt(); ++at)
        ListView_SetColumnWidth(list_, at,
                                MulDiv(ListView_GetColumnWidth(list_, at), dotsPerInch, dotsBefore));
    width_ = 0; // the last one takes what is left
}

void clsLineList::FillWidth() {
    RECT inside{};
    GetClientRect(list_, &inside);
    if (inside.right == width_ || shown_.empty())
        return;
    width_ = inside.right;
    int left = width_;
    for (int at = 0; at < TextAt(); ++at)
        left -= ListView_GetColumnWidth(list_, at);
    ListView_SetColumnWidth(list_, TextAt(), std::max(left, narrowestText * look_.CharacterWidth()));
}

void clsLineList::Grow(bool followTail) {
    const auto rows = static_cast<int>(lines_.size());
    if (rows == ListView_GetItemCount(list_))
        return;
    ListView_SetItemCountEx(list_, rows, LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
    FillWidth(); // a scroll bar may have come
    if (followTail)
        ShowLast();
}

void clsLineList::ShowLast() {
    if (const int rows = ListView_GetItemCount(list_); rows > 0)
        ListView_EnsureVisible(list_, rows - 1, FALSE);
}

void clsLineList::DropFirst(std::size_t rows) {
    if (rows == 0)
        return;
    const std::vector<std::size_t> selected = SelectedRows();
    // Of the rows that the list still has, of which there may be more than lines by now.
    const int focused = ListView_GetNextItem(list_, -1, LVNI_FOCUSED);
    const int dropped = static_cast<int>(rows);
    dropping_ = true;
    RECT row{};
    ListView_GetItemRect(list_, 0, &row, LVIR_BOUNDS);
    ListView_SetItemState(list_, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_Scroll(list_, 0, -dropped * (row.bottom - row.top));
    ListView_SetItemCountEx(list_, static_cast<int>(lines_.size()), LVSICF_NOSCROLL);
    for (const std::size_t was : selected)
        if (was >= rows)
            ListView_SetItemState(list_, static_cast<int>(was - rows), LVIS_SELECTED, LVIS_SELECTED);
    if (focused >= dropped)
        ListView_SetItemState(list_, focused - dropped, LVIS_FOCUSED, LVIS_FOCUSED);
    dropping_ = false;
}

void clsLineList::Reset() {
    ListView_SetItemState(list_, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_SetItemCountEx(list_, static_cast<int>(lines_.size()), 0);
}

void clsLineList::Select(std::size_t row) {
    const int at = static_cast<int>(row);
    ListView_SetItemState(list_, -1, 0, LVIS_SELECTED);
    ListView_SetItemState(list_, at, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_EnsureVisible(list_, at, FALSE);
}

void clsLineList::SelectAll() {
    ListView_SetItemState(list_, -1, LVIS_SELECTED, LVIS_SELECTED);
}

std::vector<std::size_t> clsLineList::SelectedRows() const {
    std::vector<std::size_t> rows;
    for (int row = -1; (row = ListView_GetNextItem(list_, row, LVNI_SELECTED)) >= 0;)
        rows.push_back(static_cast<std::size_t>(row));
    return rows;
}

std::optional<std::size_t> clsLineList::FocusedRow() const {
    const int row = ListView_GetNextItem(list_, -1, LVNI_FOCUSED);
    if (row < 0 || static_cast<std::size_t>(row) >= lines_.size())
        return std::nullopt;
    return static_cast<std::size_t>(row);
}

bool clsLineList::ShowsLastRow() const {
    return ListView_GetTopIndex(list_) + ListView_GetCountPerPage(list_) >= ListView_GetItemCount(list_);
}

LRESULT clsLineList::Notified(UINT code, LPARAM notification) {
    switch (code) {
    case LVN_GETDISPINFOW:
        GiveText(reinterpret_cast<NMLVDISPINFOW*>(notification)->item);
        return 0;
    case LVN_ODFINDITEMW:
        return -1; // letters find nothing; 0 would be the first row
    case NM_CUSTOMDRAW:
        return ColourOf(*reinterpret_cast<NMLVCUSTOMDRAW*>(notification));
    default:
        return 0;
    }
}

bool clsLineList::IsFocusChange(const NMHDR& header) const {
    return !dropping_ && (header.code == LVN_ITEMCHANGED || header.code == LVN_ODSTATECHANGED);
}

void clsLineList::GiveText(LVITEMW& item) {
    const auto row = static_cast<std::size_t>(item.iItem);
    const auto column = static_cast<std::size_t>(item.iSubItem);
    if ((item.mask & LVIF_TEXT) == 0 || row >= lines_.size() || column >= shown_.size())
        return;
    text_ = ListColumns()[shown_[column]].text(lines_, row);
    if (column == 0 && marks_.bookmarks.Has(lines_.Number(row)))
        text_.insert(0, bookmarkSign);
    item.pszText = text_.data();
}

LRESULT clsLineList::ColourOf(NMLVCUSTOMDRAW& drawing) const {
    if (drawing.nmcd.dwDrawStage == CDDS_PREPAINT)
        return theme_.IsPlain() ? CDRF_DODEFAULT : CDRF_NOTIFYITEMDRAW;
    if (drawing.nmcd.dwDrawStage != CDDS_ITEMPREPAINT || drawing.nmcd.dwItemSpec >= lines_.size())
        return CDRF_DODEFAULT;
    const scLine& line = *lines_[drawing.nmcd.dwItemSpec];
    const Severity severity = SeverityOf(line.text);
    const std::optional<Colour> colour = marks_.highlights.ColourOf(line);
    if (!colour && severity == Severity::none)
        return CDRF_DODEFAULT;
    const scCellColours colours = colour ? theme_.Of(*colour) : theme_.Of(severity);
    drawing.clrText = colours.text;
    drawing.clrTextBk = colours.background;
    return CDRF_DODEFAULT;
}

} // namespace tool::logpan
