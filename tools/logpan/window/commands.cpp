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

struct MainWindow::Command {
    int id;
    void (MainWindow::*run)();
};

const MainWindow::Command MainWindow::commands[] = {
    {ID_SAVE, &MainWindow::save},
    {ID_EXIT, &MainWindow::exit},
    {ID_COPY, &MainWindow::copy},
    {ID_SELECT_ALL, &MainWindow::selectAll},
    {ID_CLEAR, &MainWindow::clear},
    {ID_GO_INCLUDE, &MainWindow::goToInclude},
    {ID_GO_EXCLUDE, &MainWindow::goToExclude},
    {ID_CLEAR_FILTER, &MainWindow::clearFilter},
    {ID_ABOUT, &MainWindow::about},
    {ID_PAUSE, &MainWindow::togglePause},
    {ID_FOLLOW, &MainWindow::toggleFollow},
    {ID_REGULAR, &MainWindow::toggleRegular},
};

namespace {

constexpr int fromAccelerator = 1; // the notification of a key; 0 is that of a menu and of a clicked button

bool isBox(HWND window) {
    const int id = GetDlgCtrlID(window);
    return id == ID_INCLUDE || id == ID_EXCLUDE || id == ID_DETAIL;
}

bool isCheckBox(int id) {
    return id == ID_FOLLOW || id == ID_REGULAR;
}

} // namespace

void MainWindow::command(int id, int notification, HWND control) {
    if (id == ID_INCLUDE || id == ID_EXCLUDE) {
        if (notification == EN_CHANGE)
            applyFilter();
        return;
    }
    // A check box that was clicked has changed already; menu and key change it here.
    if (isCheckBox(id) && control == nullptr)
        bar_->check(id, !bar_->isChecked(id));
    for (const Command& known : commands)
        if (known.id == id && notification <= fromAccelerator) {
            (this->*known.run)();
            return;
        }
}

void MainWindow::prepareMenu() const {
    const HMENU menu = GetMenu(window_);
    const auto mark = [&](UINT id, bool marked) {
        CheckMenuItem(menu, id, MF_BYCOMMAND | (marked ? MF_CHECKED : MF_UNCHECKED));
    };
    mark(ID_PAUSE, pausedAt_.has_value());
    mark(ID_FOLLOW, bar_->isChecked(ID_FOLLOW));
    mark(ID_REGULAR, bar_->isChecked(ID_REGULAR));
}

void MainWindow::save() {
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
        saveLines(lines_, path);
    } catch (const Failure& failure) {
        complain(toWide(failure.subject + ": " + failure.reason));
    }
}

void MainWindow::exit() {
    SendMessageW(window_, WM_CLOSE, 0, 0);
}

void MainWindow::copy() {
    if (const HWND focus = GetFocus(); isBox(focus)) {
        SendMessageW(focus, WM_COPY, 0, 0);
        return;
    }
    std::wstring text;
    for (const std::size_t row : list_->selectedRows())
        text += plainLine(*lines_[row]) + L"\r\n";
    if (!text.empty() && !copyToClipboard(window_, text))
        complain(L"The lines cannot be copied: another program uses the clipboard, or they are too many.");
}

void MainWindow::selectAll() {
    if (const HWND focus = GetFocus(); isBox(focus))
        SendMessageW(focus, EM_SETSEL, 0, -1);
    else
        list_->selectAll();
}

void MainWindow::clear() {
    lines_.clear();
    list_->reset();
    showDetail();
    update();
}

void MainWindow::clearFilter() {
    bar_->clearFilter();
    SetFocus(list_->handle());
}

void MainWindow::goToInclude() {
    bar_->goTo(ID_INCLUDE);
}

void MainWindow::goToExclude() {
    bar_->goTo(ID_EXCLUDE);
}

void MainWindow::about() {
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

void MainWindow::togglePause() {
    if (pausedAt_)
        pausedAt_.reset();
    else
        pausedAt_ = store_.end();
    bar_->setPauseText(pausedAt_.has_value());
    update();
}

void MainWindow::toggleFollow() {
    if (bar_->isChecked(ID_FOLLOW))
        list_->showLast();
}

void MainWindow::toggleRegular() {
    applyFilter();
}

// Whoever scrolls away from the tail wants to read there; whoever scrolls back wants to follow.
void MainWindow::afterScroll() {
    bar_->check(ID_FOLLOW, list_->showsLastRow());
}

void MainWindow::showDetail() const {
    const std::optional<std::size_t> row = list_->focusedRow();
    SetWindowTextW(detail_, row ? indentedText(*lines_[*row]).c_str() : L"");
}

void MainWindow::complain(const std::wstring& text) const {
    MessageBoxW(window_, text.c_str(), L"logpan", MB_OK | MB_ICONWARNING);
}

} // namespace tool::logpan
