// A window class without behaviour, and its message loop.
#include "hidden_window.h"

#include "owned.h"

#include <tvut22/viewer.h>

namespace tool::logpan {

namespace {

LRESULT CALLBACK handleMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_DESTROY)
        PostQuitMessage(0);
    return DefWindowProcW(window, message, first, second);
}

HWND makeWindow() {
    WNDCLASSW description{};
    description.lpfnWndProc = handleMessage;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = LOGPAN_WINDOW_CLASS;
    RegisterClassW(&description);
    return CreateWindowExW(0, LOGPAN_WINDOW_CLASS, L"logpan", WS_OVERLAPPED, 0, 0, 0, 0, nullptr, nullptr,
                           description.hInstance, nullptr);
}

} // namespace

HiddenWindow::HiddenWindow() {
    const Handle ready{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    thread_ = std::thread{[this, event = ready.get()] { run(event); }};
    WaitForSingleObject(ready.get(), INFINITE);
}

HiddenWindow::~HiddenWindow() {
    if (window_ != nullptr)
        PostMessageW(window_, WM_CLOSE, 0, 0);
    thread_.join();
}

void HiddenWindow::run(HANDLE ready) {
    window_ = makeWindow();
    SetEvent(ready);
    if (window_ == nullptr)
        return;
    for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;)
        DispatchMessageW(&message);
}

} // namespace tool::logpan
