// The window: its parts, its commands, and the timers by which it follows the store.
#pragma once

#include "filter_bar.h"
#include "line_list.h"
#include "status_bar.h"

#include <optional>

namespace tool::logpan {

class clsMainWindow {
  public:
    // Made hidden, for its handle is published before it is shown. Throws Failure where there is no desktop.
    clsMainWindow(const scArguments& arguments, clsStore& store);
    ~clsMainWindow();
    clsMainWindow(const clsMainWindow&) = delete;
    clsMainWindow& operator=(const clsMainWindow&) = delete;

    HWND Handle() const { return window_; }
    void Show(std::uint16_t port);

    // Runs until the window is closed.
    void Run();

  private:
    struct scCommand;
    static const scCommand commands[];

    static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM first, LPARAM second);
    LRESULT Handle(UINT message, WPARAM first, LPARAM second);
    LRESULT Notified(const NMHDR& header);
    void MakeParts();
    void Place();
    void ScaleTo(int dotsPerInch, const RECT& place);
    void Command(int id, int notification, HWND control);
    void PrepareMenu() const;

    void Update();
    void ApplyFilter();
    void ShowDetail() const;
    void AfterScroll();

    void Save();
    void Exit();
    void Copy();
    void SelectAll();
    void Clear();
    void ClearFilter();
    void GoToInclude();
    void GoToExclude();
    void About();
    void TogglePause();
    void ToggleFollow();
    void ToggleRegular();
    void Complain(const std::wstring& text) const;

    const scArguments& arguments_;
    clsStore& store_;
    clsLook look_;
    clsShownLines lines_;
    HWND window_ = nullptr;
    std::optional<clsFilterBar> bar_;
    std::optional<clsLineList> list_;
    std::optional<clsStatusBar> status_;
    HWND detail_ = nullptr;
    HWND focusBefore_ = nullptr;
    std::wstring listening_;
    std::optional<std::uint64_t> pausedAt_; // the number of the first line that is not shown then
};

} // namespace tool::logpan
