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

    static clsJob Open(const std::wstring& name) { return clsJob(F::open(In<Unit>(name).c_str())); }
    static clsJob Hold(const std::wstring& name) { return clsJob(F::openExclusive(In<Unit>(name).c_str())); }

    const clsTempFolder folder;
};
TYPED_TEST_SUITE(Jobs, BothForms, scFormNames);

Bytes FileOf(std::wstring_view tree) {
    return Saved(clsJob(tree));
}

TEST(Library, VersionsAndOptions) {
    const std::pair<INT, INT> versions[] = {{0, 5642}, {1, 22}, {2, 10}, {3, -1}, {-1, -1}};
    for (const auto& [selector, expected] : versions)
        EXPECT_EQ(ProfGetVersion(selector), expected);
    EXPECT_EQ(ProfGetOption(PROF_OPTION_CODE_PAGE), GetACP());
    const clsCodePage set(0xABCD0000u | 932u);
    EXPECT_EQ(ProfGetOption(PROF_OPTION_CODE_PAGE), 932u) << "only the low 16 bits count";
    for (const UINT option : {0u, 2u, 0x10001u, 0xFFFFFFFFu}) {
        ProfSetOption(option, 1252);
        EXPECT_EQ(ProfGetOption(option), 0u);
    }
    EXPECT_EQ(ProfGetOption(PROF_OPTION_CODE_PAGE), 932u);
    for (const UINT unknown : {0u, 0xFFFFu}) { // is kept, and converts as the process's own
        ProfSetOption(PROF_OPTION_CODE_PAGE, unknown);
        EXPECT_EQ(ProfGetOption(PROF_OPTION_CODE_PAGE), unknown);
        const clsJob job;
        ProfSetStringA(job, 0, "a", "\xE9");
        EXPECT_EQ(TextOf(job, L"a"), ToWide("\xE9", GetACP()));
    }
}

TYPED_TEST(Jobs, InvalidAndEmptyJobs) {
    EXPECT_EQ(ProfGetError(0), PROF_INVALID_JOB);
    ProfJobAddRef(0);
    ProfJobClose(0);
    EXPECT_EQ(TypeParam::save(0, nullptr, 0), 0);
    for (const auto open : {TypeParam::open, TypeParam::openExclusive}) {
        const clsJob job(open(nullptr));
        EXPECT_EQ(job.Error(), PROF_OK);
        EXPECT_EQ(Describe(job), L"");
        EXPECT_EQ(TypeParam::save(job, nullptr, 0), PROF_SAVE_FAILED) << "there is no file to save to";
    }
}

// Which names these are is shown by the unit test of file names; other refusals, by those of their reasons.
TYPED_TEST(Jobs, NamesThatNoFileMayHaveAreRefusedWithoutTouchingTheDisk) {
    for (const wchar_t* name : {L"CON", L"nul.prf", L"ends.", L"..", L"a?", L"sub\\a:b", L"folder\\", L""}) {
        const std::wstring path = this->folder / name;
        for (const clsJob& job : {this->Open(path), this->Hold(path)})
            EXPECT_EQ(job.Error(), PROF_OPEN_FAILED) << name;
        EXPECT_EQ(TypeParam::save(clsJob(), In<typename TypeParam::Char>(path).c_str(), 0), PROF_SAVE_FAILED)
            << name;
    }
    EXPECT_EQ(this->Hold(L"").Error(), PROF_OPEN_FAILED);
    EXPECT_EQ(this->folder.Count(), 0);
}

TYPED_TEST(Jobs, OtherNamesAreCreatedByAnExclusiveOpenOnly) {
    for (const wchar_t* name : {L"CONSOLE", L"COM10.prf", L".prf", L"a b [1] {2}=#;%,"}) {
        const std::wstring path = this->folder / name;
        EXPECT_EQ(this->Open(path).Error(), PROF_OPEN_FAILED) << name;
        EXPECT_FALSE(std::filesystem::exists(path));
        EXPECT_EQ(this->Hold(path).Error(), PROF_OK) << name;
        EXPECT_EQ(this->Open(path).Error(), PROF_OK) << "an empty file is an empty profile";
    }
}

