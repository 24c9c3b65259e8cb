// A form with a box for amounts: a subclass lets only digits into it, a second one tells what the box is
// told; a hook sees the windows that are made and forbids one; Ctrl+Break stops a long loop that handles no
// messages. The program types and presses its keys itself, and ends by itself.
#include <tvut22/tvut22.hpp>

#include <cstdio>
#include <string>

namespace {

void HandleMessages() {
    for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

// ---- The box ---------------------------------------------------------------------------------------

class AmountBox {
  public:
    explicit AmountBox(HWND form)
        : window_(CreateWindowW(L"EDIT", L"", WS_CHILD | WS_VISIBLE, 10, 10, 100, 20, form, nullptr, nullptr,
                                nullptr)),
          digits_(tvut22::subclass_by<&AmountBox::OnlyDigits>(window_, *this)),
          told_(tvut22::subclass_by<&AmountBox::Tell>(window_, *this)) {} // the newest is asked first

    // They were there to see the last message, and came off after it.
    void SayWhatIsLeft() {
        std::printf("removed when the window is gone: %d", UtilWindowUnsubclass(digits_.get()));
        std::printf(", a second time: %d\n", UtilWindowUnsubclass(digits_.release()));
    }

    void Type(const wchar_t* text) {
        std::printf("typing %ls\n", text);
        for (; *text; ++text)
            PostMessageW(window_, WM_CHAR, static_cast<WPARAM>(*text), 1);
        HandleMessages();
    }

    std::wstring Text() const {
        wchar_t text[32];
        return {text, static_cast<std::size_t>(GetWindowTextW(window_, text, 32))};
    }

  private:
    LRESULT OnlyDigits(UtilSubclass subclass, HWND window, UINT message, WPARAM w, LPARAM l) {
        if (message == WM_CHAR && !(w >= L'0' && w <= L'9'))
            return 0; // answered: the box never hears of it
        return UtilWindowCallNext(subclass, window, message, w, l);
    }

    // Tells the first characters by the message's name, then removes itself within its own call.
    LRESULT Tell(UtilSubclass subclass, HWND window, UINT message, WPARAM w, LPARAM l) {
        if (message == WM_CHAR) {
            BSTR name = nullptr;
            UtilWindowMessageName(message, window, &name);
            std::printf("  %ls %lc\n", name ? name : L"?", static_cast<wint_t>(w));
            SysFreeString(name);
            if (++characters_ == 3)
                told_.reset();
        }
        return UtilWindowCallNext(subclass, window, message, w, l);
    }

    HWND window_;
    int characters_ = 0;
    tvut22::subclass digits_, told_;
};

// ---- The windows that are made -----------------------------------------------------------------------

class Watch {
  public:
    Watch() : hook_(tvut22::hook_cbt_by<&Watch::OnWindow>(*this)) {}

  private:
    LRESULT OnWindow(UtilHook, INT code, WPARAM, LPARAM l) {
        if (code != HCBT_CREATEWND)
            return 0;
        const CREATESTRUCTW* const made = reinterpret_cast<const CBT_CREATEWNDW*>(l)->lpcs;
        const std::wstring title = made->lpszName ? made->lpszName : L"";
        if (title != L"Report" && title != L"Advertisement")
            return 0; // the system makes windows of its own, too
        const bool forbidden = title == L"Advertisement";
        std::printf("a window \"%ls\" %s\n", title.c_str(), forbidden ? "is forbidden" : "is made");
        return forbidden;
    }

    tvut22::hook hook_;
};

HWND MakeWindow(const wchar_t* title) {
    return CreateWindowW(L"STATIC", title, WS_OVERLAPPEDWINDOW, 20, 20, 300, 200, nullptr, nullptr, nullptr,
                         nullptr);
}

// ---- The long loop -------------------------------------------------------------------------------------

void PressCtrlBreak() {
    INPUT keys[2] = {};
    for (INPUT& key : keys) {
        key.type = INPUT_KEYBOARD;
        key.ki.wVk = VK_CANCEL;
    }
    keys[1].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(2, keys, sizeof keys[0]);
}

void ComputeForLong(HWND form) {
    const tvut22::hook hook(UtilHookCtrlBreak(nullptr, 0));
    SetForegroundWindow(form);
    SetFocus(form);
    int page = 1;
    for (; page <= 1000 && UtilHookBreakSeen(hook.get()) == 0; ++page)
        if (page == 12) // what the user would do
            PressCtrlBreak();
    std::printf("stopped before page %d of 1000\n", page);
    HandleMessages();
    std::printf("Ctrl+Break since then: %d\n", UtilHookBreakSeen(hook.get()));
}

} // namespace

int main() {
    const Watch watch;
    const HWND form = MakeWindow(L"Form");
    ShowWindow(form, SW_SHOW);
    AmountBox box(form);
    box.Type(L"1a2b3");
    std::printf("the box holds %ls\n", box.Text().c_str());
    DestroyWindow(MakeWindow(L"Report"));
    if (!MakeWindow(L"Advertisement"))
        std::puts("and there is none");
    ComputeForLong(form);
    DestroyWindow(form);
    box.SayWhatIsLeft();
}
