// Paths through the exports: how texts are given back, and what the system itself says about the same paths.
#include "support/child.h"
#include "support/counted_allocations.h"
#include "support/ole_text.h"

#include <gtest/gtest.h>
#include <tvut22/files.h>

#include <algorithm>
#include <array>
#include <random>

namespace testing_prof {
namespace {

constexpr const wchar_t* tokens[] = {
    L"<Documents>", L"<CommonAppData>", L"<Desktop>",      L"<CommonDocuments>",
    L"<Downloads>", L"<ProgramFiles>",  L"<Pictures>",     L"<CommonFiles>",
    L"<AppData>",   L"<Fonts>",         L"<LocalAppData>", L"<System>",
    L"<Profile>",   L"<Windows>",       L"<Temp>",         L"<Program>"};

template <class Call, class... Arguments>
std::wstring Given(INT expected, Call* call, Arguments... arguments) {
    clsOleText text(L"as it was");
    EXPECT_EQ(call(arguments..., text.Out()), expected);
    return text.Text();
}

TEST(PathCalls, GiveTextsBack) {
    const std::wstring path = L"C:\\Data\\x\\report.prf";
    const std::array<std::wstring, 4> parts{L"C:\\", L"Data\\x\\", L"report", L".prf"};
    clsOleText fresh, longer(std::wstring(500, L'#')), shorter(L"#"), itself(path);
    ASSERT_EQ(UtilPathSplit(itself.Get(), fresh.Out(), longer.Out(), itself.Out(), shorter.Out()), UTIL_OK);
    EXPECT_EQ(fresh.Text(), parts[0]);
    EXPECT_EQ(longer.Text(), parts[1]);
    EXPECT_EQ(itself.Text(), parts[2]);
    EXPECT_EQ(shorter.Text(), parts[3]);
    EXPECT_EQ(UtilPathSplit(path.c_str(), nullptr, nullptr, shorter.Out(), nullptr), UTIL_OK);
    EXPECT_EQ(shorter.Text(), parts[2]);
    EXPECT_EQ(UtilPathMerge(L"a", L"b", 0, nullptr), UTIL_OK);
    EXPECT_EQ(UtilPathMerge(L"a", L"D:b", 0, nullptr), UTIL_BAD_ARGUMENT) << "unwanted, but looked at";
    clsOleText base(L"C:\\a");
    EXPECT_EQ(UtilPathMerge(base.Get(), L"b", UTIL_PATH_INSIDE, base.Out()), UTIL_OK);
    EXPECT_EQ(base.Text(), L"C:\\a\\b");
}

TEST(PathCalls, LeaveResultsAloneUnlessTheyAreOk) {
    const std::wstring untouched = L"as it was", tooLong(40000, L'a');
    EXPECT_EQ(Given(UTIL_BAD_ARGUMENT, UtilPathMerge, L"a", L"b", 2u), untouched);
    EXPECT_EQ(Given(UTIL_BAD_ARGUMENT, UtilPathMerge, nullptr, L"", 0u), untouched);
    EXPECT_EQ(Given(UTIL_UNSAFE, UtilPathMerge, L"C:\\a", L"..", UTIL_PATH_INSIDE), untouched);
    EXPECT_EQ(Given(UTIL_TOO_LARGE, UtilPathMerge, L"C:\\a", tooLong.c_str(), 0u), untouched);
    EXPECT_EQ(Given(UTIL_BAD_ARGUMENT, UtilPathMakeName, nullptr), untouched);
    EXPECT_EQ(Given(UTIL_BAD_ARGUMENT, UtilPathExpand, nullptr), untouched);
    EXPECT_EQ(Given(UTIL_NOT_FOUND, UtilPathExpand, L"<Nowhere>\\a"), untouched);
    EXPECT_EQ(Given(UTIL_BAD_ARGUMENT, UtilPathCollapse, nullptr), untouched);
    clsOleText text(untouched);
    EXPECT_EQ(UtilPathSplit(nullptr, text.Out(), nullptr, nullptr, nullptr), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(text.Text(), untouched);
}

TEST(PathCalls, FailWholeWithoutMemory) {
    const std::wstring path = L"C:\\" + std::wstring(1000, L'f') + L"\\name.txt";
    const auto fails = [](auto call) {
        clsOleText given[4];
        INT result = UTIL_OK;
        const auto isNothingGiven = [&] {
            return std::ranges::all_of(given, [](const clsOleText& text) { return text.Text().empty(); });
        };
        FailEachAllocation([&] { result = call(given); },
                           [&](bool failed) {
                               EXPECT_EQ(result, failed ? UTIL_FAILED : UTIL_OK);
                               EXPECT_EQ(isNothingGiven(), failed);
                           });
    };
    fails([&](auto& to) {
        return UtilPathSplit(path.c_str(), to[0].Out(), to[1].Out(), to[2].Out(), to[3].Out());
    });
    fails([&](auto& to) { return UtilPathMerge(path.c_str(), L"b", 0, to[0].Out()); });
    fails([&](auto& to) { return UtilPathMakeName(path.c_str(), to[0].Out()); });
    fails([&](auto& to) { return UtilPathCollapse(path.c_str(), to[0].Out()); });
}

std::wstring FullPath(const std::wstring& path) {
    wchar_t full[1000];
    return {full, GetFullPathNameW(path.c_str(), 1000, full, nullptr)};
}

// Whether a component that is neither "." nor ".." ends in a dot.
bool EndsNameInDot(const std::wstring& path) {
    for (std::size_t at = 0; at < path.size(); ++at) {
        const std::size_t end = std::min(path.find_first_of(L"\\/", at), path.size());
        const std::wstring name = path.substr(at, end - at);
        if (name.ends_with(L'.') && name != L"." && name != L"..")
            return true;
        at = end;
    }
    return false;
}

// Without what the system does to names: devices, blanks and dots at their ends.
TEST(PathCalls, MergeAsTheSystemDoes) {
    constexpr const wchar_t* parts[] = {L"\\", L"\\",  L"/",      L"..",  L".",
                                        L"a",  L"b.c", L"\x65E5", L"..d", L"e f"};
    std::mt19937 random(5);
    int compared = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::wstring base =
            std::array{L"C:\\x\\y\\", L"C:/", L"\\\\srv\\share\\x\\", L"//srv/share/"}[random() % 4];
        std::wstring path;
        for (unsigned count = 1 + random() % 8; count != 0; --count)
            path += parts[random() % std::size(parts)];
        if (path[0] == L'\\' || path[0] == L'/' || EndsNameInDot(path))
            continue;
        ++compared;
        ASSERT_EQ(Given(UTIL_OK, UtilPathMerge, base.c_str(), path.c_str(), 0u), FullPath(base + path))
            << testing::PrintToString(base) << testing::PrintToString(path);
    }
    EXPECT_GT(compared, 3000);
}

TEST(PathCalls, MakeNamesThatTheSystemTakes) {
    const clsTempFolder folder;
    constexpr const wchar_t* parts[] = {L"con", L"lpt1", L".", L".",    L" ",      L"\t",           L":",
                                        L"*",   L"\x1F", L"a", L"\xE4", L"\x65E5", L"\xD83D\xDE00", L"\xD83D",
                                        L"x.y", L"|"};
    std::mt19937 random(9);
    for (int i = 0; i < 300; ++i) {
        std::wstring title;
        for (unsigned count = random() % 12; count != 0; --count)
            title += parts[random() % std::size(parts)];
        const std::wstring name = Given(UTIL_OK, UtilPathMakeName, title.c_str()), path = folder / name;
        WriteBytes(path, "");
        WIN32_FIND_DATAW found{};
        const HANDLE search = FindFirstFileW(path.c_str(), &found);
        ASSERT_NE(search, INVALID_HANDLE_VALUE) << testing::PrintToString(name);
        FindClose(search);
        EXPECT_EQ(std::wstring(found.cFileName), name);
        EXPECT_TRUE(DeleteFileW(path.c_str()));
    }
}

void CheckTokens() {
    for (const wchar_t* token : tokens) {
        const std::wstring folder = Given(UTIL_OK, UtilPathExpand, token);
        EXPECT_TRUE(folder.size() > 3 && folder[1] == L':' && folder.back() != L'\\')
            << testing::PrintToString(folder);
        EXPECT_TRUE(std::filesystem::is_directory(folder)) << testing::PrintToString(folder);
        const std::wstring collapsed = Given(UTIL_OK, UtilPathCollapse, (folder + L"\\a").c_str());
        EXPECT_TRUE(collapsed.starts_with(L'<')) << testing::PrintToString(collapsed);
        EXPECT_EQ(Given(UTIL_OK, UtilPathExpand, collapsed.c_str()), folder + L"\\a");
    }
}

TEST(PathCalls, KnowTheSystemsFolders) {
    CheckTokens();
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    EXPECT_EQ(std::filesystem::path(Given(UTIL_OK, UtilPathExpand, L"<program>")) /
                  std::filesystem::path(program).filename(),
              program);
}

TEST(PathCalls, KnowThemForTheUserOfTheThread) {
    ASSERT_TRUE(ImpersonateSelf(SecurityImpersonation));
    CheckTokens();
    HANDLE token = nullptr;
    EXPECT_TRUE(OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, TRUE, &token))
        << "the thread's user is as it was";
    CloseHandle(token);
    EXPECT_TRUE(RevertToSelf());
}

// In a process that has called nothing yet: 0, or what is wrong.
int LoadsOnlyWhatIsNeeded() {
    clsOleText text;
    SetLastError(12345);
    UtilPathSplit(L"C:\\a", text.Out(), nullptr, nullptr, nullptr);
    UtilPathMerge(L"C:\\a", L"b", UTIL_PATH_INSIDE, text.Out());
    UtilPathMakeName(L"a/b", text.Out());
    UtilPathExpand(L"<Program>\\a", text.Out());
    if (GetLastError() != 12345)
        return 1;
    if (GetModuleHandleW(L"shell32.dll"))
        return 2;
    SetLastError(12345);
    if (UtilPathExpand(L"<Documents>", text.Out()) != UTIL_OK || GetLastError() != 12345)
        return 3;
    wchar_t loaded[MAX_PATH], system[MAX_PATH];
    GetModuleFileNameW(GetModuleHandleW(L"shell32.dll"), loaded, MAX_PATH);
    GetSystemDirectoryW(system, MAX_PATH);
    return _wcsicmp((std::wstring(system) + L"\\shell32.dll").c_str(), loaded) == 0 ? 0 : 4;
}

TEST(PathCalls, LoadTheShellWhenItIsNeeded) {
    EXPECT_EQ(clsChild(L"").ExitCode(), 0u);
}

} // namespace
} // namespace testing_prof

int main(int argc, char** argv) {
    if (argc == 1 && std::string_view(argv[0]) == "child")
        return testing_prof::LoadsOnlyWhatIsNeeded();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