TYPED_TEST(Jobs, ANormalOpenLetsGoOfItsFileAndAnExclusiveOneHoldsIt) {
    const std::wstring path = this->folder / L"a.prf";
    WriteBytes(path, FileOf(L"a=1;"));
    constexpr DWORD all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const auto canOpen = [&](DWORD access, DWORD share) {
        return static_cast<bool>(OpenExisting(path, access, share));
    };
    {
        const clsJob normal = this->Open(path);
        EXPECT_TRUE(canOpen(GENERIC_READ | GENERIC_WRITE, 0));
    }
    clsJob job = this->Hold(path);
    EXPECT_EQ(Describe(job), L"a=1;");
    EXPECT_TRUE(canOpen(GENERIC_READ, all));
    EXPECT_FALSE(canOpen(GENERIC_WRITE, all));
    EXPECT_FALSE(canOpen(GENERIC_READ, FILE_SHARE_READ));
    const clsJob reader = this->Open(path);
    EXPECT_EQ(reader.Error(), PROF_OK) << "normal opens still read it";
    EXPECT_EQ(Describe(reader), L"a=1;");
    EXPECT_EQ(ProfSaveW(reader, nullptr, 0), PROF_SAVE_FAILED) << "but cannot replace it";
    ProfJobAddRef(job);
    ProfJobClose(job);
    EXPECT_FALSE(canOpen(GENERIC_WRITE, all)) << "one reference is left";
    EXPECT_EQ(Describe(job), L"a=1;");
    job.Close();
    EXPECT_TRUE(canOpen(GENERIC_READ | GENERIC_WRITE, 0));
}

TYPED_TEST(Jobs, AFileThatCannotBeLoadedIsNotHeld) {
    const std::wstring path = this->folder / L"bad.prf";
    WriteBytes(path, "ZZmQ no deflate stream");
    const clsJob job = this->Hold(path);
    EXPECT_EQ(job.Error(), PROF_LOAD_FAILED);
    EXPECT_TRUE(OpenExisting(path, GENERIC_READ | GENERIC_WRITE, 0));
    EXPECT_EQ(this->Open(path).Error(), PROF_LOAD_FAILED);
}

// The DLL's attempts to open a file: each lets the test know.
HANDLE firstAttempt;
HANDLE WINAPI Attempted(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                        DWORD disposition, DWORD flags, HANDLE model) {
    const HANDLE file = CreateFileW(name, access, share, security, disposition, flags, model);
    const DWORD error = GetLastError();
    SetEvent(firstAttempt);
    SetLastError(error);
    return file;
}

TYPED_TEST(Jobs, AnOpenWaitsForALockedFileUntilItIsReleased) {
    const std::wstring path = this->folder / L"a.prf";
    WriteBytes(path, FileOf(L"a=1;"));
    for (const auto open : {TypeParam::open, TypeParam::openExclusive}) {
        const Handle event(CreateEventW(nullptr, FALSE, FALSE, nullptr));
        firstAttempt = event.get();
        const clsImportHook hook("CreateFileW", Attempted);
        ASSERT_TRUE(hook);
        Handle lock = OpenExisting(path, GENERIC_READ, 0);
        ASSERT_TRUE(lock);
        clsJob job(nullptr);
        std::thread opener([&] { job = clsJob(open(In<typename TypeParam::Char>(path).c_str())); });
        WaitForSingleObject(event.get(), INFINITE);
        lock.reset();
        opener.join();
        EXPECT_EQ(job.Error(), PROF_OK);
        EXPECT_EQ(Describe(job), L"a=1;");
    }
}

