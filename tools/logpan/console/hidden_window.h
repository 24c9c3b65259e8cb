// The window that older senders look for when the viewer shows none. It is never visible.
#pragma once

#include <windows.h>

#include <thread>

namespace tool::logpan {

// Lives in a thread of its own, because a window must take its messages: others may send it some and wait.
class clsHiddenWindow {
  public:
    clsHiddenWindow();
    ~clsHiddenWindow();
    clsHiddenWindow(const clsHiddenWindow&) = delete;
    clsHiddenWindow& operator=(const clsHiddenWindow&) = delete;

    // Null where there is no desktop to make windows on.
    HWND Handle() const { return window_; }

  private:
    void Run(HANDLE ready);

    HWND window_ = nullptr;
    std::thread thread_;
};

} // namespace tool::logpan
