// Making the window, laying out its parts, and handing messages on.
//
// Lines come from other threads, but the window only looks at them when its timer fires: for some 25 ms of
// each 40, however many there are, so that it answers the user in between. What takes longer (a filter over
// millions of lines, a search) goes on with the next tick. What a control reports about itself goes back to
// the part that made it; the menu's commands are a table in commands.cpp.
#include "main_window.h"

#include "controls.h"
#include "dark_header.h"
#include "exit_code.h"
#include "resource.h"

#include <tvut22/viewer.h>

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <cstring>
#include <new>

namespace tool::logpan {

namespace {

constexpr UINT_PTR timerLines = 1;
constexpr UINT_PTR timerStatus = 2;
constexpr UINT linesInterval = 40;
constexpr UINT statusInterval = 1000;
constexpr std::chrono::milliseconds filterBudget{25};
constexpr int startWidth = 1200;
constexpr int startHeight = 680;
constexpr int smallestWidth = 720;
constexpr int smallestHeight = 300;
constexpr int detailRows = 3;
constexpr UINT messageScrolled = WM_APP;
constexpr UINT messageHeader = WM_APP + 1;
constexpr UINT_PTR subclassId = 1;

constexpr scControlKind detailKind{
    L"EDIT", WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL, WS_EX_CLIENTEDGE};

// Notifies the main window after the list has handled what the user did. What the list's header asks goes to
// the list, and on to the main window.
LRESULT CALLBACK WatchList(HWND list, UINT message, WPARAM first, LPARAM second, UINT_PTR, DWORD_PTR main) {
    const auto* notified = message == WM_NOTIFY ? reinterpret_cast<const NMHDR*>(second) : nullptr;
    if (notified != nullptr && notified->code == NM_CUSTOMDRAW &&
        notified->hwndFrom == ListView_GetHeader(list))
        return SendMessageW(reinterpret_cast<HWND>(main), messageHeader, first, second);
    const LRESULT result = DefSubclassProc(list, message, first, second);
    if (message == WM_VSCROLL || message == WM_MOUSEWHEEL || message == WM_KEYDOWN ||
        message == WM_LBUTTONDOWN)
        PostMessageW(reinterpret_cast<HWND>(main), messageScrolled, 0, 0);
    return result;
}

} // namespace

clsMainWindow::clsMainWindow(const scArguments& arguments, clsSettingsFile& settings, clsStore& store)
    : arguments_(arguments), settings_(settings), store_(store),
      theme_(settings.settings.theme), marks_{clsHighlights{settings.settings.highlights}, {}},
      lines_(store, arguments.capacity, arguments.Bytes()) {
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.lpfnWndProc = Receive;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hIcon = LoadIconW(description.hInstance, reinterpret_cast<LPCWSTR>(IDI_APPLICATION));
    description.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    description.lpszMenuName = MAKEINTRESOURCEW(ID_MENU);
    description.lpszClassName = LOGPAN_WINDOW_CLASS;
    RegisterClassExW(&description);
    window_ = CreateWindowExW(0, LOGPAN_WINDOW_CLASS, L"logpan", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                              CW_USEDEFAULT, CW_USEDEFAULT, look_.Scaled(startWidth),
                              look_.Scaled(startHeight), nullptr, nullptr, description.hInstance, this);
    if (window_ == nullptr)
        throw scFailure{ExitCode::cannotOpen, "", "there is no desktop for a window; try --console"};
    look_.ScaleTo(DotsPerInchOf(window_), window_); // it need not have come to the first monitor
    SetWindowPos(window_, nullptr, 0, 0, look_.Scaled(startWidth), look_.Scaled(startHeight),
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    MakeParts();
}

clsMainWindow::~clsMainWindow() {
    if (window_ == nullptr)
        return;
    // It goes because something failed. Closed like by a user, it would end the message box that says so,
    // too.
    SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
    DestroyWindow(window_);
}

void clsMainWindow::MakeParts() {
    bar_.emplace(window_, look_);
    list_.emplace(window_, look_, lines_, marks_, theme_);
    detail_ = MakeControl(window_, detailKind, ID_DETAIL, L"", look_.Lines());
    status_.emplace(window_, look_);
    SetWindowSubclass(list_->Handle(), WatchList, subclassId, reinterpret_cast<DWORD_PTR>(window_));
    DragAcceptFiles(window_, TRUE);
    list_->ShowColumns(settings_.settings.columns);
    ApplyTheme();
    bar_->SetFilter(FilterTextOf(arguments_));
    ApplyFilter();
}

void clsMainWindow::Show(std::uint16_t port) {
    port_ = port;
    const RECT& place = settings_.settings.window;
    // Where it was, unless that screen is gone.
    if (!IsRectEmpty(&place) && MonitorFromRect(&place, MONITOR_DEFAULTTONULL) != nullptr) {
        WINDOWPLACEMENT placement{};
        placement.length = sizeof placement;
        placement.rcNormalPosition = place;
        placement.showCmd = SW_HIDE;
        SetWindowPlacement(window_, &placement);
    }
    Place();
    Say();
    status_->ShowRate(Store().Counters());
    SetTimer(window_, timerLines, linesInterval, nullptr);
    SetTimer(window_, timerStatus, statusInterval, nullptr);
    ShowWindow(window_, settings_.settings.maximized ? SW_SHOWMAXIMIZED : SW_SHOWDEFAULT);
    SetFocus(list_->Handle());
}

void clsMainWindow::Keep() const {
    scSettings& settings = settings_.settings;
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    if (GetWindowPlacement(window_, &placement))
        settings.window = placement.rcNormalPosition;
    settings.maximized = IsZoomed(window_) != 0;
    settings.theme = theme_.Choice();
    settings.columns = list_->ColumnWidths();
}

void clsMainWindow::Run() {
    const HACCEL keys = LoadAcceleratorsW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(ID_ACCELERATORS));
    for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;) {
        if (TranslateAcceleratorW(window_, keys, &message) || IsDialogMessageW(window_, &message))
            continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

LRESULT CALLBACK clsMainWindow::Receive(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_NCCREATE) {
        auto* self =
            static_cast<clsMainWindow*>(reinterpret_cast<const CREATESTRUCTW*>(second)->lpCreateParams);
        self->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    auto* self = reinterpret_cast<clsMainWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr || !self->status_) // while the parts are being made
        return DefWindowProcW(window, message, first, second);
    try {
        return self->Handle(message, first, second);
    } catch (const std::bad_alloc&) {
        self->status_->Say(L"Out of memory"); // and nothing may be thrown through the system
        return 0;
    }
}

LRESULT clsMainWindow::Handle(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
    case WM_SIZE:
        Place();
        return 0;
    case WM_DPICHANGED:
        ScaleTo(HIWORD(first), *reinterpret_cast<const RECT*>(second));
        return 0;
    case WM_GETMINMAXINFO:
        reinterpret_cast<MINMAXINFO*>(second)->ptMinTrackSize = {look_.Scaled(smallestWidth),
                                                                 look_.Scaled(smallestHeight)};
        return 0;
    case WM_ACTIVATE: // the focus returns to where it was
        if (LOWORD(first) == WA_INACTIVE)
            focusBefore_ = GetFocus();
        else if (focusBefore_ != nullptr)
            SetFocus(focusBefore_);
        return 0;
    case WM_SETFOCUS:
        SetFocus(focusBefore_ != nullptr ? focusBefore_ : list_->Handle());
        return 0;
    case WM_COMMAND:
        Command(LOWORD(first), HIWORD(first), reinterpret_cast<HWND>(second));
        return 0;
    case WM_NOTIFY:
        return Notified(second);
    case WM_INITMENUPOPUP:
        PrepareMenu();
        return 0;
    case WM_TIMER:
        first == timerLines ? Update() : status_->ShowRate(Store().Counters());
        return 0;
    case messageScrolled:
        AfterScroll();
        return 0;
    case messageHeader:
        return DrawHeader(*reinterpret_cast<const NMCUSTOMDRAW*>(second), theme_);
    case WM_CONTEXTMENU:
        if (reinterpret_cast<HWND>(first) == list_->Handle())
            ShowContextMenu(second);
        return 0;
    case WM_DROPFILES:
        Drop(reinterpret_cast<HANDLE>(first));
        return 0;
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
        Choose(theme_.Choice());
        return 0;
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
        if (const LRESULT brush = ControlColours(reinterpret_cast<HDC>(first)); brush != 0)
            return brush;
        return DefWindowProcW(window_, message, first, second);
    case WM_ERASEBKGND:
        if (PaintBackground(reinterpret_cast<HDC>(first)))
            return TRUE;
        return DefWindowProcW(window_, message, first, second);
    case WM_DRAWITEM:
        status_->Draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(second), theme_);
        return TRUE;
    case WM_ENDSESSION: // the process ends with it
        if (first != FALSE) {
            Keep();
            settings_.Save();
        }
        return 0;
    case WM_DESTROY:
        Keep();
        window_ = nullptr;
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcW(window_, message, first, second);
    }
}

