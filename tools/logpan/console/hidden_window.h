// The window that older senders look for when the viewer shows none. It is never visible.
#ifndef LOGPAN_HIDDEN_WINDOW_H
#define LOGPAN_HIDDEN_WINDOW_H

#include <windows.h>

#include <thread>

namespace tool::logpan {

// Lives in a thread of its own, because a window must take its messages: others may send it some and wait.
class HiddenWindow {
  public:
    HiddenWindow();
    ~HiddenWindow();
    HiddenWindow(const HiddenWindow&) = delete;
    HiddenWindow& operator=(const HiddenWindow&) = delete;

    // Null where there is no desktop to make windows on.
    HWND handle() const { return window_; }

  private:
    void run(HANDLE ready);

    HWND window_ = nullptr;
    std::thread thread_;
};

} // namespace tool::logpan

#endif
