// The list of handles: what it says of those that are left, dead, freed twice or without a word.
#include "support/log.h"

#include <gtest/gtest.h>
#include <tvut22/tvut22.hpp>

#include <algorithm>
#include <regex>
#include <thread>

namespace testing_prof {
namespace {

using tvut22::track;
using tvut22::untrack;

INT Count(UINT kind = 0) {
    return UtilHandleListMgr(UTIL_HANDLES_COUNT, nullptr, kind, nullptr);
}
INT Check(UINT kind = 0) {
    return UtilHandleListMgr(UTIL_HANDLES_CHECK, nullptr, kind, nullptr);
}
INT Mark() {
    return UtilHandleListMgr(UTIL_HANDLES_MARK, nullptr, 99, nullptr);
}
INT Report(INT mark = 0, UINT kind = 0) {
    return UtilHandleListMgr(UTIL_HANDLES_REPORT, reinterpret_cast<HANDLE>(static_cast<INT_PTR>(mark)), kind,
                             nullptr);
}
INT Add(UINT_PTR handle, UINT kind, const wchar_t* label = nullptr) {
    return UtilHandleListMgr(UTIL_HANDLES_ADD, reinterpret_cast<HANDLE>(handle), kind, label);
}
INT Remove(UINT_PTR handle, UINT kind = 0) {
    return UtilHandleListMgr(UTIL_HANDLES_REMOVE, reinterpret_cast<HANDLE>(handle), kind, nullptr);
}

__attribute__((noinline)) HBITMAP MakeBitmap(const wchar_t* label) {
    return track(CreateBitmap(2, 2, 1, 1, nullptr), UTIL_HANDLE_GDI, label);
}
__attribute__((noinline)) HPEN MakePen() {
    return track(CreatePen(PS_SOLID, 1, 0), UTIL_HANDLE_GDI);
}

// The lines of a report without the host's name; handles as H, times as T, what follows a function's name
// cut.
std::vector<std::string> Shown(const clsLog& log) {
    std::vector<std::string> lines;
    for (std::string line : log.Lines()) {
        line = std::regex_replace(line, std::regex("^handle_list_test:|\n$"), "");
        line = std::regex_replace(line, std::regex("0X[0-9A-F]{8}"), "H");
        line = std::regex_replace(line, std::regex("[0-9]+ ms ago"), "T ms ago");
        lines.push_back(line);
    }
    return lines;
}

bool IsFrame(const std::string& line) {
    return line.find("+0x") != std::string::npos;
}

// The lines that are no frames; each that has a call stack below it ends in the function that made it.
std::vector<std::string> Heads(const std::vector<std::string>& lines) {
    std::vector<std::string> heads;
    for (const std::string& line : lines)
        if (!IsFrame(line))
            heads.push_back(line);
    return heads;
}

bool IsMadeBy(const std::vector<std::string>& lines, const std::string& head, const std::string& function) {
    const auto at = std::find(lines.begin(), lines.end(), head);
    return at != lines.end() && at + 1 != lines.end() && IsFrame(at[1]) &&
           at[1].find(function) != std::string::npos;
}

TEST(HandleList, ReportsWhatIsLeftByWhoMadeIt) {
    HBITMAP bitmaps[3];
    for (HBITMAP& bitmap : bitmaps)
        bitmap = MakeBitmap(L"page cache");
    const INT mark = Mark();
    const HPEN pen = MakePen();
    const clsLog log;
    EXPECT_EQ(Report(), 4);
    EXPECT_EQ(Report(mark), 1);
    EXPECT_EQ(Report(0, UTIL_HANDLE_MENU), 0);
    const auto lines = Shown(log);
    const std::string many = " 3 x bitmap H 'page cache' first T ms ago", one = " 1 x pen H first T ms ago";
    EXPECT_EQ(Heads(lines), (std::vector<std::string>{
                                "Warning: 4 handles are left", many, one,
                                "Warning: 1 handle is left since mark " + std::to_string(mark), one}));
    EXPECT_TRUE(IsMadeBy(lines, many, "MakeBitmap")) << testing::PrintToString(lines);
    EXPECT_TRUE(IsMadeBy(lines, one, "MakePen"));
    for (const HBITMAP bitmap : bitmaps)
        DeleteObject(untrack(bitmap));
    DeleteObject(untrack(pen));
    EXPECT_EQ(Count(), 0);
}

TEST(HandleList, KnowsTypes) {
    const HMENU menu = track(CreateMenu(), UTIL_HANDLE_MENU);
    const HWND window =
        track(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr),
              UTIL_HANDLE_WINDOW);
    const HANDLE event = track(CreateEventW(nullptr, FALSE, FALSE, nullptr), UTIL_HANDLE_KERNEL);
    const BYTE mask[4] = {};
    const HICON icon = track(CreateIcon(nullptr, 1, 1, 1, 1, mask, mask), UTIL_HANDLE_ICON);
    const HCURSOR cursor = track(CreateCursor(nullptr, 0, 0, 1, 1, mask, mask), UTIL_HANDLE_ICON);
    const HDC dc = track(CreateCompatibleDC(nullptr), UTIL_HANDLE_GDI);
    const HRGN region = track(CreateRectRgn(0, 0, 1, 1), UTIL_HANDLE_GDI);
    EXPECT_EQ(track(HPEN(nullptr), UTIL_HANDLE_GDI), nullptr);
    EXPECT_EQ(Count(), 7);
    EXPECT_EQ(Count(UTIL_HANDLE_ICON), 2);
    EXPECT_EQ(Check(), 0);
    const clsLog log;
    Report();
    const auto heads = Heads(Shown(log));
    for (const char* const type : {"menu", "window", "kernel handle", "icon", "cursor", "DC", "region"})
        EXPECT_EQ(std::count(heads.begin(), heads.end(), std::string(" 1 x ") + type + " H first T ms ago"),
                  1)
            << type;