TEST(Sharing, AFileLockedForTenSecondsGivesAnError) {
    const clsTempFolder folder;
    const std::wstring path = folder / L"a.prf";
    WriteBytes(path, FileOf(L"a=1;"));
    const Handle lock = OpenExisting(path, GENERIC_READ, 0);
    ASSERT_TRUE(lock);
    const auto errorOf = [&](auto open) {
        return std::async(std::launch::async, [&path, open] { return clsJob(open(path.c_str())).Error(); });
    };
    auto normal = errorOf(ProfJobOpenW), exclusive = errorOf(ProfJobOpenExclusiveW);
    EXPECT_EQ(normal.get(), PROF_LOCKED);
    EXPECT_EQ(exclusive.get(), PROF_LOCKED);
}

TEST(References, AreCountedAcrossThreads) {
    const clsJob job(L"a=1;");
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([&] {
                for (int n = 0; n < 50000; ++n)
                    ProfJobAddRef(job), ProfJobClose(job);
            });
    }
    EXPECT_EQ(Describe(job), L"a=1;");
}

TYPED_TEST(Jobs, SavesGoToTheNameGivenOrTheJobsOwn) {
    using Char = typename TypeParam::Char;
    const std::wstring own = this->folder / L"Own.prf", other = this->folder / L"other.prf";
    WriteBytes(own, FileOf(L"a=1;"));
    const auto save = [](ProfJob job, const std::wstring& name) {
        return TypeParam::save(job, In<Char>(name).c_str(), 0);
    };
    {
        const clsJob job = this->Open(own);
        ProfSetStringW(job, 0, L"a", L"2");
        EXPECT_EQ(save(job, other), PROF_OK);
        EXPECT_EQ(ReadBytes(own), FileOf(L"a=1;"));
        EXPECT_EQ(TypeParam::save(job, nullptr, 0), PROF_OK);
        EXPECT_EQ(ReadBytes(own), FileOf(L"a=2;"));
        EXPECT_EQ(ReadBytes(other), FileOf(L"a=2;"));
    }
    const clsJob job = this->Hold(own);
    ProfSetStringW(job, 0, L"a", L"a longer text than before");
    EXPECT_EQ(TypeParam::save(job, nullptr, 0), PROF_OK);
    EXPECT_EQ(Describe(this->Open(own)), L"a=a longer text than before;") << "through the held file";
    ProfSetStringW(job, 0, L"a", L"3");
    EXPECT_EQ(save(job, this->folder / L"oWN.PRF"), PROF_OK) << "compared without regard to case";
    EXPECT_EQ(ReadBytes(own), FileOf(L"a=3;")) << "and cut where it ends";
    ProfSetStringW(job, 0, L"a", L"4");
    EXPECT_EQ(save(job, other), PROF_OK);
    EXPECT_EQ(ReadBytes(other), FileOf(L"a=4;"));
    EXPECT_EQ(Describe(this->Open(own)), L"a=3;");
    EXPECT_EQ(this->folder.Count(), 2) << "no temporary file stays";

    clsPieceStream stream(FileOf(L"s=1;"));
    const std::wstring named = this->folder / L"named.prf";
    const clsJob streamed(TypeParam::openStream(&stream, In<Char>(named).c_str(), 0));
    EXPECT_EQ(TypeParam::save(streamed, nullptr, 0), PROF_SAVE_FAILED) << "a stream has a name, but no file";
    EXPECT_EQ(this->folder.Count(), 2);
}

TYPED_TEST(Jobs, SavesThatFailLeaveTheFile) {
    const std::wstring path = this->folder / L"a.prf";
    WriteBytes(path, "before");
    const clsJob job(L"a=1;");
    const auto save = [&] { return TypeParam::save(job, In<typename TypeParam::Char>(path).c_str(), 0); };
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(save(), PROF_SAVE_FAILED);
    EXPECT_TRUE(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_READONLY);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN);
    {
        const Handle held = OpenExisting(path, GENERIC_READ, FILE_SHARE_READ);
        EXPECT_EQ(save(), PROF_SAVE_FAILED) << "another program holds it";
    }
    EXPECT_EQ(ReadBytes(path), "before");
    EXPECT_EQ(this->folder.Count(), 1);
    EXPECT_EQ(save(), PROF_OK);
    EXPECT_EQ(ReadBytes(path), FileOf(L"a=1;"));
    EXPECT_TRUE(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_HIDDEN) << "attributes are taken over";
}

