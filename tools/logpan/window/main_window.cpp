// Making the window, laying out its parts, and handing messages on.
#include "main_window.h"

#include "controls.h"
#include "exit_code.h"
#include "resource.h"
#include "text_io.h"

#include <tvut22/viewer.h>

#include <windows.h>

#include <commctrl.h>

#include <new>

namespace tool::logpan {

namespace {

constexpr UINT_PTR timerLines = 1;
constexpr UINT_PTR timerStatus = 2;
constexpr UINT linesInterval = 40;
constexpr UINT statusInterval = 1000;
constexpr std::chrono::milliseconds filterBudget{25};
constexpr int startWidth = 1040;
constexpr int startHeight = 620;
constexpr int smallestWidth = 720;
constexpr int smallestHeight = 300;
constexpr int detailRows = 3;
constexpr UINT messageScrolled = WM_APP;
constexpr UINT_PTR subclassId = 1;

constexpr ControlKind detailKind{
    L"EDIT", WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL, WS_EX_CLIENTEDGE};

// Tells the main window after the list did what the user wanted of it.
LRESULT CALLBACK watchScrolling(HWND list, UINT message, WPARAM first, LPARAM second, UINT_PTR,
                                DWORD_PTR main) {
    const LRESULT result = DefSubclassProc(list, message, first, second);
    if (message == WM_VSCROLL || message == WM_MOUSEWHEEL || message == WM_KEYDOWN ||
        message == WM_LBUTTONDOWN)
        PostMessageW(reinterpret_cast<HWND>(main), messageScrolled, 0, 0);
    return result;
}

} // namespace

MainWindow::MainWindow(const Arguments& arguments, Store& store)
    : arguments_(arguments), store_(store), lines_(store, arguments.capacity, arguments.bytes()) {
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.lpfnWndProc = receive;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hIcon = LoadIconW(nullptr, reinterpret_cast<LPCWSTR>(IDI_APPLICATION));
    description.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    description.lpszMenuName = MAKEINTRESOURCEW(ID_MENU);
    description.lpszClassName = LOGPAN_WINDOW_CLASS;
    RegisterClassExW(&description);
    window_ = CreateWindowExW(0, LOGPAN_WINDOW_CLASS, L"logpan", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                              CW_USEDEFAULT, CW_USEDEFAULT, look_.scaled(startWidth),
                              look_.scaled(startHeight), nullptr, nullptr, description.hInstance, this);
    if (window_ == nullptr)
        throw Failure{ExitCode::cannotOpen, "", "there is no desktop for a window; try --console"};
    makeParts();
}

MainWindow::~MainWindow() {
    if (window_ != nullptr)
        DestroyWindow(window_);
}

void MainWindow::makeParts() {
    bar_.emplace(window_, look_, arguments_);
    list_.emplace(window_, look_, lines_);
    detail_ = makeControl(window_, detailKind, ID_DETAIL, L"", look_.lines());
    status_.emplace(window_, look_);
    SetWindowSubclass(list_->handle(), watchScrolling, subclassId, reinterpret_cast<DWORD_PTR>(window_));
    applyFilter();
}

void MainWindow::show(std::uint16_t port) {
    listening_ = L"Listening on port " + std::to_wstring(port);
    place();
    status_->say(listening_);
    status_->showRate(store_.counters());
    SetTimer(window_, timerLines, linesInterval, nullptr);
    SetTimer(window_, timerStatus, statusInterval, nullptr);
    ShowWindow(window_, SW_SHOWDEFAULT);
    SetFocus(list_->handle());
}

void MainWindow::run() {
    const HACCEL keys = LoadAcceleratorsW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(ID_ACCELERATORS));
    for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;) {
        if (TranslateAcceleratorW(window_, keys, &message) || IsDialogMessageW(window_, &message))
            continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

LRESULT CALLBACK MainWindow::receive(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_NCCREATE) {
        auto* self = static_cast<MainWindow*>(reinterpret_cast<const CREATESTRUCTW*>(second)->lpCreateParams);
        self->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    auto* self = reinterpret_cast<MainWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr || !self->status_) // while the parts are being made
        return DefWindowProcW(window, message, first, second);
    try {
        return self->handle(message, first, second);
    } catch (const std::bad_alloc&) {
        self->status_->say(L"Out of memory"); // and nothing may be thrown through the system
        return 0;
    }
}

LRESULT MainWindow::handle(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
    case WM_SIZE:
        place();
        return 0;
    case WM_GETMINMAXINFO:
        reinterpret_cast<MINMAXINFO*>(second)->ptMinTrackSize = {look_.scaled(smallestWidth),
                                                                 look_.scaled(smallestHeight)};
        return 0;
    case WM_ACTIVATE: // the focus returns to where it was
        if (LOWORD(first) == WA_INACTIVE)
            focusBefore_ = GetFocus();
        else if (focusBefore_ != nullptr)
            SetFocus(focusBefore_);
        return 0;
    case WM_SETFOCUS:
        SetFocus(focusBefore_ != nullptr ? focusBefore_ : list_->handle());
        return 0;
    case WM_COMMAND:
        command(LOWORD(first), HIWORD(first), reinterpret_cast<HWND>(second));
        return 0;
    case WM_NOTIFY:
        return notified(*reinterpret_cast<const NMHDR*>(second));
    case WM_INITMENUPOPUP:
        prepareMenu();
        return 0;
    case WM_TIMER:
        first == timerLines ? update() : status_->showRate(store_.counters());
        return 0;
    case messageScrolled:
        afterScroll();
        return 0;
    case WM_DESTROY:
        window_ = nullptr;
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcW(window_, message, first, second);
    }
}

LRESULT MainWindow::notified(const NMHDR& header) {
    if (header.idFrom != ID_LINES)
        return 0;
    if (LineList::isFocusChange(header))
        showDetail();
    return list_->notified(header);
}

void MainWindow::place() {
    RECT inside{};
    GetClientRect(window_, &inside);
    status_->place();
    bar_->place(inside.right);
    const int detailHeight = detailRows * look_.lineHeight() + look_.scaled(8);
    const LONG bottom = inside.bottom - status_->height() - detailHeight;
    list_->place({0, bar_->height(), inside.right, bottom});
    MoveWindow(detail_, 0, bottom, inside.right, detailHeight, TRUE);
}

void MainWindow::update() {
    lines_.advance(filterBudget, pausedAt_);
    list_->dropFirst(lines_.trim());
    list_->grow(bar_->isChecked(ID_FOLLOW));
    Counters counters = store_.counters();
    counters.held = lines_.held(counters);
    status_->showCounts(counters, lines_.size(), pausedAt_.has_value());
}

void MainWindow::applyFilter() {
    try {
        lines_.setFilter(bar_->filter());
        status_->say(listening_);
    } catch (const BadPattern& bad) { // the filter before stays until this one is whole
        status_->say(toWide(bad.reason));
        return;
    }
    list_->reset();
    showDetail();
    update();
}

} // namespace tool::logpan