LRESULT clsMainWindow::Notified(LPARAM notification) {
    NMHDR header; // may lie anywhere: that of a key is packed
    std::memcpy(&header, reinterpret_cast<const void*>(notification), sizeof header);
    if (header.idFrom != ID_LINES)
        return 0;
    if (list_->IsFocusChange(header))
        ShowDetail();
    return list_->Notified(header.code, notification);
}

void clsMainWindow::Place() {
    RECT inside{};
    GetClientRect(window_, &inside);
    status_->Place();
    bar_->Place(inside.right);
    const int detailHeight = detailRows * look_.LineHeight() + look_.Scaled(8);
    const LONG bottom = inside.bottom - status_->Height() - detailHeight;
    list_->Place({0, bar_->Height(), inside.right, bottom});
    MoveWindow(detail_, 0, bottom, inside.right, detailHeight, TRUE);
}

// On a monitor with other dots, the system says where the window has its size there.
void clsMainWindow::ScaleTo(int dotsPerInch, const RECT& place) {
    const int before = look_.DotsPerInch();
    look_.ScaleTo(dotsPerInch, window_);
    list_->ScaleColumns(before, dotsPerInch);
    MoveWindow(window_, place.left, place.top, place.right - place.left, place.bottom - place.top, TRUE);
    Place(); // although the size may be the same
}

void clsMainWindow::Update() {
    const bool live = !files_;
    lines_.Advance(filterBudget, live ? pausedAt_ : std::nullopt);
    const std::size_t dropped = lines_.Trim();
    if (dropped > 0) {
        search_.DropFirst(dropped);
        list_->DropFirst(dropped);
        ShowDetail(); // of a line that left, nothing
    }
    list_->Grow(live && bar_->IsChecked(ID_FOLLOW));
    scCounters counters = Store().Counters();
    counters.held = lines_.Held(counters);
    status_->ShowCounts(counters, lines_.size(), !live ? L"File" : pausedAt_ ? L"Paused" : L"Live");
    if (files_ && files_->Title() != title_) // one of them cannot be read
        Say();
    if (search_.Now() == clsSearch::State::running)
        GoOnFinding(filterBudget);
}

void clsMainWindow::Say() {
    if (files_)
        status_->Say(title_ = files_->Title());
    else if (port_ == 0)
        status_->Say(L"Not listening");
    else
        status_->Say(L"Listening on port " + std::to_wstring(port_));
}

} // namespace tool::logpan
