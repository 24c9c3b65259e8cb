// The window: its parts, its commands, and the timers by which it follows the store.
#pragma once

#include "arguments.h"
#include "file_lines.h"
#include "filter_bar.h"
#include "line_list.h"
#include "search.h"
#include "settings.h"
#include "status_bar.h"

#include <optional>

namespace tool::logpan {

class clsMainWindow {
  public:
    // Made hidden, for its handle is published before it is shown. Throws Failure where there is no desktop.
    clsMainWindow(const scArguments& arguments, clsSettingsFile& settings, clsStore& store);
    ~clsMainWindow();
    clsMainWindow(const clsMainWindow&) = delete;
    clsMainWindow& operator=(const clsMainWindow&) = delete;

    HWND Handle() const { return window_; }
    // Shows the lines of files instead of those that programs write.
    void Open(std::vector<std::wstring> paths);
    void Show(std::uint16_t port); // 0: nothing is listened to

    // Runs until the window is closed.
    void Run();

  private:
    struct scCommand;
    static const scCommand commands[];

    static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM first, LPARAM second);
    LRESULT Handle(UINT message, WPARAM first, LPARAM second);
    LRESULT Notified(LPARAM notification);
    void MakeParts();
    void Place();
    void ScaleTo(int dotsPerInch, const RECT& place);
    void Keep() const; // the settings
    void Command(int id, int notification, HWND control);

    // menu.cpp
    void PrepareMenu() const;
    void ShowContextMenu(LPARAM position) const;

    void Update();
    void ShowDetail() const;
    void AfterScroll();
    void Say(); // where the lines come from
    clsStore& Store() { return files_ ? files_->Store() : store_; }

    // commands.cpp
    void Exit();
    void Copy();
    void SelectAll();
    void Clear();
    void GoTo(int box);
    void About();
    void TogglePause();
    void ToggleFollow();
    void ToggleColumn(int column);
    void Complain(const std::wstring& text) const;

    // theme_commands.cpp
    void Choose(ThemeChoice choice);
    void ApplyTheme();
    LRESULT ControlColours(HDC context) const;
    bool PaintBackground(HDC context) const;

    // file_commands.cpp
    void OpenFiles();
    void Drop(HANDLE files);
    void BackToLive();
    void ShowStore(clsStore& store, std::size_t mostLines, std::size_t mostBytes);
    void Save();

    // filter_commands.cpp
    void ApplyFilter();
    void ClearFilter();
    void ToggleCriterion(std::wstring_view property, bool hide);
    void ToggleProblems();
    void UseSaved(std::size_t number);
    void SaveFilter();
    void EditFilters(const std::wstring& more = {});
    void EditHighlights();

    // find_commands.cpp
    void Find(bool backwards);
    void GoOnFinding(std::chrono::milliseconds budget);
    void ToggleBookmark();
    void GoToBookmark(bool backwards);

    const scArguments& arguments_;
    clsSettingsFile& settings_;
    clsStore& store_; // of live lines
    std::optional<clsFileLines> files_;
    clsLook look_;
    clsTheme theme_;
    scMarks marks_;
    clsShownLines lines_;
    clsSearch search_;
    HWND window_ = nullptr;
    std::optional<clsFilterBar> bar_;
    std::optional<clsLineList> list_;
    std::optional<clsStatusBar> status_;
    HWND detail_ = nullptr;
    HWND focusBefore_ = nullptr;
    std::uint16_t port_ = 0;
    std::wstring title_;                    // of the files, as it was said
    std::optional<std::uint64_t> pausedAt_; // the number of the first line that is not shown then
};

} // namespace tool::logpan
