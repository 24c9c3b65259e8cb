// A report view of common controls with LVS_OWNERDATA.
#include "line_list.h"

#include "columns.h"
#include "controls.h"
#include "printable.h"
#include "resource.h"
#include "severity.h"

#include <algorithm>

namespace tool::logpan {

namespace {

struct scColumn {
    const wchar_t* title;
    int characters; // its width; 0: what the others leave
    std::wstring (*text)(const scLine& line);
};

std::wstring ModuleText(const scLine& line) {
    return Printable(line.module);
}
std::wstring DeepText(const scLine& line) {
    return IndentedText(line, 2); // easier to see
}

// Time stands first: a list view aligns its first column to the left only.
constexpr scColumn columns[] = {
    {L"Time", 13, TimeText},    {L"Module", 13, ModuleText}, {L"Thread", 9, ThreadText},
    {L"CPU", 4, ProcessorText}, {L"Seq", 4, SequenceText},   {L"Text", 0, DeepText},
};
constexpr int textColumn = static_cast<int>(std::size(columns)) - 1;
constexpr int cellMargin = 12;
constexpr int narrowestText = 40; // characters

struct scColours {
    Severity severity;
    COLORREF text;
    COLORREF background;
};
constexpr scColours severityColours[] = {
    {Severity::warning, RGB(122, 74, 0), RGB(255, 246, 219)},
    {Severity::error, RGB(168, 0, 28), RGB(253, 233, 235)},
};

constexpr scControlKind listKind{WC_LISTVIEWW, WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS |
                                                   LVS_NOSORTHEADER};

// People who chose colours of high contrast need them.
bool WantsSystemColours() {
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof contrast;
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) &&
           (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

} // namespace

clsLineList::clsLineList(HWND parent, const clsLook& look, const clsShownLines& lines)
    : list_(MakeControl(parent, listKind, ID_LINES, L"", look.Lines())), look_(look), lines_(lines) {
    ListView_SetExtendedListViewStyle(list_, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    int at = 0;
    for (const scColumn& column : columns) {
        LVCOLUMNW description{};
        description.mask = LVCF_TEXT | LVCF_WIDTH;
        description.pszText = const_cast<wchar_t*>(column.title);
        description.cx = column.characters * look.CharacterWidth() + look.Scaled(cellMargin);
        SendMessageW(list_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(at++),
                     reinterpret_cast<LPARAM>(&description));
    }
    SendMessageW(ListView_GetHeader(list_), WM_SETFONT, reinterpret_cast<WPARAM>(look.Controls()), FALSE);
}

void clsLineList::Place(const RECT& area) {
    MoveWindow(list_, area.left, area.top, area.right - area.left, area.bottom - area.top, TRUE);
    FillWidth();
}

void clsLineList::ScaleColumns(int dotsBefore, int dotsPerInch) {
    for (int at = 0; at < textColumn; ++at)
        ListView_SetColumnWidth(list_, at,
                                MulDiv(ListView_GetColumnWidth(list_, at), dotsPerInch, dotsBefore));
    width_ = 0; // the last one takes what is left
}

void clsLineList::FillWidth() {
    RECT inside{};
    GetClientRect(list_, &inside);
    if (inside.right == width_)
        return;
    width_ = inside.right;
    int left = width_;
    for (int at = 0; at < textColumn; ++at)
        left -= ListView_GetColumnWidth(list_, at);
    ListView_SetColumnWidth(list_, textColumn, std::max(left, narrowestText * look_.CharacterWidth()));
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
    const std::optional<std::size_t> focused = FocusedRow();
    RECT row{};
    ListView_GetItemRect(list_, 0, &row, LVIR_BOUNDS);
    ListView_SetItemState(list_, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_Scroll(list_, 0, -static_cast<int>(rows) * (row.bottom - row.top));
    ListView_SetItemCountEx(list_, static_cast<int>(lines_.size()), LVSICF_NOSCROLL);
    for (const std::size_t was : selected)
        if (was >= rows)
            ListView_SetItemState(list_, static_cast<int>(was - rows), LVIS_SELECTED, LVIS_SELECTED);
    if (focused && *focused >= rows)
        ListView_SetItemState(list_, static_cast<int>(*focused - rows), LVIS_FOCUSED, LVIS_FOCUSED);
}

void clsLineList::Reset() {
    ListView_SetItemState(list_, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_SetItemCountEx(list_, static_cast<int>(lines_.size()), 0);
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

LRESULT clsLineList::Notified(const NMHDR& header) {
    switch (header.code) {
    case LVN_GETDISPINFOW:
        GiveText(reinterpret_cast<NMLVDISPINFOW&>(const_cast<NMHDR&>(header)).item);
        return 0;
    case NM_CUSTOMDRAW:
        return Colour(reinterpret_cast<NMLVCUSTOMDRAW&>(const_cast<NMHDR&>(header)));
    default:
        return 0;
    }
}

bool clsLineList::IsFocusChange(const NMHDR& header) {
    return header.code == LVN_ITEMCHANGED || header.code == LVN_ODSTATECHANGED;
}

void clsLineList::GiveText(LVITEMW& item) {
    const auto row = static_cast<std::size_t>(item.iItem);
    if ((item.mask & LVIF_TEXT) == 0 || row >= lines_.size() || item.iSubItem > textColumn)
        return;
    text_ = columns[item.iSubItem].text(*lines_[row]);
    item.pszText = text_.data();
}

LRESULT clsLineList::Colour(NMLVCUSTOMDRAW& drawing) const {
    if (drawing.nmcd.dwDrawStage == CDDS_PREPAINT)
        return WantsSystemColours() ? CDRF_DODEFAULT : CDRF_NOTIFYITEMDRAW;
    if (drawing.nmcd.dwDrawStage != CDDS_ITEMPREPAINT || drawing.nmcd.dwItemSpec >= lines_.size())
        return CDRF_DODEFAULT;
    const Severity severity = SeverityOf(lines_[drawing.nmcd.dwItemSpec]->text);
    for (const scColours& colours : severityColours)
        if (colours.severity == severity) {
            drawing.clrText = colours.text;
            drawing.clrTextBk = colours.background;
        }
    return CDRF_DODEFAULT;
}

} // namespace tool::logpan
