// The window, driven by messages as by a user's hands.
#include "viewer.h"

#include "resource.h"

#include <commctrl.h>

namespace logpan_test {

namespace {

HWND PublishedWindow() {
    return reinterpret_cast<HWND>(static_cast<UINT_PTR>(PublishedInfo().window));
}

class Window : public ::testing::Test {
  protected:
    // A window shows new lines by a timer of its own, so there is nothing to wait on but the window; ctest
    // ends a test that waits for ever.
    template <class Condition>
    static void Until(Condition condition) {
        while (!condition())
            Sleep(1);
    }

    void SetUp() override {
        Until([] { return PublishedInfo().mask != 0; });
        window_ = PublishedWindow();
        Until([this] { return IsWindowVisible(window_) != 0; });
    }

    LRESULT Tell(int control, UINT message, WPARAM first = 0, LPARAM second = 0) const {
        return SendMessageW(GetDlgItem(window_, control), message, first, second);
    }
    void Command(int id) const { SendMessageW(window_, WM_COMMAND, static_cast<WPARAM>(id), 0); }
    LRESULT Rows() const { return Tell(ID_LINES, LVM_GETITEMCOUNT); }
    void Type(int box, const wchar_t* text) const {
        Tell(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    }
    bool IsChecked(int box) const { return Tell(box, BM_GETCHECK) == BST_CHECKED; }
    std::wstring Copied() const {
        Command(ID_SELECT_ALL);
        Command(ID_COPY);
        std::wstring text;
        if (!OpenClipboard(nullptr))
            return text;
        if (const HANDLE block = GetClipboardData(CF_UNICODETEXT)) {
            text = static_cast<const wchar_t*>(GlobalLock(block));
            GlobalUnlock(block);
        }
        CloseClipboard();
        return text;
    }

    clsViewer viewer_{"--capacity 100", LOGPAN_WINDOW};
    HWND window_ = nullptr;
};

} // namespace

TEST_F(Window, ShowsFiltersPausesCopiesAndClears) {
    const clsSender sender{PublishedInfo().port};
    char digit = '0';
    for (const wchar_t* text : {L"alpha", L"  ERR: beta", L"gamma", L"gamma 2"})
        sender.Line(text, digit++);
    Until([this] { return Rows() == 4; });
    Type(ID_EXCLUDE, L"GAMMA");
    EXPECT_EQ(Rows(), 2);
    EXPECT_EQ(Copied(), L"12:34:56.789 KX32UTIL 00001234/01 0 alpha\r\n"
                        L"12:34:56.789 KX32UTIL 00001234/01 1   ERR: beta\r\n");
    Type(ID_INCLUDE, L"^(alpha|gamma)$");
    EXPECT_EQ(Rows(), 0);
    Command(ID_REGULAR);
    EXPECT_TRUE(IsChecked(ID_REGULAR));
    EXPECT_EQ(Rows(), 1);
    Type(ID_INCLUDE, L"^(alpha");
    EXPECT_EQ(Rows(), 1) << "the filter before stays until this one is whole";
    Command(ID_CLEAR_FILTER);
    EXPECT_EQ(Rows(), 4);

    Command(ID_PAUSE);
    sender.Line(L"while paused", digit++);
    Command(ID_REGULAR);
    EXPECT_EQ(Rows(), 4);
    Command(ID_PAUSE);
    Until([this] { return Rows() == 5; });

    for (int at = 0; at < 300; ++at)
        sender.Line(L"many", static_cast<char>('0' + (at + 5) % 10));
    sender.Line(L"last", '5');
    Type(ID_INCLUDE, L"last");
    Until([this] { return Rows() == 1; });
    Type(ID_INCLUDE, L"");
    Until([this] { return Rows() == 100; });

    Command(ID_FOLLOW);
    EXPECT_FALSE(IsChecked(ID_FOLLOW));
    Command(ID_CLEAR);
    EXPECT_EQ(Rows(), 0);
    PostMessageW(window_, WM_CLOSE, 0, 0);
    EXPECT_EQ(viewer_.Finish().code, 0u);
    EXPECT_EQ(PublishedInfo().mask, 0u);
}

// What the system sends when the window is moved to a monitor with more dots.
TEST_F(Window, IsAsLargeOnEveryMonitor) {
    const auto height = [this](int control) {
        RECT area{};
        GetWindowRect(GetDlgItem(window_, control), &area);
        return area.bottom - area.top;
    };
    const auto more = [](auto measure) { return MulDiv(static_cast<int>(measure), 5, 4); };
    const LONG before[] = {height(ID_INCLUDE), height(ID_DETAIL)};
    const LRESULT columnBefore = Tell(ID_LINES, LVM_GETCOLUMNWIDTH);
    DWORD id = 0;
    GetWindowThreadProcessId(window_, &id);
    const testing_prof::Handle viewer(OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_WRITE, FALSE, id));
    const RECT place{10, 20, 1010, 720};
    void* const there = VirtualAllocEx(viewer.get(), nullptr, sizeof place, MEM_COMMIT, PAGE_READWRITE);
    ASSERT_TRUE(WriteProcessMemory(viewer.get(), there, &place, sizeof place, nullptr));
    const WORD dots = static_cast<WORD>(more(GetDeviceCaps(GetDC(nullptr), LOGPIXELSY)));
    SendMessageW(window_, WM_DPICHANGED, MAKEWPARAM(dots, dots), reinterpret_cast<LPARAM>(there));
    RECT now{};
    GetWindowRect(window_, &now);
    EXPECT_TRUE(EqualRect(&now, &place));
    EXPECT_EQ(height(ID_INCLUDE), more(before[0]));
    EXPECT_NEAR(height(ID_DETAIL), more(before[1]), 6) << "its font knows no half dots";
    EXPECT_EQ(Tell(ID_LINES, LVM_GETCOLUMNWIDTH), more(columnBefore));
}

} // namespace logpan_test
