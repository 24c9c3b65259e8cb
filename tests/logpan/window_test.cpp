// The window, driven by messages as by a user's hands.
#include "viewer.h"

#include "resource.h"

#include <commctrl.h>

namespace logpan_test {

namespace {

HWND publishedWindow() {
    return reinterpret_cast<HWND>(static_cast<UINT_PTR>(publishedInfo().window));
}

class Window : public ::testing::Test {
  protected:
    // A window shows new lines by a timer of its own, so there is nothing to wait on but the window; ctest
    // ends a test that waits for ever.
    template <class Condition>
    static void until(Condition condition) {
        while (!condition())
            Sleep(1);
    }

    void SetUp() override {
        until([] { return publishedInfo().mask != 0; });
        window_ = publishedWindow();
        until([this] { return IsWindowVisible(window_) != 0; });
    }

    LRESULT tell(int control, UINT message, WPARAM first = 0, LPARAM second = 0) const {
        return SendMessageW(GetDlgItem(window_, control), message, first, second);
    }
    void command(int id) const { SendMessageW(window_, WM_COMMAND, static_cast<WPARAM>(id), 0); }
    LRESULT rows() const { return tell(ID_LINES, LVM_GETITEMCOUNT); }
    void type(int box, const wchar_t* text) const {
        tell(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    }
    bool isChecked(int box) const { return tell(box, BM_GETCHECK) == BST_CHECKED; }
    std::wstring copied() const {
        command(ID_SELECT_ALL);
        command(ID_COPY);
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

    Viewer viewer_{"--capacity 100", LOGPAN_WINDOW};
    HWND window_ = nullptr;
};

} // namespace

TEST_F(Window, ShowsFiltersPausesCopiesAndClears) {
    const Sender sender{publishedInfo().port};
    char digit = '0';
    for (const wchar_t* text : {L"alpha", L"  ERR: beta", L"gamma", L"gamma 2"})
        sender.line(text, digit++);
    until([this] { return rows() == 4; });
    type(ID_EXCLUDE, L"GAMMA");
    EXPECT_EQ(rows(), 2);
    EXPECT_EQ(copied(), L"12:34:56.789 KX32UTIL 00001234/01 0 alpha\r\n"
                        L"12:34:56.789 KX32UTIL 00001234/01 1   ERR: beta\r\n");
    type(ID_INCLUDE, L"^(alpha|gamma)$");
    EXPECT_EQ(rows(), 0);
    command(ID_REGULAR);
    EXPECT_TRUE(isChecked(ID_REGULAR));
    EXPECT_EQ(rows(), 1);
    type(ID_INCLUDE, L"^(alpha");
    EXPECT_EQ(rows(), 1) << "the filter before stays until this one is whole";
    command(ID_CLEAR_FILTER);
    EXPECT_EQ(rows(), 4);

    command(ID_PAUSE);
    sender.line(L"while paused", digit++);
    command(ID_REGULAR);
    EXPECT_EQ(rows(), 4);
    command(ID_PAUSE);
    until([this] { return rows() == 5; });

    for (int at = 0; at < 300; ++at)
        sender.line(L"many", static_cast<char>('0' + (at + 5) % 10));
    sender.line(L"last", '5');
    type(ID_INCLUDE, L"last");
    until([this] { return rows() == 1; });
    type(ID_INCLUDE, L"");
    until([this] { return rows() == 100; });

    command(ID_FOLLOW);
    EXPECT_FALSE(isChecked(ID_FOLLOW));
    command(ID_CLEAR);
    EXPECT_EQ(rows(), 0);
    PostMessageW(window_, WM_CLOSE, 0, 0);
    EXPECT_EQ(viewer_.finish().code, 0u);
    EXPECT_EQ(publishedInfo().mask, 0u);
}

} // namespace logpan_test
