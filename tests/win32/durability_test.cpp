// Saving never tears a file: the saving process is stopped, or its file calls fail, at every step.
#include "support/child.h"
#include "support/fake_clock.h"
#include "support/log.h"
#include "support/piece_stream.h"
#include "support/steps.h"

#include <cstdlib>

namespace testing_prof {
namespace {

constexpr wchar_t oneLetter[] = L"target.prf";

// The new contents differ from the old in every line and are several buffers long.
clsJob WithNewContents(clsJob job) {
    for (int i = 0; i < 4000; ++i)
        ProfAppendStringW(job, 0, (L"new" + std::to_wstring(i)).c_str(), L"some new value");
    return job;
}

clsJob NewProfile() {
    return WithNewContents(clsJob());
}

Bytes OldContents() {
    return Saved(clsJob(L"old=contents;L{a=1;}"));
}

INT Save(const std::wstring& path, UINT flags) {
    return ProfSaveW(NewProfile(), path.c_str(), flags);
}

// The exit code of this program as a child, the saver of the tests below, which dies at a step.
DWORD DiesSaving(int step, UINT flags, const std::wstring& path) {
    return clsChild(std::to_wstring(step) + L" " + std::to_wstring(flags) + L" \"" + path + L"\"").ExitCode();
}

// A file as another program holds it that opened it with fopen: it may be written, but not replaced.
Handle OpenedElsewhere(const std::wstring& path) {
    return OpenExisting(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
}

class Durability : public ::testing::TestWithParam<UINT> {
  protected:
    const clsTempFolder folder;
    const std::wstring path = folder / oneLetter;
};

TEST_P(Durability, AProcessThatDiesAtAnyStepOfASaveLeavesTheOldOrTheNewFile) {
    const Bytes before = OldContents(), after = Saved(NewProfile(), GetParam());
    for (const bool present : {true, false}) {
        int step = 0;
        DWORD code = diedCode;
        while (code == diedCode) {
            std::filesystem::remove(path);
            if (present)
                WriteBytes(path, before);
            code = DiesSaving(++step, GetParam(), path);
            const Bytes now = ReadBytes(path);
            EXPECT_TRUE(now == after || (present ? now == before : !std::filesystem::exists(path)))
                << "step " << step << ": " << now.size() << " bytes";
            EXPECT_LE(folder.Count(), 2) << "one temporary file may stay";
            folder.KeepOnly(oneLetter);
        }
        EXPECT_EQ(code, 0u);
        EXPECT_EQ(ReadBytes(path), after);
        EXPECT_GT(step, 3) << "the process was hardly stopped anywhere";
    }
}

TEST_P(Durability, AFailureAtAnyStepLeavesTheOldFileOrIsOvercome) {
    const Bytes before = OldContents(), after = Saved(NewProfile(), GetParam());
    int failures = 0;
    for (int at = 1;; ++at) {
        WriteBytes(path, before);
        INT result;
        int taken;
        {
            const clsSteps watched(Fault::Fail, at);
            result = Save(path, GetParam());
            EXPECT_TRUE(result == PROF_OK || GetLastError() == ERROR_DISK_FULL) << "step " << at;
            taken = steps;
        }
        EXPECT_EQ(ReadBytes(path), result == PROF_OK ? after : before) << "step " << at;
        EXPECT_EQ(folder.Count(), 1) << "step " << at << ": a temporary file stayed";
        folder.KeepOnly(oneLetter);
        failures += result == PROF_SAVE_FAILED;
        if (taken < at)
            break;
    }
    EXPECT_GT(failures, 2) << "the failures were hardly noticed";
}

TEST_P(Durability, ATargetThatCannotBeReplacedIsWrittenInPlace) {
    const Bytes after = Saved(NewProfile(), GetParam());
    for (const Bytes& before : {OldContents(), Bytes(200000, 'x')}) {
        WriteBytes(path, before);
        const Handle reader = OpenedElsewhere(path);
        const clsFakeClock clock;
        EXPECT_EQ(Save(path, GetParam()), PROF_OK);
        EXPECT_EQ(clsFakeClock::now, 2000u) << "others may close it yet";
        EXPECT_EQ(ReadBytes(path), after);
        EXPECT_EQ(folder.Count(), 1);
    }
}

// The finished temporary file goes only when its copy is complete.
TEST_P(Durability, WhatStopsWritingInPlaceLeavesOneWholeFile) {
    const Bytes after = Saved(NewProfile(), GetParam());
    const auto isWhole = [&](const auto& entry) { return ReadBytes(entry.path()) == after; };
    const auto isWholeThere = [&] {
        using Entries = std::filesystem::directory_iterator;
        return std::any_of(Entries(folder.Path()), Entries(), isWhole);
    };
    for (const Bytes& before : {OldContents(), Bytes(200000, 'x')}) {
        int torn = 0;
        for (const Fault how : {Fault::Fail, Fault::Die}) {
            bool stopped = true;
            for (int at = 1; stopped; at += how == Fault::Fail ? 1 : 7) { // a process each
                WriteBytes(path, before);
                const Handle reader = OpenedElsewhere(path);
                const clsFakeClock clock(10);
                const clsLog log;
                if (how == Fault::Fail) {
                    const clsSteps watched(how, at);
                    Save(path, GetParam());
                    stopped = steps >= at;
                } else {
                    stopped = DiesSaving(at, GetParam(), path) == diedCode;
                }
                const Bytes now = ReadBytes(path);
                const bool isTorn = now != before && now != after;
                torn += isTorn;
                EXPECT_TRUE(!isTorn || how == Fault::Die || log.Lines().size() == 1) << "step " << at;
                EXPECT_TRUE(now == before || isWholeThere()) << "step " << at;
                EXPECT_TRUE(how == Fault::Die || folder.Count() == 1 || now != before) << "step " << at;
                EXPECT_TRUE(stopped || (now == after && folder.Count() == 1)) << "step " << at;
                folder.KeepOnly(oneLetter);
            }
        }
        EXPECT_GT(torn, 0) << "nothing was stopped while it wrote";
    }
}

// What killed processes have left goes with the first save in a folder, and costs the others nothing.
TEST(Leftovers, GoOnceAFolder) {
    const clsTempFolder parent;
    const auto folder = parent.Path() / L"leftovers";
    std::filesystem::create_directory(folder);
    const auto make = [&](const wchar_t* name, unsigned minutes) {
        WriteBytes(folder / name, "left");
        SetAge(folder / name, minutes);
    };
    const auto there = [&](const wchar_t* name) { return std::filesystem::exists(folder / name); };
    constexpr const wchar_t *old = L"~PRF0123ABCD.tmp", *open = L"~PRF01234567.tmp",
                            *young = L"~PRF89ABCDEF.tmp";
    constexpr const wchar_t* others[] = {L"~PRF0123ABCD.sav", L"~PRF0123ABCD.tmp.x", L"~PRF0123ABCG.tmp",
                                         L"~PRF123.tmp", L"PRF0123ABCD.tmp"};
    for (const wchar_t* name : others)
        make(name, 70);
    make(old, 61);
    make(open, 61);
    make(young, 59);
    Handle held =
        OpenExisting(folder / open, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    EXPECT_EQ(Save(folder / L"a.prf", 0), PROF_OK);
    held.reset(); // nor has it been marked to go when it is closed
    EXPECT_FALSE(there(old));
    EXPECT_TRUE(there(open) && there(young));
    for (const wchar_t* name : others)
        EXPECT_TRUE(there(name));
    make(old, 61);
    const clsImportHook noSearch("FindFirstFileW", static_cast<void*>(nullptr));
    ASSERT_TRUE(noSearch);
    EXPECT_EQ(Save(folder / L"a.prf", 0), PROF_OK);
    EXPECT_TRUE(there(old));
}

INSTANTIATE_TEST_SUITE_P(Forms, Durability, ::testing::Values(PROF_FORM_TEXT, PROF_SAVE_COMPRESSED));

TEST(HeldFile, KeepsItsContentsWhenTheFirstWritesFail) {
    const clsTempFolder folder;
    const std::wstring path = folder / oneLetter;
    WriteBytes(path, OldContents());
    const clsJob job = WithNewContents(clsJob(ProfJobOpenExclusiveW(path.c_str())));
    {
        const clsSteps watched(Fault::Fail, 1);
        EXPECT_EQ(ProfSaveW(job, nullptr, 0), PROF_SAVE_FAILED);
    }
    EXPECT_EQ(Describe(clsJob(ProfJobOpenW(path.c_str()))), L"old=contents;L{a=1;}");
    EXPECT_EQ(ProfSaveW(job, nullptr, 0), PROF_OK);
    EXPECT_EQ(Describe(clsJob(ProfJobOpenW(path.c_str()))), Describe(job));
}

// A file that somebody maps cannot be cut.
TEST(HeldFile, KeepsItsContentsWhenItCannotBeCut) {
    const clsTempFolder folder;
    const std::wstring path = folder / oneLetter;
    WriteBytes(path, OldContents());
    const clsJob job(ProfJobOpenExclusiveW(path.c_str()));
    Handle reader = OpenedElsewhere(path);
    Handle mapping(CreateFileMappingW(reader.get(), nullptr, PAGE_READONLY, 0, 0, nullptr));
    const void* const view = MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, 0);
    ASSERT_TRUE(view);
    ProfEmptyList(job, nullptr);
    EXPECT_EQ(ProfSaveW(job, nullptr, 0), PROF_SAVE_FAILED);
    EXPECT_EQ(ReadBytes(path), OldContents());
    UnmapViewOfFile(view);
    mapping.reset();
    reader.reset();
    EXPECT_EQ(ProfSaveW(job, nullptr, 0), PROF_OK);
    EXPECT_EQ(Describe(clsJob(ProfJobOpenW(path.c_str()))), L"");
}

// TVUT22_SMALL_DISK names a folder on a disk of a few hundred kilobytes, which the test session mounts.
TEST(FullDisk, FailsTheSaveAndKeepsTheOldFile) {
    const wchar_t* const disk = _wgetenv(L"TVUT22_SMALL_DISK");
    ASSERT_TRUE(disk) << "run this test in the session of scripts/test";
    const clsTempFolder folder{std::filesystem::path(disk)};
    const std::wstring path = folder / oneLetter, held = folder / L"held.prf";
    const Bytes before = OldContents();
    WriteBytes(path, before);
    WriteBytes(held, before);
    const clsJob job(ProfJobOpenW(path.c_str())), holder(ProfJobOpenExclusiveW(held.c_str()));
    const std::wstring half(512 * 1024, L'x');
    for (const clsJob* full : {&job, &holder})
        for (int i = 0; i < 16; ++i)
            ProfAppendStringW(*full, 0, L"large", half.c_str());
    EXPECT_EQ(ProfSaveW(job, nullptr, 0), PROF_SAVE_FAILED);
    EXPECT_EQ(ReadBytes(path), before);
    EXPECT_EQ(ProfSaveW(holder, nullptr, 0), PROF_SAVE_FAILED);
    EXPECT_EQ(Describe(clsJob(ProfJobOpenW(held.c_str()))), L"old=contents;L{a=1;}");
    EXPECT_EQ(folder.Count(), 2) << "no temporary file stays";
    for (const clsJob* full : {&job, &holder}) {
        ProfDeleteItemW(*full, 0, L"large");
        EXPECT_EQ(ProfSaveW(*full, nullptr, 0), PROF_OK) << "room again: the space was given back";
    }
    EXPECT_EQ(ReadBytes(path), before);
}

} // namespace
} // namespace testing_prof

// As its own child process: saves once and dies at a step.
int main(int count, char** arguments) {
    using namespace testing_prof;
    if (count == 4) {
        const clsFakeClock clock(10);
        const clsSteps watched(Fault::Die, std::atoi(arguments[1]));
        return Save(ToWide(arguments[3], CP_ACP), static_cast<UINT>(std::atoi(arguments[2]))) == PROF_OK ? 0
                                                                                                         : 1;
    }
    ::testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
