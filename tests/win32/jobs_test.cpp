// Jobs: opening by name, errors, sharing, references, options, and saving to files.
#include "support/files.h"
#include "support/import_hook.h"
#include "support/piece_stream.h"

#include <future>
#include <thread>
#include <vector>

namespace testing_prof {
namespace {

template <class F>
class Jobs : public ::testing::Test {
  protected:
    using Unit = typename F::Char;

    static Job open(const std::wstring& name) { return Job(F::open(in<Unit>(name).c_str())); }
    static Job hold(const std::wstring& name) { return Job(F::openExclusive(in<Unit>(name).c_str())); }

    const TempFolder folder;
};
TYPED_TEST_SUITE(Jobs, BothForms, FormNames);

Bytes fileOf(std::wstring_view tree) {
    return saved(Job(tree));
}

TEST(Library, VersionsAndOptions) {
    const std::pair<INT, INT> versions[] = {{0, 5642}, {1, 22}, {2, 10}, {3, -1}, {-1, -1}};
    for (const auto& [selector, expected] : versions)
        EXPECT_EQ(ProfGetVersion(selector), expected);
    EXPECT_EQ(ProfGetOption(PROF_OPTION_CODE_PAGE), GetACP());
    const CodePage set(0xABCD0000u | 932u);
    EXPECT_EQ(ProfGetOption(PROF_OPTION_CODE_PAGE), 932u) << "only the low 16 bits count";
    for (const UINT option : {0u, 2u, 0x10001u, 0xFFFFFFFFu}) {
        ProfSetOption(option, 1252);
        EXPECT_EQ(ProfGetOption(option), 0u);
    }
    EXPECT_EQ(ProfGetOption(PROF_OPTION_CODE_PAGE), 932u);
    for (const UINT unknown : {0u, 0xFFFFu}) { // is kept, and converts as the process's own
        ProfSetOption(PROF_OPTION_CODE_PAGE, unknown);
        EXPECT_EQ(ProfGetOption(PROF_OPTION_CODE_PAGE), unknown);
        const Job job;
        ProfSetStringA(job, 0, "a", "\xE9");
        EXPECT_EQ(textOf(job, L"a"), toWide("\xE9", GetACP()));
    }
}

TYPED_TEST(Jobs, InvalidAndEmptyJobs) {
    EXPECT_EQ(ProfGetError(0), PROF_INVALID_JOB);
    ProfJobAddRef(0);
    ProfJobClose(0);
    EXPECT_EQ(TypeParam::save(0, nullptr, 0), 0);
    for (const auto open : {TypeParam::open, TypeParam::openExclusive}) {
        const Job job(open(nullptr));
        EXPECT_EQ(job.error(), PROF_OK);
        EXPECT_EQ(describe(job), L"");
        EXPECT_EQ(TypeParam::save(job, nullptr, 0), PROF_SAVE_FAILED) << "there is no file to save to";
    }
}

TYPED_TEST(Jobs, NamesThatNoFileMayHaveAreRefusedWithoutTouchingTheDisk) {
    // clang-format off
    for (const wchar_t* name : {L"CON", L"con", L"Con.txt", L"PRN", L"AUX.", L"nul", L"NUL.prf", L"COM1", L"com9.x",
                                L"LPT1", L"lpt9", L"ends.", L"ends ", L" ", L".", L"..", L"a?", L"a*b", L"a<b",
                                L"a>b", L"a\"b", L"a|b", L"sub\\a:b", L"a\tb", L"a\x01", L"a\x1Fg", L""}) {
        // clang-format on
        for (const Job& job : {this->open(this->folder / name), this->hold(this->folder / name)})
            EXPECT_EQ(job.error(), PROF_OPEN_FAILED) << name;
        const Job job(L"a=1;");
        const auto target = in<typename TypeParam::Char>(this->folder / name);
        EXPECT_EQ(TypeParam::save(job, target.c_str(), 0), PROF_SAVE_FAILED) << name;
    }
    EXPECT_EQ(this->hold(L"").error(), PROF_OPEN_FAILED);
    EXPECT_EQ(this->hold(this->folder / L"folder\\").error(), PROF_OPEN_FAILED) << "no last component";
    EXPECT_EQ(this->folder.count(), 0);
}

TYPED_TEST(Jobs, OtherNamesAreCreatedByAnExclusiveOpenOnly) {
    for (const wchar_t* name : {L"CONSOLE", L"xCON", L"COM0", L"COM10.prf", L"LPT.prf", L".prf", L"a b.c d",
                                L"brackets [1] {2}", L"equals=#;%,"}) {
        const std::wstring path = this->folder / name;
        EXPECT_EQ(this->open(path).error(), PROF_OPEN_FAILED) << name;
        EXPECT_FALSE(std::filesystem::exists(path));
        EXPECT_EQ(this->hold(path).error(), PROF_OK) << name;
        EXPECT_TRUE(std::filesystem::exists(path)) << name;
        EXPECT_EQ(this->open(path).error(), PROF_OK) << "an empty file is an empty profile";
    }
    EXPECT_EQ(this->hold(this->folder / L"no folder\\a.prf").error(), PROF_EXCLUSIVE_FAILED);
    EXPECT_EQ(this->open(this->folder / L"no folder\\a.prf").error(), PROF_OPEN_FAILED);
    EXPECT_EQ(this->open(this->folder.path().wstring()).error(), PROF_OPEN_FAILED) << "a folder";
    EXPECT_EQ(this->hold(this->folder.path().wstring()).error(), PROF_EXCLUSIVE_FAILED);
}

TYPED_TEST(Jobs, ANormalOpenLetsGoOfItsFileAndAnExclusiveOneHoldsIt) {
    const std::wstring path = this->folder / L"a.prf";
    writeFile(path, fileOf(L"a=1;"));
    constexpr DWORD all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const auto canOpen = [&](DWORD access, DWORD share) {
        return static_cast<bool>(openFile(path, access, share));
    };
    {
        const Job normal = this->open(path);
        EXPECT_TRUE(canOpen(GENERIC_READ | GENERIC_WRITE, 0));
    }
    Job job = this->hold(path);
    EXPECT_EQ(describe(job), L"a=1;");
    EXPECT_TRUE(canOpen(GENERIC_READ, all));
    EXPECT_FALSE(canOpen(GENERIC_WRITE, all));
    EXPECT_FALSE(canOpen(GENERIC_READ, FILE_SHARE_READ));
    const Job reader = this->open(path);
    EXPECT_EQ(reader.error(), PROF_OK) << "normal opens still read it";
    EXPECT_EQ(describe(reader), L"a=1;");
    EXPECT_EQ(ProfSaveW(reader, nullptr, 0), PROF_SAVE_FAILED) << "but cannot replace it";
    ProfJobAddRef(job);
    ProfJobClose(job);
    EXPECT_FALSE(canOpen(GENERIC_WRITE, all)) << "one reference is left";
    EXPECT_EQ(describe(job), L"a=1;");
    job.close();
    EXPECT_TRUE(canOpen(GENERIC_READ | GENERIC_WRITE, 0));
}

TYPED_TEST(Jobs, AFileThatCannotBeLoadedIsNotHeld) {
    const std::wstring path = this->folder / L"bad.prf";
    writeFile(path, "ZZmQ no deflate stream");
    const Job job = this->hold(path);
    EXPECT_EQ(job.error(), PROF_LOAD_FAILED);
    EXPECT_TRUE(openFile(path, GENERIC_READ | GENERIC_WRITE, 0));
    EXPECT_EQ(this->open(path).error(), PROF_LOAD_FAILED);
}

// The DLL's attempts to open a file: each lets the test know.
HANDLE firstAttempt;
HANDLE WINAPI attempted(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                        DWORD disposition, DWORD flags, HANDLE model) {
    const HANDLE file = CreateFileW(name, access, share, security, disposition, flags, model);
    const DWORD error = GetLastError();
    SetEvent(firstAttempt);
    SetLastError(error);
    return file;
}

TYPED_TEST(Jobs, AnOpenWaitsForALockedFileUntilItIsReleased) {
    const std::wstring path = this->folder / L"a.prf";
    writeFile(path, fileOf(L"a=1;"));
    for (const auto open : {TypeParam::open, TypeParam::openExclusive}) {
        const Handle event(CreateEventW(nullptr, FALSE, FALSE, nullptr));
        firstAttempt = event.get();
        const ImportHook hook("CreateFileW", reinterpret_cast<void*>(attempted));
        ASSERT_TRUE(hook);
        Handle lock = openFile(path, GENERIC_READ, 0);
        ASSERT_TRUE(lock);
        Job job(nullptr);
        std::thread opener([&] { job = Job(open(in<typename TypeParam::Char>(path).c_str())); });
        WaitForSingleObject(event.get(), INFINITE);
        lock.reset();
        opener.join();
        EXPECT_EQ(job.error(), PROF_OK);
        EXPECT_EQ(describe(job), L"a=1;");
    }
}

TEST(Sharing, AFileLockedForTenSecondsGivesAnError) {
    const TempFolder folder;
    const std::wstring path = folder / L"a.prf";
    writeFile(path, fileOf(L"a=1;"));
    const Handle lock = openFile(path, GENERIC_READ, 0);
    ASSERT_TRUE(lock);
    const auto errorOf = [&](auto open) {
        return std::async(std::launch::async, [&path, open] { return Job(open(path.c_str())).error(); });
    };
    auto normal = errorOf(ProfJobOpenW), exclusive = errorOf(ProfJobOpenExclusiveW);
    EXPECT_EQ(normal.get(), PROF_LOCKED);
    EXPECT_EQ(exclusive.get(), PROF_LOCKED);
}

TEST(References, AreCountedAcrossThreads) {
    const Job job(L"a=1;");
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([&] {
                for (int n = 0; n < 50000; ++n)
                    ProfJobAddRef(job), ProfJobClose(job);
            });
    }
    EXPECT_EQ(describe(job), L"a=1;");
}

TYPED_TEST(Jobs, SavesGoToTheNameGivenOrTheJobsOwn) {
    using Char = typename TypeParam::Char;
    const std::wstring own = this->folder / L"Own.prf", other = this->folder / L"other.prf";
    writeFile(own, fileOf(L"a=1;"));
    const auto save = [](ProfJob job, const std::wstring& name) {
        return TypeParam::save(job, in<Char>(name).c_str(), 0);
    };
    {
        const Job job = this->open(own);
        ProfSetStringW(job, 0, L"a", L"2");
        EXPECT_EQ(save(job, other), PROF_OK);
        EXPECT_EQ(readFile(own), fileOf(L"a=1;"));
        EXPECT_EQ(TypeParam::save(job, nullptr, 0), PROF_OK);
        EXPECT_EQ(readFile(own), fileOf(L"a=2;"));
        EXPECT_EQ(readFile(other), fileOf(L"a=2;"));
    }
    const Job job = this->hold(own);
    ProfSetStringW(job, 0, L"a", L"a longer text than before");
    EXPECT_EQ(TypeParam::save(job, nullptr, 0), PROF_OK);
    EXPECT_EQ(describe(this->open(own)), L"a=a longer text than before;") << "through the held file";
    ProfSetStringW(job, 0, L"a", L"3");
    EXPECT_EQ(save(job, this->folder / L"oWN.PRF"), PROF_OK) << "compared without regard to case";
    EXPECT_EQ(readFile(own), fileOf(L"a=3;")) << "and cut where it ends";
    ProfSetStringW(job, 0, L"a", L"4");
    EXPECT_EQ(save(job, other), PROF_OK);
    EXPECT_EQ(readFile(other), fileOf(L"a=4;"));
    EXPECT_EQ(describe(this->open(own)), L"a=3;");
    EXPECT_EQ(this->folder.count(), 2) << "no temporary file stays";

    PieceStream stream(fileOf(L"s=1;"));
    const std::wstring named = this->folder / L"named.prf";
    const Job streamed(TypeParam::openStream(&stream, in<Char>(named).c_str(), 0));
    EXPECT_EQ(TypeParam::save(streamed, nullptr, 0), PROF_SAVE_FAILED) << "a stream has a name, but no file";
    EXPECT_EQ(this->folder.count(), 2);
}

TYPED_TEST(Jobs, SavesThatFailLeaveTheFile) {
    const std::wstring path = this->folder / L"a.prf";
    const auto name = in<typename TypeParam::Char>(path);
    writeFile(path, "before");
    const Job job(L"a=1;");
    const auto fails = [&](const char* why, const auto& target, UINT flags) {
        EXPECT_EQ(TypeParam::save(job, target.c_str(), flags), PROF_SAVE_FAILED) << why;
        EXPECT_EQ(readFile(path), "before") << why;
        EXPECT_EQ(this->folder.count(), 1) << why;
    };
    fails("a missing folder", in<typename TypeParam::Char>(this->folder / L"none\\a.prf"), 0);
    fails("a folder", in<typename TypeParam::Char>(this->folder.path().wstring()), 0);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    fails("a read-only file", name, 0);
    EXPECT_TRUE(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_READONLY);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN);
    {
        const Handle lock = openFile(path, GENERIC_READ, FILE_SHARE_READ);
        fails("a file that another program holds", name, 0);
    }
    EXPECT_EQ(TypeParam::save(job, name.c_str(), 0), PROF_OK);
    EXPECT_EQ(readFile(path), fileOf(L"a=1;"));
    EXPECT_TRUE(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_HIDDEN) << "attributes are taken over";
}

