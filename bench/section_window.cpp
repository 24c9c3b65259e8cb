// Subclasses and Ctrl+Break against the system's own calls.
#include "sections.h"

#include <tvut22/tvut22.hpp>

#include <windows.h>

#include <commctrl.h>

namespace bench {

namespace {

constexpr UINT asked = WM_APP + 1;

LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM w, LPARAM l) {
    return message == asked ? static_cast<LRESULT>(w + 1) : DefWindowProcW(window, message, w, l);
}

LRESULT TVUT22_CALL PassOn(UtilSubclass subclass, HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR) {
    return UtilWindowCallNext(subclass, window, message, w, l);
}

LRESULT CALLBACK PassOnBare(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR, DWORD_PTR) {
    return DefSubclassProc(window, message, w, l);
}

class clsWindow {
  public:
    clsWindow() {
        WNDCLASSW type{};
        type.lpfnWndProc = Answer;
        type.lpszClassName = L"tvut22-bench";
        RegisterClassW(&type);
        handle_ =
            CreateWindowW(type.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        Require(handle_ != nullptr, "CreateWindow");
    }
    ~clsWindow() { DestroyWindow(handle_); }
    clsWindow(const clsWindow&) = delete;
    clsWindow& operator=(const clsWindow&) = delete;
    HWND Get() const { return handle_; }

  private:
    HWND handle_;
};

double PerMessage(const clsWindow& window, std::size_t messages) {
    return PerCall(messages, [&](std::size_t number) {
        Require(SendMessageW(window.Get(), asked, number, 0) == static_cast<LRESULT>(number + 1),
                "SendMessage");
    });
}

void MeasureMessages(const scSettings& settings, clsReport& report) {
    const std::size_t messages = settings.quick ? 200 : 3000;
    const clsWindow ours, bare;
    Require(UtilWindowSubclass(ours.Get(), PassOn, 0) != nullptr, "UtilWindowSubclass");
    Require(SetWindowSubclass(bare.Get(), PassOnBare, 1, 0) != FALSE, "SetWindowSubclass");
    const Round rounds[] = {[&] { return PerMessage(ours, messages); },
                            [&] { return PerMessage(bare, messages); }};
    const auto ns = Race(rounds, settings.rounds);
    report.Against("a message through one subclass", ns[0], "SetWindowSubclass", ns[1], AtMost(1.3));
}

void MeasureBreakSeen(const scSettings& settings, clsReport& report) {
    const std::size_t calls = settings.quick ? 10000 : 300000;
    const tvut22::hook hook(UtilHookCtrlBreak(nullptr, 0));
    Require(static_cast<bool>(hook), "UtilHookCtrlBreak");
    std::size_t seen = 0;
    const Round rounds[] = {
        [&] {
            return PerCall(
                calls, [&](std::size_t) { seen += static_cast<std::size_t>(UtilHookBreakSeen(hook.get())); });
        },
        [&] {
            return PerCall(calls, [&](std::size_t) { seen += (GetAsyncKeyState(VK_CANCEL) & 0x8001) != 0; });
        }};
    const auto ns = Race(rounds, settings.rounds);
    Require(seen == 0, "somebody has pressed Ctrl+Break");
    report.Against("UtilHookBreakSeen, no window in front", ns[0], "GetAsyncKeyState", ns[1], AtMost(2));
}

} // namespace

void MeasureWindow(const scSettings& settings, clsReport& report) {
    report.Section("Windows");
    MeasureMessages(settings, report);
    MeasureBreakSeen(settings, report);
}

} // namespace bench
