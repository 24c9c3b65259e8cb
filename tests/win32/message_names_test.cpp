// Names of messages, for all numbers and classes, against the values that the compiler's headers give them.
#include "support/ole_text.h"

#include <gtest/gtest.h>
#include <tvut22/window.h>

#include <commctrl.h>
#include <map>
#include <richedit.h>
#include <set>
#include <string>
#include <vector>

namespace testing_prof {
namespace {

// As constants: a vector of strings would be code that the compiler works on for a minute and a half.
struct scMacroText {
    const char *header, *name;
    unsigned value;
};
constexpr scMacroText macroTexts[] = {
#include "message_values.inc"
};

struct scMacro {
    explicit scMacro(const scMacroText& text) : header(text.header), name(text.name), value(text.value) {}
    std::string header, name;
    unsigned value;

    std::string Prefix() const { return name.substr(0, name.find('_')); }
};

const std::vector<scMacro> macros(std::begin(macroTexts), std::end(macroTexts));

// What a window of a class knows above 0x3FF.
struct scClass {
    std::wstring name;
    std::string header, prefix;
};
const std::vector<scClass> classes{
    {L"ToolbarWindow32", "commctrl.h", "TB"},
    {L"msctls_statusbar32", "commctrl.h", "SB"},
    {L"msctls_trackbar32", "commctrl.h", "TBM"},
    {L"tooltips_class32", "commctrl.h", "TTM"},
    {L"msctls_progress32", "commctrl.h", "PBM"},
    {L"msctls_updown32", "commctrl.h", "UDM"},
    {L"ReBarWindow32", "commctrl.h", "RB"},
    {L"msctls_hotkey32", "commctrl.h", "HKM"},
    {L"SysDateTimePick32", "commctrl.h", "DTM"},
    {L"SysMonthCal32", "commctrl.h", "MCM"},
    {L"SysIPAddress32", "commctrl.h", "IPM"},
    {L"RICHEDIT", "richedit.h", "EM"},
    {L"RichEdit20A", "richedit.h", "EM"},
    {L"RichEdit20W", "richedit.h", "EM"},
    {L"RICHEDIT50W", "richedit.h", "EM"},
    {L"#32770", "winuser.h", "DM"},
    {L"EDIT", "", ""},
    {L"LISTBOX", "", ""},
    {L"COMBOBOX", "", ""},
    {L"BUTTON", "", ""},
    {L"of nobody", "", ""},
};

bool EndsIn(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

bool MayName(const scMacro& macro) {
    static const std::set<std::string> every = [] {
        std::set<std::string> names;
        for (const scMacro& each : macros)
            names.insert(each.name);
        return names;
    }();
    const bool isGeneric = every.count(macro.name + "A") != 0 && every.count(macro.name + "W") != 0;
    return !isGeneric && !EndsIn(macro.name, "FIRST") && !EndsIn(macro.name, "LAST") &&
           !EndsIn(macro.name, "MSGMAX");
}

// The last name with a value in a header and with a prefix, as a map.
using Names = std::map<unsigned, std::wstring>;
Names NamesOf(const std::string& header, const std::set<std::string>& prefixes, unsigned first,
              unsigned last) {
    Names names;
    for (const scMacro& macro : macros)
        if (macro.header == header && prefixes.count(macro.Prefix()) != 0 && macro.value >= first &&
            macro.value <= last && MayName(macro))
            names[macro.value] = std::wstring(macro.name.begin(), macro.name.end());
    return names;
}

const Names& SystemNames() {
    static const Names names = [] {
        Names found = NamesOf("winuser.h", {"WM"}, 0, 0x3FF);
        found.merge(NamesOf("winuser.h", {"EM", "LB", "CB", "BM", "SBM", "STM", "MN", "DM"}, 0xB0, 0x3FF));
        return found;
    }();
    return names;
}

const Names& CommonNames() {
    static const Names names = [] {
        Names found = NamesOf("commctrl.h", {"CCM"}, 0x2000, 0x20FF);
        found.merge(
            NamesOf("commctrl.h", {"LVM", "TVM", "HDM", "TCM", "PGM", "EM", "BCM", "CB"}, 0x1000, 0x1FFF));
        return found;
    }();
    return names;
}

std::wstring Format(const wchar_t* format, unsigned number) {
    wchar_t text[32];
    _snwprintf(text, 32, format, number);
    return text;
}

const std::wstring* Find(const Names& names, unsigned message) {
    const auto found = names.find(message);
    return found == names.end() ? nullptr : &found->second;
}

std::wstring Expected(unsigned message, const Names& ofClass) {
    for (const Names* const names : {message < 0x400 ? &SystemNames() : &ofClass, &CommonNames()})
        if (const std::wstring* const name = Find(*names, message))
            return *name;
    if (message == 0x400 || message == 0x8000)
        return message == 0x400 ? L"WM_USER" : L"WM_APP";
    if (message > 0x400 && message < 0x8000)
        return Format(L"WM_USER+0x%X", message - 0x400);
    if (message > 0x8000 && message < 0xC000)
        return Format(L"WM_APP+0x%X", message - 0x8000);
    return Format(L"0x%04X", message);
}

class clsWindow {
  public:
    // Of a class of this program whose name has another's as one of its parts.
    explicit clsWindow(const std::wstring& part) {
        const std::wstring name = L"Test." + part + L".app.0";
        WNDCLASSW made{};
        made.lpfnWndProc = DefWindowProcW;
        made.hInstance = GetModuleHandleW(nullptr);
        made.lpszClassName = name.c_str();
        RegisterClassW(&made);
        window_ = CreateWindowExW(0, name.c_str(), L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, made.hInstance,
                                  nullptr);
    }
    ~clsWindow() { DestroyWindow(window_); }
    clsWindow(const clsWindow&) = delete;
    clsWindow& operator=(const clsWindow&) = delete;
    HWND Get() const { return window_; }

  private:
    HWND window_;
};

void CompareAll(HWND window, const Names& ofClass, unsigned last) {
    clsOleText text;
    for (unsigned message = 0; message <= last; ++message) {
        ASSERT_EQ(UtilWindowMessageName(message, window, text.Out()), UTIL_OK);
        wchar_t registered[256];
        if (message >= 0xC000 && message <= 0xFFFF && GetClipboardFormatNameW(message, registered, 256) > 0)
            ASSERT_EQ(text.Text(), registered);
        else
            ASSERT_EQ(text.Text(), Expected(message, ofClass)) << std::hex << message;
    }
}

TEST(MessageNames, AreThoseOfTheHeaders) {
    ASSERT_GT(macros.size(), 1000u);
    CompareAll(nullptr, {}, 0x1FFFF);
}

// Above 0xBFFF the class has no say.
TEST(MessageNames, AreThoseOfEachClass) {
    for (const scClass& each : classes) {
        SCOPED_TRACE(std::string(each.name.begin(), each.name.end()));
        const Names names = NamesOf(each.header, {each.prefix}, 0x400, 0x7FFF);
        EXPECT_EQ(names.empty(), each.header.empty());
        const clsWindow window(each.name);
        ASSERT_NE(window.Get(), nullptr);
        CompareAll(window.Get(), names, 0xBFFF);
    }
}

TEST(MessageNames, AreRead) {
    const struct {
        UINT message;
        const wchar_t* name;
    } rows[] = {{WM_PAINT, L"WM_PAINT"},
                {0x1A, L"WM_SETTINGCHANGE"},
                {LB_ADDSTRING, L"LB_ADDSTRING"},
                {LVM_INSERTITEMW, L"LVM_INSERTITEMW"},
                {WM_USER + 18, L"WM_USER+0x12"},
                {RegisterWindowMessageW(L"tvUT22 Tests \u20AC"), L"tvUT22 Tests \u20AC"},
                {0x123456, L"0x123456"},
                {0xFFFFFFFF, L"0xFFFFFFFF"},
                {0x3FF, L"0x03FF"}};
    for (const auto& row : rows) {
        clsOleText text(L"before");
        EXPECT_EQ(UtilWindowMessageName(row.message, nullptr, text.Out()), UTIL_OK);
        EXPECT_EQ(text.Text(), row.name);
    }
}

TEST(MessageNames, LeaveTheResultAloneWhenRefused) {
    clsOleText text(L"before");
    const auto gone = reinterpret_cast<HWND>(UINT_PTR{0x7FFFFFF0});
    EXPECT_EQ(UtilWindowMessageName(WM_PAINT, gone, text.Out()), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(text.Text(), L"before");
    EXPECT_EQ(UtilWindowMessageName(WM_PAINT, nullptr, nullptr), UTIL_OK);
}

} // namespace
} // namespace testing_prof
