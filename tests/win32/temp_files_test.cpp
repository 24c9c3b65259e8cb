// Temporary files go: when they are released, when the process ends, and when a process was killed.
#include "support/child.h"
#include "support/copy.h"
#include "support/counted_allocations.h"
#include "support/fake_clock.h"
#include "support/log.h"
#include "support/ole_text.h"

#include <gtest/gtest.h>
#include <tvut22/files.h>

#include <array>
#include <functional>
#include <map>
#include <set>
#include <thread>

namespace testing_prof {
namespace {

namespace fs = std::filesystem;

INT Create(const std::wstring& folder, const wchar_t* name, UINT flags, std::wstring& path) {
    clsOleText text;
    const INT result = UtilTempFileCreate(folder.empty() ? nullptr : folder.c_str(), name, flags, text.Out());
    path = text.Text();
    return result;
}

std::wstring Created(const std::wstring& folder, const wchar_t* name, UINT flags = 0) {
    std::wstring path;
    EXPECT_EQ(Create(folder, name, flags, path), UTIL_OK);
    EXPECT_TRUE(fs::exists(path)) << path;
    return path;
}

std::wstring NameOf(const std::wstring& path) {
    return fs::path(path).filename().wstring();
}

// Folders of a test's own: one for files, and the one that this process and its children take for the
// system's temporary one meanwhile.
class clsWorld {
  public:
    clsWorld() { UseAsTemporaryFolder(folder_ / L"temp"); }
    explicit clsWorld(const wchar_t* temporary) { UseAsTemporaryFolder(temporary); }
    ~clsWorld() { SetEnvironmentVariableW(L"TMP", before_.c_str()); }
    clsWorld(const clsWorld&) = delete;
    clsWorld& operator=(const clsWorld&) = delete;

    std::wstring Given() const { return folder_ / L"given"; }
    std::set<std::wstring> InGiven() const { return NamesIn(Given()); }

    // Where processes have their temporary folders.
    fs::path Root() const { return root_; }
    std::set<std::wstring> InRoot() const { return NamesIn(root_); }

    DWORD Run(const std::wstring& role) const { return Start(role).ExitCode(); }
    clsChild Start(const std::wstring& role) const { return clsChild(role + L" \"" + Given() + L"\""); }

    static std::set<std::wstring> NamesIn(const fs::path& folder) {
        std::set<std::wstring> names;
        std::error_code none;
        for (const auto& entry : fs::directory_iterator(folder, none))
            names.insert(entry.path().filename().wstring());
        return names;
    }

  private:
    void UseAsTemporaryFolder(const fs::path& temporary) {
        fs::create_directories(temporary);
        fs::create_directories(Given());
        SetEnvironmentVariableW(L"TMP", temporary.c_str());
        root_ = temporary / L"tvUT22";
    }

