// The window, driven by messages as by a user's hands.
#include "viewer.h"

#include "resource.h"

#include <commctrl.h>
#include <shellapi.h>
#include <shlobj.h>

#include <optional>

namespace logpan_test {

namespace {

HWND PublishedWindow() {
    return reinterpret_cast<HWND>(static_cast<UINT_PTR>(PublishedInfo().window));
}

// A window shows new lines by a timer of its own, so there is nothing to wait on but the window; ctest ends a
// test that waits for ever.
template <class Condition>
void Until(Condition condition) {
    while (!condition())
        Sleep(1);
}

class Window : public ::testing::Test {
  protected:
    // What the window keeps is what a test gives it.
    void Start(const std::string& arguments, std::string_view settings = "") {
        if (!settings.empty())
            testing_prof::WriteBytes(SettingsPath(), settings);
        viewer_.emplace("--settings \"" + SettingsPath().string() + "\" " + arguments, LOGPAN_WINDOW);
    }
    void StartListening(std::string_view settings = "") {
        Start("--capacity 100", settings);
        Until([] { return PublishedInfo().mask != 0; });
        window_ = PublishedWindow();
        Until([this] { return IsWindowVisible(window_) != 0; });
    }
    void StartWithFile(const std::filesystem::path& path, std::string_view settings = "") {
        Start("\"" + path.string() + "\"", settings);
        Until([this] { return IsWindowVisible(window_ = FindWindowW(LOGPAN_WINDOW_CLASS, nullptr)) != 0; });
    }
    std::filesystem::path SettingsPath() const { return folder_ / L"logpan.prf"; }
    std::wstring Kept() const {
        const std::string bytes = testing_prof::ReadBytes(SettingsPath());
        return {reinterpret_cast<const wchar_t*>(bytes.data()), bytes.size() / sizeof(wchar_t)};
    }
    // The settings as they are kept when the window is closed.
    std::wstring Close() {
        PostMessageW(window_, WM_CLOSE, 0, 0);
        EXPECT_EQ(viewer_->Finish().code, 0u);
        return Kept();
    }

    LRESULT Tell(int control, UINT message, WPARAM first = 0, LPARAM second = 0) const {
        return SendMessageW(GetDlgItem(window_, control), message, first, second);
    }
    void Command(int id) const { SendMessageW(window_, WM_COMMAND, static_cast<WPARAM>(id), 0); }
    LRESULT Rows() const { return Tell(ID_LINES, LVM_GETITEMCOUNT); }
    void Type(int box, const wchar_t* text) const {
        Tell(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    }
    std::wstring Typed(int box) const {
        wchar_t text[300] = L"";
        Tell(box, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text));
        return text;
    }
    LRESULT Selected() const {
        return Tell(ID_LINES, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED);
    }
    LRESULT Columns() const {
        const auto header = reinterpret_cast<HWND>(Tell(ID_LINES, LVM_GETHEADER));
        return SendMessageW(header, HDM_GETITEMCOUNT, 0, 0);
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

    const testing_prof::clsTempFolder folder_;
    std::optional<clsViewer> viewer_;
    HWND window_ = nullptr;
};

// Memory of a window's process, for messages whose pointers the system does not translate. It goes with the
// process.
class clsMemoryThere {
  public:
    clsMemoryThere(HWND window, const void* bytes, std::size_t size) : size_(size) {
        DWORD id = 0;
        GetWindowThreadProcessId(window, &id);
        process_.reset(OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, id));
        there_ = VirtualAllocEx(process_.get(), nullptr, size, MEM_COMMIT, PAGE_READWRITE);
        EXPECT_TRUE(WriteProcessMemory(process_.get(), there_, bytes, size, nullptr));
    }
    void* Address() const { return there_; }
    std::wstring Text() const {
        std::wstring text(size_ / sizeof(wchar_t), L'\0');
        EXPECT_TRUE(ReadProcessMemory(process_.get(), there_, text.data(), size_, nullptr));
        return text.c_str();
    }

