// What the window's menu, keys and buttons do.
#include "main_window.h"

#include "clipboard.h"
#include "columns.h"
#include "controls.h"
#include "exit_code.h"
#include "resource.h"
#include "save_lines.h"
#include "text_io.h"

#include <windows.h>

#include <commdlg.h>

namespace tool::logpan {

struct clsMainWindow::scCommand {
    int id;
    void (clsMainWindow::*run)();
};

const clsMainWindow::scCommand clsMainWindow::commands[] = {
    {ID_SAVE, &clsMainWindow::Save},
    {ID_EXIT, &clsMainWindow::Exit},
    {ID_COPY, &clsMainWindow::Copy},
    {ID_SELECT_ALL, &clsMainWindow::SelectAll},
    {ID_CLEAR, &clsMainWindow::Clear},
    {ID_GO_INCLUDE, &clsMainWindow::GoToInclude},
    {ID_GO_EXCLUDE, &clsMainWindow::GoToExclude},
    {ID_CLEAR_FILTER, &clsMainWindow::ClearFilter},
    {ID_ABOUT, &clsMainWindow::About},
    {ID_PAUSE, &clsMainWindow::TogglePause},
    {ID_FOLLOW, &clsMainWindow::ToggleFollow},
    {ID_REGULAR, &clsMainWindow::ToggleRegular},
};

namespace {

constexpr int fromAccelerator = 1; // the notification of a key; 0 is that of a menu and of a clicked button

bool IsBox(HWND window) {
    const int id = GetDlgCtrlID(window);
    return id == ID_INCLUDE || id == ID_EXCLUDE || id == ID_DETAIL;
}

bool IsCheckBox(int id) {
    return id == ID_FOLLOW || id == ID_REGULAR;
}

} // namespace

void clsMainWindow::Command(int id, int notification, HWND control) {
    if (id == ID_INCLUDE || id == ID_EXCLUDE) {
        if (notification == EN_CHANGE)
            ApplyFilter();
        return;
    }
    // A check box that was clicked has changed already; menu and key change it here.
    if (IsCheckBox(id) && control == nullptr)
        bar_->Check(id, !bar_->IsChecked(id));
    for (const scCommand& known : commands)
        if (known.id == id && notification <= fromAccelerator) {
            (this->*known.run)();
            return;
        }
}

void clsMainWindow::PrepareMenu() const {
    const HMENU menu = GetMenu(window_);
    const auto mark = [&](UINT id, bool marked) {
        CheckMenuItem(menu, id, MF_BYCOMMAND | (marked ? MF_CHECKED : MF_UNCHECKED));
    };
    mark(ID_PAUSE, pausedAt_.has_value());
    mark(ID_FOLLOW, bar_->IsChecked(ID_FOLLOW));
    mark(ID_REGULAR, bar_->IsChecked(ID_REGULAR));
}

void clsMainWindow::Save() {
    wchar_t path[MAX_PATH] = L"lines.log";
    OPENFILENAMEW question{};
    question.lStructSize = sizeof question;
    question.hwndOwner = window_;
    question.lpstrFilter = L"Text (*.log;*.txt)\0*.log;*.txt\0JSON lines (*.json)\0*.json\0All files\0*.*\0";
    question.lpstrFile = path;
    question.nMaxFile = static_cast<DWORD>(std::size(path));
    question.lpstrDefExt = L"log";
    question.Flags = OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR | OFN_HIDEREADONLY;
    if (!GetSaveFileNameW(&question))
        return;
    try {
        SaveLines(lines_, path);
    } catch (const scFailure& failure) {
        Complain(ToWide(failure.subject + ": " + failure.reason));
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
    list_->Reset();
    ShowDetail();
    Update();
}

void clsMainWindow::ClearFilter() {
    bar_->ClearFilter();
    SetFocus(list_->Handle());
}

void clsMainWindow::GoToInclude() {
    bar_->GoTo(ID_INCLUDE);
}

void clsMainWindow::GoToExclude() {
    bar_->GoTo(ID_EXCLUDE);
}

void clsMainWindow::About() {
    MessageBoxW(window_,
                L"logpan " LOGPAN_WIDE_VERSION L"\n\n"
                L"Shows the diagnostic lines of programs as they are written.\n\n"
                L"Ctrl+F\tinclude only lines that have a text\n"
                L"Ctrl+E\texclude lines that have a text\n"
                L"Ctrl+R\tboth are regular expressions\n"
                L"Ctrl+D\tclear the filter\n"
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

void clsMainWindow::ToggleRegular() {
    ApplyFilter();
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
