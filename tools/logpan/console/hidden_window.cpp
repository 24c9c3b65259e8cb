// A window class without behaviour, and its message loop.
#include "hidden_window.h"

#include "owned.h"

#include <tvut22/viewer.h>

namespace tool::logpan {

namespace {

LRESULT CALLBACK HandleMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_DESTROY)
        PostQuitMessage(0);
    return DefWindowProcW(window, message, first, second);
}

HWND MakeWindow() {
    WNDCLASSW description{};
    description.lpfnWndProc = HandleMessage;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = LOGPAN_WINDOW_CLASS;
    RegisterClassW(&description);
    return CreateWindowExW(0, LOGPAN_WINDOW_CLASS, L"logpan", WS_OVERLAPPED, 0, 0, 0, 0, nullptr, nullptr,
                           description.hInstance, nullptr);
}

} // namespace

clsHiddenWindow::clsHiddenWindow() {
    const clsHandle ready{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    thread_ = std::thread{[this, event = ready.get()] { Run(event); }};
    WaitForSingleObject(ready.get(), INFINITE);
}

clsHiddenWindow::~clsHiddenWindow() {
    if (window_ != nullptr)
        PostMessageW(window_, WM_CLOSE, 0, 0);
    thread_.join();
}

void clsHiddenWindow::Run(HANDLE ready) {
    window_ = MakeWindow();
    SetEvent(ready);
    if (window_ == nullptr)
        return;
    for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;)
        DispatchMessageW(&message);
}

} // namespace tool::logpan
