// The window: its parts, its commands, and the timers by which it follows the store.
#ifndef LOGPAN_MAIN_WINDOW_H
#define LOGPAN_MAIN_WINDOW_H

#include "filter_bar.h"
#include "line_list.h"
#include "status_bar.h"

#include <optional>

namespace tool::logpan {

class MainWindow {
  public:
    // Made hidden, for its handle is published before it is shown. Throws Failure where there is no desktop.
    MainWindow(const Arguments& arguments, Store& store);
    ~MainWindow();
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    HWND handle() const { return window_; }
    void show(std::uint16_t port);

    // Runs until the window is closed.
    void run();

  private:
    struct Command;
    static const Command commands[];

    static LRESULT CALLBACK receive(HWND window, UINT message, WPARAM first, LPARAM second);
    LRESULT handle(UINT message, WPARAM first, LPARAM second);
    LRESULT notified(const NMHDR& header);
    void makeParts();
    void place();
    void command(int id, int notification, HWND control);
    void prepareMenu() const;

    void update();
    void applyFilter();
    void showDetail() const;
    void afterScroll();

    void save();
    void exit();
    void copy();
    void selectAll();
    void clear();
    void clearFilter();
    void goToInclude();
    void goToExclude();
    void about();
    void togglePause();
    void toggleFollow();
    void toggleRegular();
    void complain(const std::wstring& text) const;

    const Arguments& arguments_;
    Store& store_;
    Look look_;
    ShownLines lines_;
    HWND window_ = nullptr;
    std::optional<FilterBar> bar_;
    std::optional<LineList> list_;
    std::optional<StatusBar> status_;
    HWND detail_ = nullptr;
    HWND focusBefore_ = nullptr;
    std::wstring listening_;
    std::optional<std::uint64_t> pausedAt_; // the number of the first line that is not shown then
};

} // namespace tool::logpan

#endif
