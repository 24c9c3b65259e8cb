// Lines out of files and into them.
#include "main_window.h"

#include "exit_code.h"
#include "resource.h"
#include "save_lines.h"
#include "text_io.h"

#include <windows.h>

#include <commdlg.h>
#include <shellapi.h>

namespace tool::logpan {

namespace {

constexpr const wchar_t* openKinds = L"Lines (*.log;*.txt;*.json)\0*.log;*.txt;*.json\0All files\0*.*\0";
constexpr const wchar_t* saveKinds =
    L"Text (*.log;*.txt)\0*.log;*.txt\0JSON lines (*.json)\0*.json\0All files\0*.*\0";

// The path that the user chooses in one of the system's dialogs; nothing without one.
std::optional<std::wstring> Ask(HWND owner, decltype(GetOpenFileNameW)* dialog, const wchar_t* kinds,
                                std::wstring path, DWORD flags) {
    path.resize(32 * 1024); // the longest; one that does not fit would be no answer
    OPENFILENAMEW question{};
    question.lStructSize = sizeof question;
    question.hwndOwner = owner;
    question.lpstrFilter = kinds;
    question.lpstrFile = path.data();
    question.nMaxFile = static_cast<DWORD>(path.size());
    question.lpstrDefExt = L"log";
    question.Flags = flags | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR | OFN_HIDEREADONLY;
    if (!dialog(&question))
        return std::nullopt;
    path.resize(path.find(L'\0'));
    return path;
}

} // namespace

void clsMainWindow::OpenFiles() {
    if (const auto path = Ask(window_, GetOpenFileNameW, openKinds, L"", OFN_FILEMUSTEXIST))
        Open({*path});
}

void clsMainWindow::Drop(HANDLE files) {
    const auto drop = static_cast<HDROP>(files);
    std::vector<std::wstring> paths(DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0));
    for (UINT at = 0; at < paths.size(); ++at) {
        paths[at].resize(DragQueryFileW(drop, at, nullptr, 0));
        DragQueryFileW(drop, at, paths[at].data(), static_cast<UINT>(paths[at].size() + 1));
    }
    DragFinish(drop);
    if (!paths.empty())
        Open(std::move(paths));
}

void clsMainWindow::Open(std::vector<std::wstring> paths) {
    BackToLive(); // nothing may look at the lines of the files before
    files_.emplace(std::move(paths));
    ShowStore(files_->Store(), clsFileLines::mostLines, clsFileLines::mostBytes);
}

void clsMainWindow::BackToLive() {
    if (!files_)
        return;
    ShowStore(store_, arguments_.capacity, arguments_.Bytes());
    files_.reset();
    Update();
    Say();
}

void clsMainWindow::ShowStore(clsStore& store, std::size_t mostLines, std::size_t mostBytes) {
    search_.Cancel();
    marks_.bookmarks.Clear();
    status_->CountFrom(store.Counters());
    lines_.SetStore(store, mostLines, mostBytes);
    list_->Reset();
    ShowDetail();
    Update();
    Say();
}

void clsMainWindow::Save() {
    const auto path = Ask(window_, GetSaveFileNameW, saveKinds, L"lines.log", OFN_OVERWRITEPROMPT);
    if (!path)
        return;
    try {
        SaveLines(lines_, *path);
    } catch (const scFailure& failure) {
        Complain(ToWide(failure.subject + ": " + failure.reason));
    }
}

} // namespace tool::logpan