// What Windows does to names of 260 characters and more, and Wine does not.
bool tooLong(LPCWSTR name) {
    if (wcslen(name) < MAX_PATH || std::wstring_view(name).starts_with(L"\\\\?\\"))
        return false;
    SetLastError(ERROR_PATH_NOT_FOUND);
    return true;
}
HANDLE WINAPI createShort(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                          DWORD disposition, DWORD flags, HANDLE model) {
    return tooLong(name) ? INVALID_HANDLE_VALUE
                         : CreateFileW(name, access, share, security, disposition, flags, model);
}
BOOL WINAPI moveShort(LPCWSTR from, LPCWSTR to, DWORD flags) {
    return !tooLong(from) && !tooLong(to) && MoveFileExW(from, to, flags);
}
BOOL WINAPI attributesShort(LPCWSTR name, GET_FILEEX_INFO_LEVELS level, LPVOID data) {
    return !tooLong(name) && GetFileAttributesExW(name, level, data);
}
BOOL WINAPI folderShort(LPCWSTR name, LPSECURITY_ATTRIBUTES security) {
    return !tooLong(name) && CreateDirectoryW(name, security);
}
HANDLE WINAPI findShort(LPCWSTR name, LPWIN32_FIND_DATAW data) {
    return tooLong(name) ? INVALID_HANDLE_VALUE : FindFirstFileW(name, data);
}

