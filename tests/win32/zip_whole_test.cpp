// Archives and what is unpacked from them are there whole or not at all: when the process is killed, a call
// of the system fails, memory or the disk is full, a source vanishes, or the caller cancels.
#include "support/child.h"
#include "support/counted_allocations.h"
#include "support/fake_clock.h"
#include "support/steps.h"
#include "support/zip.h"

#include <gtest/gtest.h>

namespace testing_prof {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::wstring>;

constexpr INT cancel = 7;
constexpr wchar_t kArchive[] = L"a.zip";

INT PackIn(const std::wstring& folder, const UtilZipOptions* options = nullptr) {
    return packed(folder + L"\\" + kArchive, folder + L"\\source", options);
}
INT UnpackIn(const std::wstring& folder, const UtilZipOptions* options = nullptr) {
    return UtilExtractZip((folder + L"\\" + kArchive).c_str(), (folder + L"\\out").c_str(), options);
}
using Work = INT (*)(const std::wstring& folder, const UtilZipOptions* options);

// A folder with sources, an archive of before, and a folder in which files of these names are already.
class clsWorld {
  public:
    explicit clsWorld(const fs::path& disk = fs::temp_directory_path()) : folder_(disk) {
        makeTree(Source(), Sources());
        Restore();
    }

    std::wstring Archive() const { return folder_ / kArchive; }
    std::wstring Source() const { return folder_ / L"source"; }
    std::wstring Target() const { return folder_ / L"out"; }
    std::wstring Path() const { return folder_.Path().wstring(); }

    // As it was before whatever is tried.
    void Restore() const {
        fs::remove_all(Target());
        for (const auto& name : Temporaries())
            fs::remove(name);
        WriteBytes(Archive(), "the archive of before");
        makeTree(Target(), {{L"source\\noise", "old"}, {L"source\\d\\text", "old"}});
    }

    // The archive is the one of before or a good one; whether it is good.
    bool IsNew() const {
        if (ReadBytes(Archive()) == "the archive of before")
            return false;
        EXPECT_EQ(entriesOf(Archive()), Entries());
        EXPECT_EQ(UtilExtractZip(Archive().c_str(), nullptr, nullptr), UTIL_OK);
        return true;
    }
    // Each file is the one of before, the one of the archive or missing; how many are the archive's.
    int CountNew() const {
        const Tree all = Sources();
        int count = 0;
        for (const auto& [name, bytes] : treeOf(Target() + L"\\source")) {
            if (name.ends_with(L'\\') || IsTemporary(name))
                continue;
            const bool isNew = all.contains(name) && bytes == all.at(name);
            EXPECT_TRUE(isNew || bytes == "old") << name << ": " << bytes.size() << " bytes";
            count += isNew ? 1 : 0;
        }
        return count;
    }
    std::vector<fs::path> Temporaries() const {
        std::vector<fs::path> found;
        for (const auto& entry : fs::recursive_directory_iterator(folder_.Path()))
            if (IsTemporary(entry.path().filename().wstring()))
                found.push_back(entry.path());
        return found;
    }

    static Tree Sources() {
        return {{L"empty\\", {}}, {L"d\\", {}}, {L"d\\text", Bytes(70000, 't')}, {L"noise", Noise(20000)}};
    }
    static Names Entries() {
        return {L"source/", L"source/d/", L"source/d/text", L"source/empty/", L"source/noise"};
    }
    static constexpr int files = 2;

  private:
    static bool IsTemporary(std::wstring_view path) { return path.find(L"~PRF") != path.npos; }

    clsTempFolder folder_;
};

// What holds after packing and after unpacking, whatever happened to them.
struct scCase {
    const char* name;
    Work work;
    bool unpacks;
};
constexpr scCase cases[] = {{"pack", PackIn, false}, {"unpack", UnpackIn, true}};

class ZipWhole : public ::testing::TestWithParam<scCase> {
  protected:
    void Restore(const clsWorld& in) const {
        in.Restore();
        EXPECT_TRUE(!GetParam().unpacks || PackIn(in.Path()) == UTIL_OK);
    }
    // Old or new, and whether all is new.
    bool IsDone(const clsWorld& in) const {
        return GetParam().unpacks ? in.CountNew() == clsWorld::files : in.IsNew();
    }
    void ExpectWhole(INT result, const clsWorld& in) const {
        const bool isDone = IsDone(in);
        EXPECT_TRUE(result != UTIL_OK || isDone);
        EXPECT_TRUE(in.Temporaries().empty());
    }