    std::wstring before_ = fs::temp_directory_path().wstring();
    clsTempFolder folder_;
    fs::path root_;
};

using Names = std::set<std::wstring>;

// ---- What child processes do -------------------------------------------------------------------------

// One of each kind, in the process's own folder and in another one.
void MakeSome(const std::wstring& folder) {
    WriteBytes(fs::path(folder) / L"added.txt", "x");
    UtilTempFileAdd((folder + L"\\added.txt").c_str());
    Created(L"", L"own.txt");
    Created(folder, L"given.txt");
    const fs::path made = Created(folder, L"folder", UTIL_TEMP_FOLDER);
    fs::create_directories(made / L"a" / L"b");
    WriteBytes(made / L"a" / L"read-only.txt", "x");
    SetFileAttributesW((made / L"a" / L"read-only.txt").c_str(), FILE_ATTRIBUTE_READONLY);
}

// Two libraries in one process, of which one goes.
int LoadAndUnloadACopy(const std::wstring& folder) {
    const std::wstring path = folder + L"\\copy.dll", given = folder + L"\\unloaded.txt";
    clsCopy::MakeFile(path);
    clsCopy copy(path);
    const fs::path own = Created(L"", L"a.txt");
    auto* const create = copy.Find(UtilTempFileCreate, "UtilTempFileCreate");
    clsOleText other, there;
    if (create(nullptr, L"a.txt", 0, other.Out()) != UTIL_OK ||
        create(folder.c_str(), L"unloaded.txt", 0, there.Out()) != UTIL_OK || there.Text() != given)
        return 1;
    const fs::path otherFolder = fs::path(other.Text()).parent_path();
    if (otherFolder == own.parent_path() || NameOf(other.Text()) != L"a.txt")
        return 2;
    copy.Unload();
    return fs::exists(otherFolder) || fs::exists(given) || !fs::exists(own) ? 3 : 0;
}

// In a hundred folders, because the test system looks at all names of one for each that is new.
int MakeManyAndReturn(const std::wstring& folder) {
    std::wstring path, group;
    for (int number = 0; number < 10000; ++number) {
        if (Create(number % 100 == 0 ? folder : group, L"x", number % 100 == 0 ? UTIL_TEMP_FOLDER : 0,
                   path) != UTIL_OK)
            return 1;
        if (number % 100 == 0)
            group = path;
    }
    if (Create(folder, L"one too many", 0, path) != UTIL_TOO_LARGE ||
        UtilTempFileAdd(folder.c_str()) != UTIL_TOO_LARGE ||
        UtilTempFileAdd((group + L"\\x (7)").c_str()) != UTIL_OK)
        return 2;
    return UtilTempFileRelease((group + L"\\x (7)").c_str(), FALSE) == UTIL_OK &&
                   Create(folder, L"the last", 0, path) == UTIL_OK
               ? 0
               : 3;
}

int HoldOneOpen(const std::wstring& folder) {
    for (const std::wstring& path : {Created(L"", L"own.txt"), Created(folder, L"given.txt")})
        (void)OpenExisting(path, GENERIC_READ, FILE_SHARE_READ).release();
    Created(folder, L"closed.txt");
    return 0;
}

int Live(const std::wstring& folder) {
    Created(L"", L"living.txt");
    const Handle ready(OpenEventW(EVENT_MODIFY_STATE, FALSE, L"temp_files_test ready"));
    const Handle end(OpenEventW(SYNCHRONIZE, FALSE, L"temp_files_test end"));
    SetEvent(ready.get());
    WaitForSingleObject(end.get(), INFINITE);
    return folder.empty() ? 1 : 0;
}

const std::map<std::wstring, std::function<int(const std::wstring&)>> roles{
    {L"return", [](auto& folder) { return MakeSome(folder), 0; }},
    {L"exit", [](auto& folder) { return MakeSome(folder), ExitProcess(0), 0; }},
    {L"kill", [](auto& folder) { return MakeSome(folder), TerminateProcess(GetCurrentProcess(), 0), 0; }},
    {L"crash",
     [](auto& folder) {
         MakeSome(folder);
         RaiseException(EXCEPTION_ACCESS_VIOLATION, EXCEPTION_NONCONTINUABLE, 0, nullptr);
         return 0;
     }},
    {L"start", [](auto& folder) { return Created(folder, L"start.txt").empty() ? 1 : 0; }},
    {L"unload", LoadAndUnloadACopy},
    {L"many", MakeManyAndReturn},
    {L"hold", HoldOneOpen},
    {L"live", Live}};

// ---- In this process ---------------------------------------------------------------------------------

TEST(TempFiles, AreMadeUnderTheNameWishedFor) {
    const clsWorld world;
    const std::wstring there = world.Given();
    const std::wstring first = Created(there, L"Report 3/4.tar.gz"),
                       second = Created(there, L"report 3_4.TAR.GZ");
    EXPECT_EQ(NameOf(first), L"Report 3_4.tar.gz");
    EXPECT_EQ(NameOf(second), L"report 3_4.TAR (2).GZ");
    EXPECT_EQ(NameOf(Created(there, L"Report 3/4.tar.gz")), L"Report 3_4.tar (3).gz");
    EXPECT_EQ(UtilTempFileRelease(second.c_str(), FALSE), UTIL_OK);
    EXPECT_EQ(NameOf(Created(there, L"Report 3/4.tar.gz")), L"Report 3_4.tar (2).gz")
        << "the first that is free";
    WriteBytes(there + L"\\tmp (2)", "of somebody else");
    EXPECT_EQ(NameOf(Created(there, nullptr)), L"tmp");
    EXPECT_EQ(NameOf(Created(there, L"", UTIL_TEMP_FOLDER)), L"tmp (3)");
    EXPECT_EQ(ReadBytes(there + L"\\tmp (2)"), "of somebody else");
    SetCurrentDirectoryW(there.c_str());
    EXPECT_EQ(Created(L".", L"a"), there + L"\\a");
    SetCurrentDirectoryW(L"C:\\");
    const std::wstring deep = there + L"\\" + std::wstring(150, L'd') + L"\\" + std::wstring(150, L'e');
    fs::create_directories(deep);
    EXPECT_EQ(Created(deep, L"a"), deep + L"\\a");
    EXPECT_EQ(Created(L"\\\\?\\" + there, L"b"), L"\\\\?\\" + there + L"\\b");
    EXPECT_EQ(UtilTempFileAdd(fs::path(deep).parent_path().c_str()), UTIL_OK);
    for (const std::wstring& name : world.InGiven())
        UtilTempFileRelease((there + L"\\" + name).c_str(), FALSE);
    EXPECT_EQ(world.InGiven(), Names{L"tmp (2)"}) << "and only what was registered goes";
}

DWORD refusal = 0;
HANDLE WINAPI Refuse(LPCWSTR, DWORD, DWORD, LPSECURITY_ATTRIBUTES, DWORD, DWORD, HANDLE) {
    SetLastError(refusal);
    return INVALID_HANDLE_VALUE;
}

TEST(TempFiles, ThatCannotBeMadeLeaveNothing) {
    const clsWorld world;
    const clsLog log;
    std::wstring path;
    EXPECT_EQ(Create(world.Given() + L"\\none", L"a", 0, path), UTIL_NOT_FOUND);
    EXPECT_EQ(Create(world.Given(), L"a", 2, path), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilTempFileCreate(world.Given().c_str(), L"a", 0, nullptr), UTIL_BAD_ARGUMENT);
    {
        const clsImportHook hook("CreateFileW", reinterpret_cast<void*>(Refuse));
        refusal = ERROR_DISK_FULL;
        EXPECT_EQ(Create(world.Given(), L"b", 0, path), UTIL_FAILED);
        refusal = ERROR_ACCESS_DENIED;
        EXPECT_EQ(Create(world.Given(), L"b", 0, path), UTIL_NO_ACCESS);
    }
    EXPECT_EQ(path, L"");
    const std::string shown = fs::path(world.Given()).string();
    std::vector<std::string> lines;
    for (const char* end :
         {"\\none\\a'): cannot be made (3)", "\\b'): cannot be made (112)", "\\b'): cannot be made (5)"})
        lines.push_back("ERR: clsTempFileRemover::Create('" + shown + end);
    EXPECT_EQ(log.Lines(), lines);
    INT result = 0;
    FailEachAllocation(
        [&] {
            clsOleText text;
            result = UtilTempFileCreate(world.Given().c_str(), L"c", 0, text.Out());
        },
        [&](bool failed) {
            EXPECT_EQ(result, failed ? UTIL_FAILED : UTIL_OK);
            EXPECT_EQ(world.InGiven(), failed ? Names{} : Names{L"c"});
        });
    UtilTempFileRelease((world.Given() + L"\\c").c_str(), FALSE);
}

TEST(TempFiles, AreReleased) {
    const clsWorld world;
    std::wstring unused;
    EXPECT_EQ(Create(L"<Temp>", L"a", 0, unused), UTIL_BAD_ARGUMENT);
    const std::wstring there = world.Given(), kept = Created(there, L"kept"), gone = Created(there, L"gone"),
                       tree = Created(there, L"tree", UTIL_TEMP_FOLDER), added = there + L"\\added";
    EXPECT_EQ(UtilTempFileRelease(kept.c_str(), TRUE), UTIL_OK);
    EXPECT_EQ(UtilTempFileRelease(kept.c_str(), FALSE), UTIL_NOT_FOUND);
    EXPECT_TRUE(fs::exists(kept));
    fs::remove(gone);
    EXPECT_EQ(UtilTempFileRelease(gone.c_str(), FALSE), UTIL_OK);
    EXPECT_EQ(UtilTempFileRelease(gone.c_str(), FALSE), UTIL_NOT_FOUND);

    EXPECT_EQ(UtilTempFileAdd(added.c_str()), UTIL_NOT_FOUND);
    WriteBytes(added, "x");
    SetFileAttributesW(added.c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
    SetCurrentDirectoryW(there.c_str());
    EXPECT_EQ(UtilTempFileAdd(L"ADDED"), UTIL_OK);
    SetCurrentDirectoryW(L"C:\\");
    for (const std::wstring& written : {added, L"\\\\?\\" + added})
        EXPECT_EQ(UtilTempFileAdd(written.c_str()), UTIL_OK) << "twice is once";
    EXPECT_EQ(UtilTempFileRelease((there + L"\\.\\added").c_str(), FALSE), UTIL_OK);
    EXPECT_EQ(UtilTempFileRelease((L"\\\\?\\" + added).c_str(), FALSE), UTIL_NOT_FOUND);
    EXPECT_EQ(UtilTempFileRelease(added.c_str(), FALSE), UTIL_NOT_FOUND);
    EXPECT_FALSE(fs::exists(added));

    fs::path deep = tree;
    for (int level = 0; level < 40; ++level)
        fs::create_directories(deep /= L"a folder below the other");
    WriteBytes(deep / L"file", "x");
    SetFileAttributesW((deep / L"file").c_str(), FILE_ATTRIBUTE_READONLY);
    SetFileAttributesW(deep.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(UtilTempFileRelease((tree + L"\\").c_str(), FALSE), UTIL_OK);
    EXPECT_EQ(world.InGiven(), Names{L"kept"});

    for (const wchar_t* path : {L"", L"C:\\a\\..", L"\\\\srv\\share\\", L"nul", L"\\\\?\\C:\\", L"C:\\*",
                                L"<Temp>\\a", static_cast<const wchar_t*>(nullptr)})
        EXPECT_EQ(UtilTempFileAdd(path), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilTempFileRelease(L"C:\\", FALSE), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilTempFileRelease(nullptr, TRUE), UTIL_BAD_ARGUMENT);
}

Handle* closedByWaiting = nullptr;
void WINAPI CloseWhileWaiting(DWORD) {
    closedByWaiting->reset();
}

TEST(TempFiles, InUseStayRegistered) {
    const clsWorld world;
    const clsLog log;
    const fs::path tree = Created(world.Given(), L"tree", UTIL_TEMP_FOLDER);
    WriteBytes(tree / L"a", "x");
    WriteBytes(tree / L"in use", "x");
    Handle open = OpenExisting(tree / L"in use", GENERIC_READ, FILE_SHARE_READ);
    {
        const clsFakeClock clock;
        EXPECT_EQ(UtilTempFileRelease(tree.c_str(), FALSE), UTIL_NO_ACCESS);
        EXPECT_EQ(clsFakeClock::now, 2000u);
    }
    EXPECT_EQ(clsWorld::NamesIn(tree), Names{L"in use"}) << "the rest goes";
    ASSERT_EQ(log.Lines().size(), 1u);
    EXPECT_TRUE(log.Lines()[0].ends_with("\\given\\tree'): still in use (32)")) << log.Lines()[0];
    closedByWaiting = &open;
    const clsImportHook sleep("Sleep", reinterpret_cast<void*>(CloseWhileWaiting));
    EXPECT_EQ(UtilTempFileRelease(tree.c_str(), FALSE), UTIL_OK);
}

TEST(TempFiles, OfManyThreadsAreAllDifferent) {
    const clsWorld world;
    std::array<std::vector<std::wstring>, 4> made;
    {
        std::vector<std::jthread> threads;
        for (auto& paths : made)
            threads.emplace_back([&] {
                for (int i = 0; i < 250; ++i)
                    Create(world.Given(), L"same.txt", 0, paths.emplace_back());
            });
    }
    Names all;
    for (const auto& paths : made)
        all.insert(paths.begin(), paths.end());
    EXPECT_EQ(all.size(), 1000u);
    EXPECT_TRUE(all.contains(world.Given() + L"\\same (1000).txt")) << "and no number is left out";
    for (const std::wstring& path : all)
        EXPECT_EQ(UtilTempFileRelease(path.c_str(), FALSE), UTIL_OK);
    EXPECT_EQ(world.InGiven(), Names{});
}

// ---- When processes end ------------------------------------------------------------------------------

TEST(TempFiles, GoWhenTheProcessEnds) {
    for (const wchar_t* role : {L"return", L"exit", L"unload", L"many"}) {
        SCOPED_TRACE(std::string(role, role + wcslen(role)));
        const clsWorld world;
        EXPECT_EQ(world.Run(role), 0u);
        fs::remove(world.Given() + L"\\copy.dll");
        EXPECT_EQ(world.InGiven(), Names{});
        EXPECT_EQ(world.InRoot(), Names{});
    }
}

TEST(TempFiles, OfTheDeadGoAndOfTheLivingStay) {
    const clsWorld world;
    const clsLog log;
    const Handle ready(CreateEventW(nullptr, FALSE, FALSE, L"temp_files_test ready"));
    const Handle end(CreateEventW(nullptr, TRUE, FALSE, L"temp_files_test end"));
    const clsChild living = world.Start(L"live");
    WaitForSingleObject(ready.get(), 60000);
    const Names ofTheLiving = world.InRoot();
    EXPECT_EQ(ofTheLiving.size(), 1u);
    EXPECT_EQ(world.Run(L"kill"), 0u);
    EXPECT_EQ(world.InRoot().size(), 2u) << "nobody was there to remove it";
    EXPECT_EQ(world.Run(L"crash"), 0xC0000005);
    EXPECT_EQ(world.InRoot().size(), 2u) << "the next one removes what is left of the first";
    EXPECT_EQ(world.Run(L"start"), 0u);
    EXPECT_EQ(world.InRoot(), ofTheLiving);
    EXPECT_EQ(world.InGiven(),
              (Names{L"added.txt", L"folder", L"folder (2)", L"given (2).txt", L"given.txt"}))
        << "outside of their own folders nothing is remembered";
    SetEvent(end.get());
    EXPECT_EQ(living.ExitCode(), 0u);
    EXPECT_EQ(world.InRoot(), Names{});
    ASSERT_EQ(log.Lines().size(), 2u);
    EXPECT_TRUE(log.Lines()[1].ends_with("' of a process that is gone removed")) << log.Lines()[1];
    UtilTempFileAdd(world.Given().c_str()); // read-only files and all
    EXPECT_EQ(UtilTempFileRelease(world.Given().c_str(), FALSE), UTIL_OK);
}

TEST(TempFiles, OpenAtTheEndGoLater) {
    const clsWorld world;
    const clsLog log;
    EXPECT_EQ(world.Run(L"hold"), 0u);
    EXPECT_EQ(world.InGiven(), Names{L"given.txt"});
    const std::vector<std::string> lines = log.Lines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(lines[0].starts_with("WRN: clsTempFileRemover: '") &&
                lines[0].ends_with("\\given\\given.txt' left at the end (32)"))
        << lines[0];
    ASSERT_EQ(world.InRoot().size(), 1u);
    const fs::path left = world.Root() / *world.InRoot().begin();
    EXPECT_EQ(clsWorld::NamesIn(left), Names{L"own.txt"});
    EXPECT_EQ(world.Run(L"start"), 0u);
    EXPECT_EQ(world.InRoot().size(), 1u) << "a folder without a lock may be one that is being made";
    SetAge(left, 61);
    EXPECT_EQ(world.Run(L"start"), 0u);
    EXPECT_EQ(world.InRoot(), Names{});
}

TEST(TempFiles, SweepsKeepToFoldersOfProcesses) {
    const clsWorld world;
    const Names others{L"1-g",  L"1", L"-1", L"1-", L"1-2-3", L"123456789-1", L"1-12345678901234567",
                       L"a.txt"};
    for (const std::wstring& name : others)
        fs::create_directories(world.Root() / name / L"x");
    for (const wchar_t* name : {L"1-1", L"aB-Cd", L"2-2"})
        fs::create_directories(world.Root() / name / L"x");
    WriteBytes(world.Root() / L"aB-Cd" / L"~lock", "");
    WriteBytes(world.Root() / L"3-3", "a file");
    for (const std::wstring& name : world.InRoot())
        SetAge(world.Root() / name, name == L"2-2" ? 59 : 61);
    EXPECT_EQ(world.Run(L"start"), 0u);
    Names expected = others;
    expected.insert({L"2-2", L"3-3"});
    EXPECT_EQ(world.InRoot(), expected);
}

// The build made folders with links of the host's, and one of another owner.
TEST(TempFiles, SweepsFollowNoLinks) {
    const wchar_t* const links = _wgetenv(L"TVUT22_TEMP_LINKS");
    ASSERT_TRUE(links);
    const clsWorld world(links);
    const fs::path folder = world.Root() / L"1-1";
    ASSERT_TRUE(GetFileAttributesW((folder / L"sub" / L"link").c_str()) & FILE_ATTRIBUTE_REPARSE_POINT);
    ASSERT_TRUE(GetFileAttributesW((world.Root() / L"3-3").c_str()) & FILE_ATTRIBUTE_REPARSE_POINT);
    ASSERT_TRUE(fs::exists(folder / L"a"));
    EXPECT_EQ(world.Run(L"start"), 0u);
    EXPECT_FALSE(fs::exists(folder / L"a"));
    EXPECT_TRUE(fs::exists(world.Root() / L"2-2" / L"a")) << "of another owner";
    EXPECT_TRUE(fs::exists(world.Root() / L"3-3" / L"keep")) << "a link";
    EXPECT_TRUE(fs::exists(fs::path(links) / L"target" / L"keep"));
}

TEST(TempFiles, ActForTheProcessNotTheThread) {
    ASSERT_TRUE(ImpersonateSelf(SecurityImpersonation));
    const std::wstring path = Created(L"", L"a");
    HANDLE token = nullptr;
    EXPECT_TRUE(OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, TRUE, &token))
        << "the thread's user is as it was";
    CloseHandle(token);
    EXPECT_TRUE(RevertToSelf());
    EXPECT_TRUE(OpenExisting(fs::path(path).parent_path() / L"~lock", GENERIC_READ, 7) == nullptr);
    EXPECT_EQ(UtilTempFileRelease(path.c_str(), FALSE), UTIL_OK);
}

} // namespace
} // namespace testing_prof

int wmain(int argc, wchar_t** argv) {
    if (argc == 3 && std::wstring_view(argv[0]) == L"child")
        return testing_prof::roles.at(argv[1])(argv[2]);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
