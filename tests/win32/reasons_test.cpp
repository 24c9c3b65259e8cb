// After a failed open, save or file call the thread's last error tells why.
#include "support/import_hook.h"
#include "support/piece_stream.h"

namespace testing_prof {
namespace {

template <class F>
using Reasons = InBothForms<F>;
TYPED_TEST_SUITE(Reasons, BothForms, scFormNames);

BOOL WINAPI BadDisk(HANDLE, LPVOID, DWORD, LPDWORD, LPOVERLAPPED) {
    SetLastError(ERROR_CRC);
    return FALSE;
}
BOOL WINAPI FullDisk(HANDLE, LPCVOID, DWORD, LPDWORD, LPOVERLAPPED) {
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

// The last error after a call that returns a result, or all ones when it returns another.
template <class Call>
DWORD ReasonOf(INT result, Call call) {
    SetLastError(0xABCDEF);
    const INT given = call();
    const DWORD reason = GetLastError();
    return given == result ? reason : ~0u;
}

TYPED_TEST(Reasons, OfOpeningAreTheSystems) {
    const clsTempFolder folder;
    WriteBytes(folder / L"a.prf", Saved(clsJob(L"a=1;")));
    WriteBytes(folder / L"damaged.prf", "ZZmQ");
    const struct {
        const wchar_t* name;
        INT error, exclusiveError;
        DWORD reason;
    } rows[] = {{L"none", PROF_OPEN_FAILED, PROF_OK, ERROR_FILE_NOT_FOUND},
                {L"none\\a", PROF_OPEN_FAILED, PROF_EXCLUSIVE_FAILED, ERROR_PATH_NOT_FOUND},
                {L"..\\prof-test-folder", PROF_OPEN_FAILED, PROF_EXCLUSIVE_FAILED, ERROR_ACCESS_DENIED},
                {L"a?", PROF_OPEN_FAILED, PROF_OPEN_FAILED, ERROR_INVALID_NAME},
                {L"damaged.prf", PROF_LOAD_FAILED, PROF_LOAD_FAILED, ERROR_INVALID_DATA}};
    std::filesystem::create_directory(folder / L"..\\prof-test-folder");
    const auto reason = [](auto open, const std::wstring& path, INT error) {
        clsJob job;
        return ReasonOf(error, [&] {
            job = clsJob(open(In<typename TypeParam::Char>(path).c_str()));
            return job.Error();
        });
    };
    for (const auto& row : rows) {
        EXPECT_EQ(reason(TypeParam::open, folder / row.name, row.error), row.reason) << row.name;
        if (row.exclusiveError != PROF_OK) {
            EXPECT_EQ(reason(TypeParam::openExclusive, folder / row.name, row.exclusiveError), row.reason)
                << row.name;
        }
    }
    std::filesystem::remove(folder / L"..\\prof-test-folder");
    const clsImportHook hook("ReadFile", reinterpret_cast<void*>(BadDisk));
    EXPECT_EQ(reason(TypeParam::open, folder / L"a.prf", PROF_LOCKED), ERROR_CRC);
}

TEST(Saving, GivesTheSystemsReasons) {
    const clsTempFolder folder;
    const auto save = [](ProfJob job, const wchar_t* path) {
        return ReasonOf(PROF_SAVE_FAILED, [&] { return ProfSaveW(job, path, 0); });
    };
    const auto reason = [&](const wchar_t* name) { return save(clsJob(L"a=1;"), (folder / name).c_str()); };
    EXPECT_EQ(reason(L"none\\a"), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(reason(L"a?"), ERROR_INVALID_NAME);
    EXPECT_EQ(save(clsJob(), nullptr), ERROR_INVALID_NAME);
    std::filesystem::create_directory(folder / L"folder");
    EXPECT_EQ(reason(L"folder"), ERROR_ACCESS_DENIED);
    WriteBytes(folder / L"a", "");
    SetFileAttributesW((folder / L"a").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(reason(L"a"), ERROR_ACCESS_DENIED);
    SetFileAttributesW((folder / L"a").c_str(), FILE_ATTRIBUTE_NORMAL);
    const clsJob held(ProfJobOpenExclusiveW((folder / L"a").c_str()));
    EXPECT_EQ(reason(L"a"), ERROR_SHARING_VIOLATION);
    const clsImportHook hook("WriteFile", reinterpret_cast<void*>(FullDisk));
    EXPECT_EQ(reason(L"b"), ERROR_DISK_FULL);
    EXPECT_EQ(save(held, nullptr), ERROR_DISK_FULL);
}

TEST(Streams, GiveTheReasonsOfTheirFailures) {
    clsPieceStream stream(Saved(clsJob(L"a=1;")));
    clsJob job;
    const auto opening = [&] {
        job = clsJob(ProfJobOpenStream(&stream));
        return job.Error();
    };
    const auto saving = [&] { return ProfSaveToStream(job, &stream, 0); };
    EXPECT_EQ(ReasonOf(PROF_SAVE_FAILED, [] { return ProfSaveToStream(clsJob(), nullptr, 0); }),
              ERROR_INVALID_PARAMETER);
    stream.failAt = 1;
    EXPECT_EQ(ReasonOf(PROF_LOCKED, opening), ERROR_READ_FAULT);
    EXPECT_EQ(ReasonOf(PROF_SAVE_FAILED, saving), ERROR_DISK_FULL) << "STG_E_MEDIUMFULL";
}

TEST(Files, GiveTheSystemsReasons) {
    const clsTempFolder folder;
    const std::wstring file = folder / L"a", none = folder / L"none\\a";
    WriteBytes(file, "abc");
    const clsJob job(L"b=@2@YWJj;ok=YWJj;File.Entry{Name=n?;Contents=YWJj;}");
    const auto append = [&](const wchar_t* name) {
        return ReasonOf(0, [&] { return ProfAppendFileW(job, 0, L"b", nullptr, name), 0; });
    };
    EXPECT_EQ(append(none.c_str()), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(append(nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(append(file.c_str()), 0u) << "it has no result to tell success by";
    const auto get = [&](const wchar_t* item, const wchar_t* name) {
        return ReasonOf(PROF_DECODE_FAILED, [&] { return ProfGetFileW(job, 0, item, nullptr, name); });
    };
    EXPECT_EQ(get(L"b", file.c_str()), ERROR_INVALID_DATA);
    EXPECT_EQ(get(L"ok", none.c_str()), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(get(L"ok", nullptr), ERROR_INVALID_PARAMETER);
    const auto extract = [&](const std::wstring& to) {
        return ReasonOf(PROF_SAVE_FAILED, [&] { return ProfExtractFilesW(job, 0, to.c_str(), nullptr); });
    };
    EXPECT_EQ(extract(folder / L"none\\folder"), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(extract(file), ERROR_ALREADY_EXISTS);
    EXPECT_EQ(extract(folder / L"folder"), ERROR_INVALID_NAME);
    const clsImportHook hook("ReadFile", reinterpret_cast<void*>(BadDisk));
    EXPECT_EQ(ReasonOf(PROF_CONVERT_FAILED, [&] { return ProfAppendFilesW(job, 0, file.c_str(), nullptr); }),
              ERROR_CRC);
}

} // namespace
} // namespace testing_prof
