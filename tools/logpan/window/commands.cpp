// What the window's menu, keys and buttons do. All three send the number of a command, which a table leads to
// a function; a check box has changed already when it tells.
#include "main_window.h"

#include "clipboard.h"
#include "columns.h"
#include "controls.h"
#include "resource.h"

namespace tool::logpan {

struct clsMainWindow::scCommand {
    int id;
    void (*run)(clsMainWindow& window);
};

const clsMainWindow::scCommand clsMainWindow::commands[] = {
    {ID_OPEN, [](clsMainWindow& window) { window.OpenFiles(); }},
    {ID_LIVE, [](clsMainWindow& window) { window.BackToLive(); }},
    {ID_SAVE, [](clsMainWindow& window) { window.Save(); }},
    {ID_EXIT, [](clsMainWindow& window) { window.Exit(); }},
    {ID_COPY, [](clsMainWindow& window) { window.Copy(); }},
    {ID_SELECT_ALL, [](clsMainWindow& window) { window.SelectAll(); }},
    {ID_GO_FIND, [](clsMainWindow& window) { window.GoTo(ID_FIND); }},
    {ID_FIND_NEXT, [](clsMainWindow& window) { window.Find(false); }},
    {ID_FIND_PREVIOUS, [](clsMainWindow& window) { window.Find(true); }},
    {ID_BOOKMARK, [](clsMainWindow& window) { window.ToggleBookmark(); }},
    {ID_NEXT_BOOKMARK, [](clsMainWindow& window) { window.GoToBookmark(false); }},
    {ID_PREVIOUS_BOOKMARK, [](clsMainWindow& window) { window.GoToBookmark(true); }},
    {ID_CLEAR, [](clsMainWindow& window) { window.Clear(); }},
    {ID_PAUSE, [](clsMainWindow& window) { window.TogglePause(); }},
    {ID_FOLLOW, [](clsMainWindow& window) { window.ToggleFollow(); }},
    {ID_HIGHLIGHTS, [](clsMainWindow& window) { window.EditHighlights(); }},
    {ID_THEME_SYSTEM, [](clsMainWindow& window) { window.Choose(ThemeChoice::system); }},
    {ID_THEME_LIGHT, [](clsMainWindow& window) { window.Choose(ThemeChoice::light); }},
    {ID_THEME_DARK, [](clsMainWindow& window) { window.Choose(ThemeChoice::dark); }},
    {ID_GO_INCLUDE, [](clsMainWindow& window) { window.GoTo(ID_INCLUDE); }},
    {ID_GO_EXCLUDE, [](clsMainWindow& window) { window.GoTo(ID_EXCLUDE); }},
    {ID_GO_ONLY, [](clsMainWindow& window) { window.GoTo(ID_ONLY); }},
    {ID_REGULAR, [](clsMainWindow& window) { window.ApplyFilter(); }},
    {ID_CLEAR_FILTER, [](clsMainWindow& window) { window.ClearFilter(); }},
    {ID_ONLY_PROBLEMS, [](clsMainWindow& window) { window.ToggleProblems(); }},
    {ID_ONLY_MODULE, [](clsMainWindow& window) { window.ToggleCriterion(L"module", false); }},
    {ID_HIDE_MODULE, [](clsMainWindow& window) { window.ToggleCriterion(L"module", true); }},
    {ID_ONLY_THREAD, [](clsMainWindow& window) { window.ToggleCriterion(L"thread", false); }},
    {ID_HIDE_THREAD, [](clsMainWindow& window) { window.ToggleCriterion(L"thread", true); }},
    {ID_ONLY_PROCESS, [](clsMainWindow& window) { window.ToggleCriterion(L"process", false); }},
    {ID_HIDE_PROCESS, [](clsMainWindow& window) { window.ToggleCriterion(L"process", true); }},
    {ID_SAVE_FILTER, [](clsMainWindow& window) { window.SaveFilter(); }},
    {ID_EDIT_FILTERS, [](clsMainWindow& window) { window.EditFilters(); }},
    {ID_ABOUT, [](clsMainWindow& window) { window.About(); }},
};

namespace {

constexpr int fromAccelerator = 1; // the notification of a key; 0 is that of a menu and of a clicked button

bool IsBox(HWND window) {
    const int id = GetDlgCtrlID(window);
    return id == ID_INCLUDE || id == ID_EXCLUDE || id == ID_ONLY || id == ID_FIND || id == ID_DETAIL;
}

bool IsFilterBox(int id) {
    return id == ID_INCLUDE || id == ID_EXCLUDE || id == ID_ONLY;
}

bool IsCheckBox(int id) {
    return id == ID_FOLLOW || id == ID_REGULAR;
}

} // namespace

void clsMainWindow::Command(int id, int notification, HWND control) {
    if (IsFilterBox(id) && notification == EN_CHANGE)
        ApplyFilter();
    if (notification > fromAccelerator)
        return;
    // A check box that was clicked has changed already; menu and key change it here.
    if (IsCheckBox(id) && control == nullptr)
        bar_->Check(id, !bar_->IsChecked(id));
    if (id == IDOK && GetDlgCtrlID(GetFocus()) == ID_FIND)
        Find(false);
    else if (id >= ID_FIRST_COLUMN && id < ID_FIRST_SAVED)
        ToggleColumn(id - ID_FIRST_COLUMN);
    else if (id >= ID_FIRST_SAVED && id <= ID_LAST_SAVED)
        UseSaved(static_cast<std::size_t>(id - ID_FIRST_SAVED));
    for (const scCommand& known : commands)
        if (known.id == id) {
            known.run(*this);
            return;
        }
}

void clsMainWindow::Exit() {
    SendMessageW(window_, WM_CLOSE, 0, 0);
}

void clsMainWindow::Copy() {
    if (const HWND focus = GetFocus(); IsBox(focus)) {
        SendMessageW(focus, WM_COPY, 0, 0);
        return;
    }
    std::wstring text;
    for (const std::size_t row : list_->SelectedRows())
        text += PlainLine(*lines_[row]) + L"\r\n";
    if (!text.empty() && !CopyToClipboard(window_, text))
        Complain(L"The lines cannot be copied: another program uses the clipboard, or they are too many.");
}

void clsMainWindow::SelectAll() {
    if (const HWND focus = GetFocus(); IsBox(focus))
        SendMessageW(focus, EM_SETSEL, 0, -1);
    else
        list_->SelectAll();
}

void clsMainWindow::Clear() {
    lines_.Clear();
    marks_.bookmarks.Clear();
    search_.Cancel();
    list_->Reset();
    ShowDetail();
    Update();
}

void clsMainWindow::GoTo(int box) {
    bar_->GoTo(box);
}

void clsMainWindow::About() {
    MessageBoxW(window_,
                L"logpan " LOGPAN_WIDE_VERSION L"\n\n"
                L"Shows the diagnostic lines of programs as they are written.\n\n"
                L"Ctrl+F\tinclude only lines that have a text\n"
                L"Ctrl+E\texclude lines that have a text\n"
                L"Ctrl+R\tboth are regular expressions\n"
                L"Ctrl+Y\tonly lines of a severity, module, thread or process\n"
                L"Ctrl+W\tonly warnings and errors\n"
                L"Ctrl+D\tclear the filter\n"
                L"Ctrl+G, F3, Shift+F3\tfind a text, the next and the previous one\n"
                L"Ctrl+F2, F2, Shift+F2\tbookmark a line, go to the next and the previous one\n"
                L"Ctrl+H\thighlight lines\n"
                L"Ctrl+O, Ctrl+B\topen a file, back to live lines\n"
                L"Ctrl+P\tpause and go on\n"
                L"Ctrl+T\tfollow the tail (End does, too)\n"
                L"Ctrl+L\tclear the lines\n"
                L"Ctrl+C\tcopy the selected lines\n"
                L"Ctrl+S\tsave the shown lines\n"
                L"Tab\tgo to the next box, button or list",
                L"About logpan", MB_OK | MB_ICONINFORMATION);
}

void clsMainWindow::TogglePause() {
    if (pausedAt_)
        pausedAt_.reset();
    else
        pausedAt_ = store_.end();
    bar_->SetPauseText(pausedAt_.has_value());
    Update();
}

void clsMainWindow::ToggleFollow() {
    if (bar_->IsChecked(ID_FOLLOW))
        list_->ShowLast();
}

void clsMainWindow::ToggleColumn(int column) {
    if (column + 1 < static_cast<int>(ListColumns().size())) // the text stays
        list_->ToggleColumn(static_cast<std::size_t>(column));
}

// Whoever scrolls away from the tail wants to read there; whoever scrolls back wants to follow.
void clsMainWindow::AfterScroll() {
    bar_->Check(ID_FOLLOW, list_->ShowsLastRow());
}

void clsMainWindow::ShowDetail() const {
    const std::optional<std::size_t> row = list_->FocusedRow();
    SetWindowTextW(detail_, row ? IndentedText(*lines_[*row]).c_str() : L"");
}

void clsMainWindow::Complain(const std::wstring& text) const {
    MessageBoxW(window_, text.c_str(), L"logpan", MB_OK | MB_ICONWARNING);
}

} // namespace tool::logpan