/// A new folder whose path has so many characters.
std::wstring deepFolder(std::wstring path, size_t length) {
    while (path.size() < length)
        path.append(1, L'\\').append(std::min(length - path.size(), size_t{150}), L'f');
    std::filesystem::create_directories(path);
    return path;
}

TYPED_TEST(Jobs, PathsMayBeLongerThanTheSystemsLimit) {
    using Char = typename TypeParam::Char;
    const ImportHook hooks[] = {{"CreateFileW", reinterpret_cast<void*>(createShort)},
                                {"MoveFileExW", reinterpret_cast<void*>(moveShort)},
                                {"GetFileAttributesExW", reinterpret_cast<void*>(attributesShort)},
                                {"CreateDirectoryW", reinterpret_cast<void*>(folderShort)},
                                {"FindFirstFileW", reinterpret_cast<void*>(findShort)}};
    for (const size_t length : {200u, 243u, 246u, 252u, 257u, 270u, 600u}) {
        SCOPED_TRACE(length);
        const std::wstring deep = deepFolder(this->folder / L"f", length);
        for (const std::wstring& path : {deep + L"\\a", deep + L"/./a"}) {
            const auto target = in<Char>(path);
            EXPECT_EQ(TypeParam::save(Job(L"a=1;"), target.c_str(), 0), PROF_OK);
            EXPECT_EQ(TypeParam::save(Job(L"a=2;"), target.c_str(), 0), PROF_OK);
            EXPECT_EQ(describe(this->open(path)), L"a=2;");
            EXPECT_EQ(this->hold(path).error(), PROF_OK);
        }
        const Job job;
        EXPECT_EQ(TypeParam::appendFiles(job, 0, in<Char>(deep + L"\\*").c_str(), nullptr), PROF_OK);
        EXPECT_EQ(TypeParam::extractFiles(job, 0, in<Char>(deep + L"\\out").c_str(), nullptr), PROF_OK);
        EXPECT_EQ(describe(this->open(deep + L"\\out\\a")), L"a=2;");
        const std::wstring relative = deep.substr(this->folder.path().wstring().size() + 1) + L"\\r";
        const auto before = std::filesystem::current_path();
        std::filesystem::current_path(this->folder.path());
        EXPECT_EQ(TypeParam::save(job, in<Char>(relative).c_str(), 0), PROF_OK);
        EXPECT_EQ(this->open(relative).error(), PROF_OK);
        std::filesystem::current_path(before);
    }
}

TEST(CodePages, OfTheOptionConvertTheAnsiForms) {
    const std::pair<UINT, std::string> samples[] = {{1252, "\xE9\x80"},
                                                    {932, "\x93\xFA\xB1\x5C"},
                                                    {1251, "\xC0\xFF"},
                                                    {CP_UTF8, "\xE2\x82\xAC\xF0\x9F\x98\x80"}};
    for (const auto& [codePage, bytes] : samples) {
        const CodePage set(codePage);
        const std::wstring text = toWide(bytes, codePage);
        const Job job;
        ProfSetStringA(job, ProfAppendListA(job, 0, bytes.c_str()), bytes.c_str(), bytes.c_str());
        EXPECT_EQ(describe(job), text + L"{" + text + L"=" + text + L";}") << codePage;
        char buffer[20];
        EXPECT_EQ(ProfGetStringA(job, 0, (bytes + "/" + bytes).c_str(), buffer, sizeof buffer, nullptr),
                  static_cast<INT>(text.size()));
        EXPECT_EQ(buffer, bytes);
    }
}

} // namespace
} // namespace testing_prof