    DestroyMenu(menu);
    DestroyWindow(window);
    CloseHandle(event);
    DestroyIcon(icon);
    DestroyCursor(cursor);
    DeleteDC(dc);
    DeleteObject(region);
    EXPECT_EQ(Check(), 7);
    EXPECT_EQ(Check(UTIL_HANDLE_GDI), 2);
    EXPECT_EQ(Count(), 7) << "none is taken out";
    for (const HANDLE handle :
         {HANDLE(menu), HANDLE(window), event, HANDLE(icon), HANDLE(cursor), HANDLE(dc), HANDLE(region)})
        untrack(handle);
}

TEST(HandleList, TellsDeadFromAlive) {
    const HBITMAP first = MakeBitmap(L"first");
    std::vector<HBITMAP> bitmaps;
    for (const wchar_t* const label : {L"alive", L"dead", L"other"})
        bitmaps.push_back(MakeBitmap(label));
    for (const HBITMAP bitmap : {first, bitmaps[1], bitmaps[2]})
        DeleteObject(bitmap);
    const clsLog log;
    EXPECT_EQ(Check(), 3);
    const auto lines = Shown(log);
    EXPECT_EQ(Heads(lines), (std::vector<std::string>{"Warning: 3 handles are in the list and not alive",
                                                      " GDI object H 'first' added T ms ago",
                                                      " GDI object H 'dead' added T ms ago",
                                                      " GDI object H 'other' added T ms ago"}));
    EXPECT_TRUE(IsMadeBy(lines, " GDI object H 'first' added T ms ago", "MakeBitmap"));
    EXPECT_FALSE(IsMadeBy(lines, " GDI object H 'dead' added T ms ago", "MakeBitmap"));
    EXPECT_TRUE(IsMadeBy(lines, " GDI object H 'other' added T ms ago", "MakeBitmap")) << "once for both";
    for (const HBITMAP bitmap : bitmaps)
        untrack(bitmap);
    untrack(first);
    DeleteObject(bitmaps[0]);
}

__attribute__((noinline)) void RemoveUnknown() {
    EXPECT_EQ(Remove(0x5005E), UTIL_NOT_FOUND);
}

TEST(HandleList, ReportsWhatDoesNotFit) {
    const clsLog log;
    EXPECT_EQ(Add(8, UTIL_HANDLE_MENU, L"a label of more than thirty-one characters"), UTIL_OK);
    EXPECT_EQ(Add(8, UTIL_HANDLE_WINDOW), UTIL_EXISTS);
    EXPECT_EQ(Remove(8, UTIL_HANDLE_MENU), UTIL_NOT_FOUND);
    EXPECT_EQ(Remove(8, UTIL_HANDLE_WINDOW), UTIL_OK);
    RemoveUnknown();
    const auto lines = Shown(log);
    const std::string unknown = "Error: UtilHandleListMgr: H is not in the list";
    EXPECT_EQ(Heads(lines),
              (std::vector<std::string>{
                  "Warning: UtilHandleListMgr: H was freed without being removed from the list",
                  " menu H 'a label of more than thirty-one' added T ms ago",
                  "Error: UtilHandleListMgr: H is in the list as a handle of another kind", unknown}));
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
        return IsFrame(line) && line.find("RemoveUnknown") != std::string::npos;
    }));
}

TEST(HandleList, RefusesWhatItDoesNotKnow) {
    const auto call = [](UINT command, UINT_PTR handle, UINT kind) {
        return UtilHandleListMgr(command, reinterpret_cast<HANDLE>(handle), kind, nullptr);
    };
    const INT marks = Mark();
    const struct {
        UINT command;
        UINT_PTR handle;
        UINT kind;
    } rows[] = {{0, 4, 1},
                {7, 4, 1},
                {~0u, 4, 1},
                {UTIL_HANDLES_ADD, 0, 1},
                {UTIL_HANDLES_ADD, 4, 0},
                {UTIL_HANDLES_ADD, 4, 6},
                {UTIL_HANDLES_REMOVE, 4, 6},
                {UTIL_HANDLES_COUNT, 0, 256},
                {UTIL_HANDLES_CHECK, 0, 6},
                {UTIL_HANDLES_REPORT, 0, 6},
                {UTIL_HANDLES_REPORT, static_cast<UINT_PTR>(marks) + 1, 0},
                {UTIL_HANDLES_REPORT, ~UINT_PTR{0}, 0}};
    SetLastError(4711);
    for (const auto& row : rows)
        EXPECT_EQ(call(row.command, row.handle, row.kind), UTIL_BAD_ARGUMENT) << row.command;
    EXPECT_EQ(Mark(), marks + 1);
    EXPECT_EQ(GetLastError(), 4711u);
    EXPECT_EQ(Count(), 0);
}

