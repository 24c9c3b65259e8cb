// A window that keeps a log of its messages by their names, and a program that loses handles on purpose: a
// bitmap each time it draws a page, a pen that it frees twice. What it lost stands in the library's report,
// by call stack.
#include <cstdio>
#include <string>
#include <tvut22/tvut22.hpp>

namespace {

void logMessage(HWND window, UINT message) {
    BSTR name = nullptr;
    if (UtilWindowMessageName(message, window, &name) == UTIL_OK)
        std::printf("  %ls\n", name);
    SysFreeString(name);
}

// Nobody deletes the copy of the page.
void drawPage(HWND window) {
    const HDC screen = GetDC(window);
    tvut22::track(CreateCompatibleBitmap(screen, 64, 64), UTIL_HANDLE_GDI, L"page cache");
    const HPEN pen = tvut22::track(CreatePen(PS_SOLID, 1, RGB(0, 0, 255)), UTIL_HANDLE_GDI, L"margins");
    DeleteObject(tvut22::untrack(pen));
    ReleaseDC(window, screen);
}

constexpr UINT drawMessage = WM_APP + 1;

LRESULT CALLBACK onMessage(HWND window, UINT message, WPARAM w, LPARAM l) {
    if (message == drawMessage)
        drawPage(window);
    if (message >= WM_USER || message == WM_SETTEXT)
        logMessage(window, message);
    return DefWindowProcW(window, message, w, l);
}

HWND makeWindow() {
    WNDCLASSW painter{};
    painter.lpfnWndProc = onMessage;
    painter.hInstance = GetModuleHandleW(nullptr);
    painter.lpszClassName = L"Painter";
    RegisterClassW(&painter);
    return tvut22::track(
        CreateWindowExW(0, L"Painter", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, painter.hInstance, nullptr),
        UTIL_HANDLE_WINDOW, L"painter");
}

INT handles(UINT command, UINT kind = 0) {
    return UtilHandleListMgr(command, nullptr, kind, nullptr);
}

} // namespace

int main() {
    UtilModuleOnAttach(L"painter.exe");
    const HWND window = makeWindow();
    std::printf("messages:\n");
    SendMessageW(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"Page 1"));
    SendMessageW(window, RegisterWindowMessageW(L"Painter.PageChanged"), 0, 0);
    SendMessageW(window, WM_USER + 18, 0, 0);
    for (int page = 1; page <= 3; ++page)
        SendMessageW(window, drawMessage, 0, 0);

    const HPEN pen = tvut22::track(CreatePen(PS_SOLID, 1, 0), UTIL_HANDLE_GDI, L"grid");
    DeleteObject(tvut22::untrack(pen));
    std::printf("freeing the pen twice: %d\n",
                UtilHandleListMgr(UTIL_HANDLES_REMOVE, pen, UTIL_HANDLE_GDI, nullptr));
    DestroyWindow(tvut22::untrack(window));
    std::printf("GDI handles left: %d\n", handles(UTIL_HANDLES_COUNT, UTIL_HANDLE_GDI));
    std::printf("of them dead: %d\n", handles(UTIL_HANDLES_CHECK));
    UtilModuleOnDetach(L"painter.exe"); // the last module: what is left is reported
}
