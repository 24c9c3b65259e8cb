// Hooks: what CBT tells of a window's life, and Ctrl+Break from the keyboard and from a console.
#include "support/child.h"

#include <gtest/gtest.h>
#include <tvut22/tvut22.hpp>

#include <algorithm>
#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <vector>

namespace testing_prof {
namespace {

constexpr wchar_t kTitle[] = L"tvut22 hooks";

// A top window of this thread, in front when it is shown.
class Window {
  public:
    Window()
        : handle(CreateWindowW(L"STATIC", kTitle, WS_OVERLAPPEDWINDOW, 10, 10, 200, 100, nullptr, nullptr,
                               nullptr, nullptr)) {}
    ~Window() { DestroyWindow(handle); }
    Window(const Window&) = delete;

    HWND handle;
};

// A callable behind a hook.
template <class Handle, class Result, class... Arguments>
struct Through {
    using Body = std::function<Result(Handle, Arguments...)>;
    static Result TVUT22_CALL call(Handle handle, Arguments... arguments, UINT_PTR user) {
        return (*reinterpret_cast<const Body*>(user))(handle, arguments...);
    }
};
using Cbt = Through<UtilHook, LRESULT, INT, WPARAM, LPARAM>;
using Break = Through<UtilHook, BOOL>;

tvut22::hook hookCbt(const Cbt::Body& body) {
    return tvut22::hook(UtilHookCBT(Cbt::call, reinterpret_cast<UINT_PTR>(&body)));
}
tvut22::hook hookBreak(const Break::Body& body) {
    return tvut22::hook(UtilHookCtrlBreak(Break::call, reinterpret_cast<UINT_PTR>(&body)));
}

// ---- CBT -------------------------------------------------------------------------------------------

// The codes are the ones that a bare hook of the system, the older one, is told.
std::vector<int> bare;
LRESULT CALLBACK bareProc(int code, WPARAM first, LPARAM second) {
    bare.push_back(code);
    return CallNextHookEx(nullptr, code, first, second);
}

TEST(Hooks, TellEveryCodeOfAWindowsLife) {
    bare.clear();
    const HHOOK system = SetWindowsHookExW(WH_CBT, bareProc, nullptr, GetCurrentThreadId());
    std::vector<int> told;
    const Cbt::Body body = [&](UtilHook, INT code, WPARAM, LPARAM) {
        told.push_back(code);
        return 0;
    };
    const auto hook = hookCbt(body);
    {
        const Window window;
        ShowWindow(window.handle, SW_SHOW);
        SetFocus(window.handle);
        MoveWindow(window.handle, 20, 20, 300, 200, FALSE);
        ShowWindow(window.handle, SW_MINIMIZE);
        ShowWindow(window.handle, SW_RESTORE);
        SendMessageW(window.handle, WM_SYSCOMMAND, SC_KEYMENU, 'x');
    }
    UnhookWindowsHookEx(system);
    EXPECT_EQ(told, bare);
    for (const int code :
         {HCBT_CREATEWND, HCBT_ACTIVATE, HCBT_SETFOCUS, HCBT_MINMAX, HCBT_SYSCOMMAND, HCBT_DESTROYWND})
        EXPECT_EQ(std::ranges::count(told, code) > 0, true) << code;
    ASSERT_FALSE(told.empty());
    EXPECT_EQ(told.front(), HCBT_CREATEWND);
}

// Beside ours the system makes windows of its own.
bool isOurs(INT code, LPARAM second) {
    if (code != HCBT_CREATEWND)
        return false;
    const wchar_t* const title = reinterpret_cast<const CBT_CREATEWNDW*>(second)->lpcs->lpszName;
    return title && std::wstring_view(title) == kTitle;
}

TEST(Hooks, AskTheNewestFirstAndForbid) {
    std::vector<int> asked;
    int forbids = 0;
    const auto asks = [&](int number) {
        return [&asked, &forbids, number](UtilHook, INT code, WPARAM, LPARAM second) -> LRESULT {
            if (isOurs(code, second))
                asked.push_back(number);
            return isOurs(code, second) && forbids == number;
        };
    };
    const Cbt::Body first = asks(1), second = asks(2), third = asks(3);
    const auto hook1 = hookCbt(first), hook2 = hookCbt(second), hook3 = hookCbt(third);
    const std::vector<std::vector<int>> expected = {{3, 2, 1}, {3, 2, 1}, {3, 2}, {3}};
    for (forbids = 0; forbids <= 3; ++forbids) {
        asked.clear();
        EXPECT_EQ(Window().handle != nullptr, forbids == 0);
        EXPECT_EQ(asked, expected[static_cast<std::size_t>(forbids)]);
    }
}

// One of three closes one of them, has a window made by the way, and makes another hook.
TEST(Hooks, MayChangeWhileTheyAreAsked) {
    for (int at = 0; at < 3; ++at)
        for (int closed = 0; closed < 3; ++closed) {
            std::vector<int> asked;
            tvut22::hook hooks[3], late;
            Cbt::Body bodies[3];
            const Cbt::Body lateBody = [&](UtilHook, INT code, WPARAM, LPARAM second) {
                return isOurs(code, second) ? asked.push_back(9), 0 : 0;
            };
            const auto change = [&] {
                EXPECT_EQ(hooks[closed].reset(), UTIL_OK);
                const auto before = std::exchange(asked, {});
                EXPECT_TRUE(Window().handle);
                EXPECT_EQ(asked.size(), 2u) << "those that are left";
                late = hookCbt(lateBody);
                asked = before;
            };
            for (int i = 0; i < 3; ++i) {
                bodies[i] = [&, i](UtilHook, INT code, WPARAM, LPARAM second) -> LRESULT {
                    if (isOurs(code, second)) {
                        asked.push_back(i);
                        if (i == at && !late && hooks[closed])
                            change();
                    }
                    return 0;
                };
                hooks[i] = hookCbt(bodies[i]);
            }
            std::vector<int> expected{2, 1, 0};
            if (closed < at)
                std::erase(expected, closed);
            EXPECT_TRUE(Window().handle);
            EXPECT_EQ(asked, expected) << at << closed;
            asked.clear();
            expected = {9, 2, 1, 0};
            std::erase(expected, closed);
            EXPECT_TRUE(Window().handle);
            EXPECT_EQ(asked, expected) << at << closed;
        }
}

TEST(Hooks, BelongToTheirThreads) {
    std::atomic<int> here{0}, there{0};
    const Cbt::Body countHere = [&](UtilHook, INT, WPARAM, LPARAM) { return ++here, 0; };
    const Cbt::Body countThere = [&](UtilHook, INT, WPARAM, LPARAM) { return ++there, 0; };
    auto ours = hookCbt(countHere);
    UtilHook theirs = nullptr, theirBreak = nullptr;
    std::thread([&] {
        theirs = hookCbt(countThere).release();
        theirBreak = UtilHookCtrlBreak(nullptr, 0);
        EXPECT_EQ(UtilHookClose(ours.get()), UTIL_WRONG_THREAD);
        const Window window;
        EXPECT_EQ(UtilHookBreakSeen(theirBreak), 0);
    }).join();
    EXPECT_EQ(here, 0);
    EXPECT_GT(there, 0);
    for (const UtilHook gone : {theirs, theirBreak, reinterpret_cast<UtilHook>(&here)}) {
        EXPECT_EQ(UtilHookClose(gone), UTIL_BAD_ARGUMENT);
        EXPECT_EQ(UtilHookBreakSeen(gone), UTIL_BAD_ARGUMENT);
    }
    EXPECT_EQ(UtilHookBreakSeen(ours.get()), UTIL_BAD_ARGUMENT) << "of the other kind";
    EXPECT_EQ(UtilHookClose(nullptr), UTIL_OK);
    EXPECT_EQ(UtilHookClose(ours.get()), UTIL_OK);
    EXPECT_EQ(UtilHookClose(ours.release()), UTIL_BAD_ARGUMENT);
    SetLastError(0);
    EXPECT_FALSE(UtilHookCBT(nullptr, 0));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

// ---- Ctrl+Break from the keyboard ------------------------------------------------------------------

void key(DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = VK_CANCEL;
    input.ki.dwFlags = flags;
    ASSERT_EQ(SendInput(1, &input, sizeof input), 1u);
}
void press() {
    key(0);
}
void release() {
    key(KEYEVENTF_KEYUP);
}

// Takes all messages; how often the key has arrived.
int handleMessages() {
    int arrived = 0;
    for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); DispatchMessageW(&message))
        arrived += message.message == WM_KEYDOWN && message.wParam == VK_CANCEL;
    return arrived;
}

class CtrlBreak : public testing::Test {
  protected:
    void SetUp() override {
        ShowWindow(window.handle, SW_SHOW);
        SetForegroundWindow(window.handle);
        SetFocus(window.handle);
        handleMessages();
        ASSERT_EQ(GetForegroundWindow(), window.handle);
    }
    void TearDown() override {
        release();
        handleMessages();
    }