// What Windows does to names of 260 characters and more, and Wine does not.
bool TooLong(LPCWSTR name) {
    if (wcslen(name) < MAX_PATH || std::wstring_view(name).starts_with(L"\\\\?\\"))
        return false;
    SetLastError(ERROR_PATH_NOT_FOUND);
    return true;
}
HANDLE WINAPI CreateShort(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                          DWORD disposition, DWORD flags, HANDLE model) {
    return TooLong(name) ? INVALID_HANDLE_VALUE
                         : CreateFileW(name, access, share, security, disposition, flags, model);
}
BOOL WINAPI MoveShort(LPCWSTR from, LPCWSTR to, DWORD flags) {
    return !TooLong(from) && !TooLong(to) && MoveFileExW(from, to, flags);
}
BOOL WINAPI AttributesShort(LPCWSTR name, GET_FILEEX_INFO_LEVELS level, LPVOID data) {
    return !TooLong(name) && GetFileAttributesExW(name, level, data);
}
BOOL WINAPI FolderShort(LPCWSTR name, LPSECURITY_ATTRIBUTES security) {
    return !TooLong(name) && CreateDirectoryW(name, security);
}
HANDLE WINAPI FindShort(LPCWSTR name, LPWIN32_FIND_DATAW data) {
    return TooLong(name) ? INVALID_HANDLE_VALUE : FindFirstFileW(name, data);
}

// A new folder whose path has so many characters.
std::wstring DeepFolder(std::wstring path, size_t length) {
    while (path.size() < length)
        path.append(1, L'\\').append(std::min(length - path.size(), size_t{150}), L'f');
    std::filesystem::create_directories(path);
    return path;
}

TYPED_TEST(Jobs, PathsMayBeLongerThanTheSystemsLimit) {
    using Char = typename TypeParam::Char;
    const clsImportHook hooks[] = {{"CreateFileW", CreateShort},
                                   {"MoveFileExW", MoveShort},
                                   {"GetFileAttributesExW", AttributesShort},
                                   {"CreateDirectoryW", FolderShort},
                                   {"FindFirstFileW", FindShort}};
    for (const size_t length : {200u, 243u, 246u, 252u, 257u, 270u, 600u}) {
        SCOPED_TRACE(length);
        const std::wstring deep = DeepFolder(this->folder / L"f", length);
        for (const std::wstring& path : {deep + L"\\a", deep + L"/./a"}) {
            const auto target = In<Char>(path);
            EXPECT_EQ(TypeParam::save(clsJob(L"a=1;"), target.c_str(), 0), PROF_OK);
            EXPECT_EQ(TypeParam::save(clsJob(L"a=2;"), target.c_str(), 0), PROF_OK);
            EXPECT_EQ(Describe(this->Open(path)), L"a=2;");
            EXPECT_EQ(this->Hold(path).Error(), PROF_OK);
        }
        const clsJob job;
        EXPECT_EQ(TypeParam::appendFiles(job, 0, In<Char>(deep + L"\\*").c_str(), nullptr), PROF_OK);
        EXPECT_EQ(TypeParam::extractFiles(job, 0, In<Char>(deep + L"\\out").c_str(), nullptr), PROF_OK);
        EXPECT_EQ(Describe(this->Open(deep + L"\\out\\a")), L"a=2;");
        const std::wstring relative = deep.substr(this->folder.Path().wstring().size() + 1) + L"\\r";
        const auto before = std::filesystem::current_path();
        std::filesystem::current_path(this->folder.Path());
        EXPECT_EQ(TypeParam::save(job, In<Char>(relative).c_str(), 0), PROF_OK);
        EXPECT_EQ(this->Open(relative).Error(), PROF_OK);
        std::filesystem::current_path(before);
    }
}

} // namespace
} // namespace testing_prof