TEST(HandleList, IsFullAtSomePoint) {
    constexpr UINT_PTR most = 65536;
    for (UINT_PTR i = 1; i <= most; ++i)
        ASSERT_EQ(Add(i * 4, UTIL_HANDLE_KERNEL), UTIL_OK);
    const clsLog log;
    EXPECT_EQ(Add(2, UTIL_HANDLE_KERNEL), UTIL_TOO_LARGE);
    EXPECT_EQ(Add(3, UTIL_HANDLE_KERNEL), UTIL_TOO_LARGE);
    EXPECT_EQ(log.Lines().size(), 1u) << "said once";
    EXPECT_EQ(Add(4, UTIL_HANDLE_KERNEL), UTIL_EXISTS) << "in its old place";
    EXPECT_EQ(Report(), static_cast<INT>(most));
    for (UINT_PTR i = 1; i <= most; ++i)
        ASSERT_EQ(Remove(i * 4, UTIL_HANDLE_KERNEL), UTIL_OK);
    EXPECT_EQ(Count(), 0);
}

// As many calls deep as asked for: each depth is a stack of its own.
__attribute__((noinline)) INT AddBelow(int depth, UINT_PTR handle) {
    const INT result = depth == 0 ? Add(handle, UTIL_HANDLE_MENU) : AddBelow(depth - 1, handle);
    __asm__ volatile("" ::: "memory");
    return result;
}

// 7 calls that each take one of two ways: 128 stacks, of which 100 are shown.
template <int level>
__attribute__((noinline)) void AddEachWay(UINT_PTR path) {
    if constexpr (level == 0) {
        Add(path * 4 + 4, UTIL_HANDLE_MENU);
    } else {
        AddEachWay<level - 1>(path * 2);
        __asm__ volatile("" ::: "memory");
        AddEachWay<level - 1>(path * 2 + 1);
        __asm__ volatile("" ::: "memory");
    }
}

TEST(HandleList, ShowsAHundredStacks) {
    AddEachWay<7>(0);
    EXPECT_EQ(AddBelow(3, 4096), UTIL_OK);
    const clsLog log;
    EXPECT_EQ(Report(), 129);
    const auto heads = Heads(Shown(log));
    ASSERT_EQ(heads.size(), 102u);
    EXPECT_EQ(heads[0], "Warning: 129 handles are left");
    EXPECT_EQ(heads[101], " ... and 29 more");
    for (UINT_PTR handle = 4; handle <= 512; handle += 4)
        Remove(handle);
    Remove(4096);
}

TEST(HandleList, IsOfAllThreads) {
    const auto work = [](UINT_PTR first) {
        for (int round = 0; round < 20; ++round) {
            for (UINT_PTR i = 0; i < 500; ++i)
                EXPECT_EQ(Add(first + i * 8, UTIL_HANDLE_MENU), UTIL_OK);
            EXPECT_GE(Count(UTIL_HANDLE_MENU), 500);
            for (UINT_PTR i = 0; i < 500; ++i)
                EXPECT_EQ(Remove(first + i * 8), UTIL_OK);
        }
    };
    {
        const std::jthread one(work, 8), other(work, 12);
        for (int round = 0; round < 20; ++round)
            Check(UTIL_HANDLE_WINDOW);
    }
    EXPECT_EQ(Count(), 0);
}

TEST(HandleList, IsReportedOnceWhenTheLastModuleGoes) {
    const HPEN pen = MakePen();
    UtilModuleOnAttach(nullptr);
    UtilModuleOnAttach(nullptr);
    const clsLog log;
    const auto warnings = [&] {
        const auto heads = Heads(Shown(log));
        return std::count(heads.begin(), heads.end(), "Warning: 1 handle is left");
    };
    UtilModuleOnDetach(nullptr);
    EXPECT_EQ(warnings(), 0);
    UtilModuleOnDetach(nullptr);
    EXPECT_EQ(warnings(), 1);
    UtilModuleOnDetach(nullptr);
    EXPECT_EQ(warnings(), 1) << "nothing new is left";
    const HPEN newer = MakePen();
    UtilModuleOnDetach(nullptr);
    EXPECT_EQ(warnings(), 2);
    DeleteObject(untrack(pen));
    DeleteObject(untrack(newer));
}

} // namespace
} // namespace testing_prof