    Window window;
    int called = 0;
    bool isSwallowed = true;
    const Break::Body body = [&](UtilHook) {
        ++called;
        return isSwallowed;
    };
};

TEST_F(CtrlBreak, IsSeenInTheFlowOfMessages) {
    const auto hook = hookBreak(body);
    for (const bool swallows : {true, false}) {
        isSwallowed = swallows;
        called = 0;
        press();
        press(); // a repeat
        release();
        press();
        MSG message;
        PeekMessageW(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_NOREMOVE);
        EXPECT_EQ(called, 0) << "it was not taken yet";
        EXPECT_EQ(handleMessages(), swallows ? 0 : 3);
        EXPECT_EQ(called, 2);
        EXPECT_EQ(UtilHookBreakSeen(hook.get()), 2);
        EXPECT_EQ(UtilHookBreakSeen(hook.get()), 0);
        release();
        handleMessages();
    }
}

// A long loop that handles no messages.
TEST_F(CtrlBreak, IsSeenWithoutMessages) {
    const auto hook = hookBreak(body);
    const auto seen = [&] { return UtilHookBreakSeen(hook.get()); };
    EXPECT_EQ(seen(), 0);
    press();
    EXPECT_EQ(seen(), 1);
    press(); // a repeat
    EXPECT_EQ(seen(), 0);
    release();
    EXPECT_EQ(seen(), 0);
    press();
    release();
    EXPECT_EQ(seen(), 1) << "it is up again";
    EXPECT_EQ(called, 0);
    EXPECT_EQ(handleMessages(), 0);
    EXPECT_EQ(called, 2) << "of what the loop has left in the queue";
    EXPECT_EQ(seen(), 0) << "each press counts once";
    press();
    EXPECT_EQ(handleMessages(), 0);
    EXPECT_EQ(seen(), 1);
    EXPECT_EQ(seen(), 0);
}

TEST_F(CtrlBreak, IsNotThisProcesssWhileAnotherWindowIsInFront) {
    const tvut22::hook hook(UtilHookCtrlBreak(nullptr, 0));
    SetForegroundWindow(GetDesktopWindow());
    ASSERT_NE(GetForegroundWindow(), window.handle);
    press();
    EXPECT_EQ(UtilHookBreakSeen(hook.get()), 0);
    SetForegroundWindow(window.handle);
    EXPECT_EQ(UtilHookBreakSeen(hook.get()), 0) << "held since then";
}

TEST_F(CtrlBreak, IsToldToTheNewestHookFirst) {
    std::vector<int> asked;
    const Break::Body closing = [&](UtilHook hook) {
        asked.push_back(3);
        EXPECT_EQ(UtilHookClose(hook), UTIL_OK);
        return FALSE;
    };
    const Break::Body swallowing = [&](UtilHook) { return asked.push_back(2), TRUE; };
    const tvut22::hook counting(UtilHookCtrlBreak(nullptr, 0));
    const auto second = hookBreak(swallowing);
    hookBreak(closing).release();
    for (int i = 0; i < 2; ++i) {
        press();
        release();
        handleMessages();
    }
    EXPECT_EQ(asked, (std::vector<int>{3, 2, 2}));
    EXPECT_EQ(UtilHookBreakSeen(second.get()), 2);
    EXPECT_EQ(UtilHookBreakSeen(counting.get()), 0);
}

TEST_F(CtrlBreak, IsSeenWhenItIsPosted) {
    const auto hook = hookBreak(body);
    PostMessageW(window.handle, WM_KEYDOWN, VK_CANCEL, 1);
    EXPECT_EQ(handleMessages(), 0);
    EXPECT_EQ(called, 1);
    EXPECT_EQ(std::async(std::launch::async, UtilHookBreakSeen, hook.get()).get(), 1) << "any thread may ask";
}

// ---- Ctrl+Break from a console ---------------------------------------------------------------------

constexpr DWORD kSurvived = 17;

// In a process of its own, which the event ends unless a hook has swallowed it. The event comes as the system
// sends it: by a thread that runs this function.
int awaitEvent(bool swallows) {
    const Handle told(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    const DWORD self = GetCurrentThreadId();
    const Break::Body body = [&](UtilHook) {
        if (GetCurrentThreadId() == self)
            ExitProcess(1);
        SetEvent(told.get());
        return swallows;
    };
    const Break::Body older = [&](UtilHook) { return ExitProcess(2), FALSE; };
    const tvut22::hook first = swallows ? hookBreak(older) : tvut22::hook();
    const auto hook = hookBreak(body);
    const auto routine = reinterpret_cast<LPTHREAD_START_ROUTINE>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "CtrlRoutine")));
    const Handle event(
        CreateThread(nullptr, 0, routine, reinterpret_cast<void*>(CTRL_BREAK_EVENT), 0, nullptr));
    WaitForSingleObject(told.get(), INFINITE);
    if (!swallows)
        Sleep(INFINITE); // until the event ends the process
    return UtilHookBreakSeen(hook.get()) == 1 ? kSurvived : 4;
}

TEST(Hooks, DecideWhetherAConsolesEventEndsTheProcess) {
    EXPECT_EQ(clsChild(L"swallow").ExitCode(), kSurvived);
    const DWORD ended = clsChild(L"pass").ExitCode();
    EXPECT_TRUE(ended == DWORD{STATUS_CONTROL_C_EXIT} || ended == 0) << ended; // Wine's
}

} // namespace
} // namespace testing_prof

int main(int count, char** arguments) {
    const std::string role = count == 2 ? arguments[1] : "";
    if (role == "swallow" || role == "pass")
        return testing_prof::awaitEvent(role == "swallow");
    ::testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