  private:
    testing_prof::Handle process_;
    std::size_t size_;
    void* there_ = nullptr;
};

// As a file manager does it: the names of the files.
void DropOn(HWND window, const std::filesystem::path& file) {
    const DROPFILES head{sizeof(DROPFILES), {}, FALSE, TRUE};
    std::string bytes(reinterpret_cast<const char*>(&head), sizeof head);
    const std::wstring names = file.wstring() + std::wstring(2, L'\0');
    bytes.append(reinterpret_cast<const char*>(names.data()), names.size() * sizeof(wchar_t));
    const clsMemoryThere drop(window, bytes.data(), bytes.size());
    SendMessageW(window, WM_DROPFILES, reinterpret_cast<WPARAM>(drop.Address()), 0);
}

// As the window says it once a second.
std::wstring LinesASecond(HWND window) {
    constexpr WPARAM statusTimer = 2, ratePart = 2;
    SendMessageW(window, WM_TIMER, statusTimer, 0);
    const wchar_t none[100] = L"";
    const clsMemoryThere text(window, none, sizeof none);
    SendMessageW(GetDlgItem(window, ID_STATUS), SB_GETTEXTW, ratePart,
                 reinterpret_cast<LPARAM>(text.Address()));
    return text.Text();
}

} // namespace

TEST_F(Window, ShowsFiltersPausesCopiesAndClears) {
    StartListening();
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

    for (int at = 0; at < 11; ++at) { // the oldest lines leave once there are more than 110
        if (at == 5) {
            Until([this] { return Rows() == 105; });
            Tell(ID_LINES, WM_KEYDOWN, VK_END);
            EXPECT_EQ(Selected(), 104);
        }
        sender.Line(at == 4 ? L"focused" : L"many", static_cast<char>('0' + (at + 6) % 10));
    }
    Until([this] { return Rows() == 100; });
    EXPECT_EQ(Selected(), 93);
    EXPECT_EQ(Tell(ID_LINES, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED), 93);
    EXPECT_EQ(Typed(ID_DETAIL), L"focused");

    Command(ID_FOLLOW);
    EXPECT_FALSE(IsChecked(ID_FOLLOW));
    Command(ID_CLEAR);
    EXPECT_EQ(Rows(), 0);
    testing_prof::WriteBytes(SettingsPath(), "ZZmQ being edited");
    Close();
    EXPECT_EQ(testing_prof::ReadBytes(SettingsPath()), "ZZmQ being edited");
    EXPECT_EQ(PublishedInfo().mask, 0u);
}

// What the system sends when the window is moved to a monitor with more dots.
TEST_F(Window, IsAsLargeOnEveryMonitor) {
    StartListening();
    const auto height = [this](int control) {
        RECT area{};
        GetWindowRect(GetDlgItem(window_, control), &area);
        return area.bottom - area.top;
    };
    const auto more = [](auto measure) { return MulDiv(static_cast<int>(measure), 5, 4); };
    const LONG before[] = {height(ID_INCLUDE), height(ID_DETAIL)};
    const LRESULT columnBefore = Tell(ID_LINES, LVM_GETCOLUMNWIDTH);
    const RECT place{10, 20, 1010, 720};
    const clsMemoryThere there(window_, &place, sizeof place);
    const WORD dots = static_cast<WORD>(more(GetDeviceCaps(GetDC(nullptr), LOGPIXELSY)));
    SendMessageW(window_, WM_DPICHANGED, MAKEWPARAM(dots, dots), reinterpret_cast<LPARAM>(there.Address()));
    RECT now{};
    GetWindowRect(window_, &now);
    EXPECT_TRUE(EqualRect(&now, &place));
    EXPECT_EQ(height(ID_INCLUDE), more(before[0]));
    EXPECT_NEAR(height(ID_DETAIL), more(before[1]), 6) << "its font knows no half dots";
    EXPECT_EQ(Tell(ID_LINES, LVM_GETCOLUMNWIDTH), more(columnBefore));
}

TEST_F(Window, FindsMarksAndChoosesLines) {
    StartListening(
        "[/]\r\n{\r\nTheme=dark\r\nOwn=kept\r\n[Filters]\r\n{\r\n1=: none\r\n3=a: severity=error\r\n}\r\n"
        "[Highlights]\r\n{\r\n1=pink: alpha\r\n2=yellow: gamma\r\n}\r\n}\r\n");
    const clsSender sender{PublishedInfo().port};
    char digit = '0';
    for (const wchar_t* text : {L"alpha", L"ERR: beta", L"gamma", L"gamma 2", L"WRN: delta"})
        sender.Line(text, digit++);
    Until([this] { return Rows() == 5; });
    Type(ID_FIND, L"GAMMA");
    for (const auto& [command, row] : {std::pair{ID_FIND_NEXT, 2},
                                       {ID_FIND_NEXT, 3},
                                       {ID_FIND_NEXT, 2},
                                       {ID_BOOKMARK, 2},
                                       {ID_FIND_PREVIOUS, 3},
                                       {ID_NEXT_BOOKMARK, 2}}) {
        Command(command);
        EXPECT_EQ(Selected(), row);
    }
    Tell(ID_LINES, WM_CHAR, L'a', 1);
    EXPECT_EQ(Selected(), 2) << "letters find nothing in the list";
    Command(ID_ONLY_THREAD);
    EXPECT_EQ(Typed(ID_ONLY), L"thread=1234");
    Command(ID_ONLY_PROBLEMS);
    EXPECT_EQ(Typed(ID_ONLY), L"thread=1234 severity=warning,error");
    EXPECT_EQ(Rows(), 2);
    Command(ID_FIRST_SAVED);
    EXPECT_EQ(Typed(ID_ONLY), L"severity=error");
    EXPECT_EQ(Rows(), 1);
    Type(ID_ONLY, L"severity=bad");
    EXPECT_EQ(Rows(), 1);

    EXPECT_EQ(Columns(), 6);
    Command(ID_FIRST_COLUMN);
    Command(ID_THEME_LIGHT);
    EXPECT_EQ(Columns(), 5);
    SendMessageW(window_, WM_ENDSESSION, TRUE, 0);
    EXPECT_NE(Kept().find(L"Theme=light"), std::wstring::npos) << "nobody closes it any more";
    const std::wstring kept = Close();
    for (const wchar_t* line :
         {L"Theme=light", L"Time=0\r", L"1=a: severity=error", L"1=yellow: gamma", L"Own=kept"})
        EXPECT_NE(kept.find(line), std::wstring::npos) << kept;
}

TEST_F(Window, OpensFilesWithDamagedSettings) {
    const std::filesystem::path one{folder_ / L"one.log"}, two{folder_ / L"two.json"};
    testing_prof::WriteBytes(
        one, "A       : 12:34:56.789 00000001/00 1  one\r\nB       : 12:34:56.790 00000001/00 2  two\r\n");
    testing_prof::WriteBytes(two, "{\"text\":\"x\"}\n");
    StartWithFile(one, "ZZmQ damaged");
    Until([this] { return Rows() == 2; });
    EXPECT_EQ(Copied(),
              L"12:34:56.789 A        00000001/00 1 one\r\n12:34:56.790 B        00000001/00 2 two\r\n");
    DropOn(window_, two);
    Until([this] { return Rows() == 1; });
    EXPECT_LT(LinesASecond(window_).size(), 20u) << "fewer lines than those before are none that left";
    DropOn(window_, folder_ / L"missing");
    Until([this] { return Typed(ID_STATUS).find(L"missing: ") != std::wstring::npos; });
    EXPECT_EQ(Rows(), 0);
    EXPECT_NE(Close().find(L"Theme=system"), std::wstring::npos);
    EXPECT_TRUE(std::filesystem::exists(folder_ / L"logpan.prf.bad"));
}

} // namespace logpan_test