    const clsWorld world;
};

TEST_P(ZipWhole, AProcessThatDiesAtAnyStepLeavesOldOrNew) {
    int step = 0;
    for (DWORD code = diedCode; code == diedCode;) {
        Restore(world);
        const std::wstring words = std::to_wstring(GetParam().unpacks) + L' ' + std::to_wstring(++step);
        code = clsChild(words + L" \"" + world.Path() + L'"').ExitCode();
        SCOPED_TRACE("step " + std::to_string(step));
        const bool isDone = IsDone(world);
        EXPECT_LE(world.Temporaries().size(), 1u);
        ASSERT_TRUE(code == diedCode || (code == 0 && isDone)) << code;
    }
    EXPECT_GT(step, 8) << "the process was hardly stopped anywhere";
}

TEST_P(ZipWhole, AFailureAtAnyStepLeavesOldOrNew) {
    int failures = 0, at = 0, taken = 0;
    do {
        SCOPED_TRACE("step " + std::to_string(++at));
        Restore(world);
        INT result;
        {
            const clsFakeClock clock;
            const clsSteps watched(Fault::Fail, at);
            result = GetParam().work(world.Path(), nullptr);
            taken = steps;
        }
        ExpectWhole(result, world);
        failures += result != UTIL_OK;
        EXPECT_TRUE(result == UTIL_OK || result == UTIL_FAILED || result == UTIL_NO_ACCESS) << result;
    } while (taken >= at);
    EXPECT_GT(failures, 5) << "the failures were hardly noticed";
}

TEST_P(ZipWhole, WithoutMemoryNothingHappens) {
    const ZipOptions secret(L"secret");
    bool failed = true;
    for (int failing = 1; failed; ++failing) {
        SCOPED_TRACE("allocation " + std::to_string(failing));
        Restore(world);
        INT result;
        {
            const clsCountedAllocations refusing(failing);
            result = GetParam().work(world.Path(), &secret.options);
            failed = clsCountedAllocations::count >= failing;
        }
        EXPECT_EQ(result, failed ? UTIL_FAILED : UTIL_OK);
        if (GetParam().unpacks)
            ExpectWhole(result, world);
        else
            EXPECT_EQ(ReadBytes(world.Archive()) == "the archive of before", failed);
        EXPECT_TRUE(world.Temporaries().empty());
    }
}

BOOL WINAPI TellNothing(LPCWSTR, PULARGE_INTEGER, PULARGE_INTEGER, PULARGE_INTEGER) {
    return FALSE;
}

// 256 KB that this session mounts for the tests; a disk that tells what is free would refuse before.
TEST_P(ZipWhole, ADiskThatIsFullAtAnySizeLeavesOldOrNew) {
    const wchar_t* const disk = _wgetenv(L"TVUT22_SMALL_DISK");
    ASSERT_TRUE(disk) << "run this test in the session of scripts/test";
    const clsWorld small{fs::path(disk)};
    const clsImportHook untold("GetDiskFreeSpaceExW", reinterpret_cast<void*>(TellNothing));
    int failures = 0;
    INT result = UTIL_FAILED;
    for (std::size_t left = 0; result != UTIL_OK; left += 4096) {
        SCOPED_TRACE(std::to_string(left) + " bytes left");
        ASSERT_LT(left, 256u * 1024);
        Restore(small);
        const auto free = static_cast<std::size_t>(fs::space(small.Path()).available);
        ASSERT_GE(free, left);
        WriteBytes(fs::path(disk) / L"padding", Bytes(free - left, 'p'));
        result = GetParam().work(small.Path(), nullptr);
        fs::remove(fs::path(disk) / L"padding");
        EXPECT_TRUE(result == UTIL_OK || result == UTIL_FAILED) << result;
        ExpectWhole(result, small);
        failures += result != UTIL_OK;
    }
    EXPECT_GT(failures, 3);
}

TEST_P(ZipWhole, ACallerMayCancelAtAnyCall) {
    std::size_t at = 0, calls = 0;
    do {
        SCOPED_TRACE("call " + std::to_string(++at));
        Restore(world);
        ZipOptions options(
            [&](const UtilZipEntry&) { return options.seen.size() == at ? cancel : UTIL_ZIP_GO; });
        const INT result = GetParam().work(world.Path(), &options.options);
        calls = options.seen.size();
        EXPECT_EQ(result, calls < at ? UTIL_OK : UTIL_CANCELLED);
        ExpectWhole(result, world);
    } while (calls >= at);
    EXPECT_EQ(at, 11u) << "a question and an end for each entry";
}

// Killed processes leave them; a young one may be somebody's, and ".sav" is all there is of its contents.
TEST_P(ZipWhole, WhatWasLeftAnHourAgoGoes) {
    Restore(world);
    const fs::path folder = fs::path(world.Path()) / GetParam().name;
    const fs::path left = folder / L"source" / L"~PRF0123ABCD.tmp",
                   young = folder / L"source" / L"~PRF01234567.tmp",
                   kept = folder / L"source" / L"~PRF0123ABCD.sav";
    fs::create_directories(left.parent_path());
    for (const fs::path& path : {left, young, kept}) {
        WriteBytes(path, "x");
        SetAge(path, path == young ? 59 : 61);
    }
    if (GetParam().unpacks)
        EXPECT_EQ(UtilExtractZip(world.Archive().c_str(), folder.c_str(), nullptr), UTIL_OK);
    else
        EXPECT_EQ(packed(folder / L"source" / L"a.zip", world.Source()), UTIL_OK);
    EXPECT_FALSE(fs::exists(left));
    EXPECT_TRUE(fs::exists(young));
    EXPECT_TRUE(fs::exists(kept));
}

INSTANTIATE_TEST_SUITE_P(All, ZipWhole, ::testing::ValuesIn(cases),
                         [](const auto& chosen) { return std::string(chosen.param.name); });

// ---- The archive alone -----------------------------------------------------------------------------------

TEST(ZipArchive, GoesOnAfterAnEntryThatFailed) {
    const clsWorld world;
    const std::wstring other = world.Path() + L"\\other";
    makeTree(other, {{L"a", Bytes(100000, 'a')}, {L"b", "b"}});
    bool vanishes = false;
    ZipOptions options([&](const UtilZipEntry& entry) {
        if (std::wstring_view(entry.name) == L"other/b" && vanishes)
            fs::remove(other + L"\\b");
        return entry.done == 20000 && vanishes ? cancel : UTIL_ZIP_GO;
    });
    const UtilZip zip = UtilZIPCreate(world.Archive().c_str(), &options.options);
    EXPECT_EQ(UtilZIPAppend(zip, (other + L"\\b").c_str(), nullptr), UTIL_OK);
    vanishes = true;
    EXPECT_EQ(UtilZIPAppend(zip, other.c_str(), nullptr), UTIL_NOT_FOUND) << "all of it is taken back";
    EXPECT_EQ(UtilZIPAppend(zip, (world.Source() + L"\\noise").c_str(), nullptr), UTIL_CANCELLED);
    vanishes = false;
    EXPECT_EQ(UtilZIPAppend(zip, other.c_str(), L"b2"), UTIL_OK) << "and its names are free again";
    EXPECT_EQ(UtilZIPClose(zip, TRUE), UTIL_OK);
    EXPECT_EQ(entriesOf(world.Archive()), (Names{L"b", L"b2/", L"b2/a"}));
    EXPECT_EQ(UtilExtractZip(world.Archive().c_str(), nullptr, nullptr), UTIL_OK);
}

TEST(ZipArchive, StaysAsItWasUnlessItIsClosedAndKept) {
    const clsWorld world;
    const auto close = [&](BOOL keep, DWORD share) {
        const UtilZip zip = UtilZIPCreate(world.Archive().c_str(), nullptr);
        EXPECT_EQ(UtilZIPAppend(zip, world.Source().c_str(), nullptr), UTIL_OK);
        EXPECT_FALSE(world.IsNew());
        const Handle held = OpenExisting(world.Archive(), GENERIC_READ, share);
        const clsFakeClock clock;
        const INT result = UtilZIPClose(zip, keep);
        EXPECT_EQ(clsFakeClock::now, result == UTIL_NO_ACCESS ? 10000u : 0u);
        EXPECT_TRUE(world.Temporaries().empty());
        return result;
    };
    EXPECT_EQ(close(FALSE, FILE_SHARE_READ), UTIL_OK);
    EXPECT_EQ(close(TRUE, FILE_SHARE_READ), UTIL_NO_ACCESS);
    EXPECT_FALSE(world.IsNew());
    SetFileAttributesW(world.Archive().c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_FALSE(UtilZIPCreate(world.Archive().c_str(), nullptr));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ACCESS_DENIED});
    SetFileAttributesW(world.Archive().c_str(), FILE_ATTRIBUTE_HIDDEN);
    EXPECT_EQ(PackIn(world.Path()), UTIL_OK);
    EXPECT_TRUE(world.IsNew());
    EXPECT_TRUE(GetFileAttributesW(world.Archive().c_str()) & FILE_ATTRIBUTE_HIDDEN) << "as its owner set it";
}

} // namespace
} // namespace testing_prof

// As its own child process: packs or unpacks in a folder and dies at a step.
int wmain(int count, wchar_t** arguments) {
    using namespace testing_prof;
    if (count == 4) {
        const clsSteps watched(Fault::Die, _wtoi(arguments[2]));
        return cases[_wtoi(arguments[1])].work(arguments[3], nullptr) == UTIL_OK ? 0 : 1;
    }
    ::testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
