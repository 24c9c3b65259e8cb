// The archive for a support desk: what is in it, what is missing, and that reports are taken only with a
// whole one.
#include "support/zip.h"

#include <gtest/gtest.h>
#include <tvut22/tvut22.hpp>

#include <algorithm>

namespace testing_prof {
namespace {

namespace fs = std::filesystem;

const std::wstring host = L"support_archive_test";
const std::wstring newer = host + L"-20261122-101500-7", older = host + L"-20261121-221005-1234-2";

class SupportArchive : public testing::Test {
  protected:
    SupportArchive() {
        makeTree(folder.Path(), {{L"a\\same.ini", "first"},
                                 {L"b\\Same.ini", "second"},
                                 {L"c\\d\\e.txt", "below"},
                                 {L"log\\lines.log", "a line"},
                                 {L"reports\\" + newer + L".txt", "newer"},
                                 {L"reports\\" + newer + L".dmp", "its dump"},
                                 {L"reports\\" + older + L".txt", "older"},
                                 {L"reports\\other-20261121-221005-1.txt", "of another program"}});
        SetEnvironmentVariableW(L"TVUT22_LOG", (folder / L"log\\lines.log").c_str());
    }
    ~SupportArchive() override {
        while (UtilExHandlerEndProtection() == UTIL_OK)
            ;
        SetEnvironmentVariableW(L"TVUT22_LOG", nullptr);
    }

    void Protect() const {
        UtilProtection options{};
        const std::wstring reports = folder / L"reports";
        options.size = sizeof options;
        options.folder = reports.c_str();
        options.product = L"Invoice Designer";
        options.version = L"4.2.1";
        ASSERT_EQ(UtilExHandlerStartProtection(&options), 2);
    }

    INT Write(const std::wstring& archive, UINT flags = 0) const {
        std::vector<std::wstring> paths;
        std::vector<const wchar_t*> files;
        for (const wchar_t* const name :
             {L"a\\same.ini", L"b\\Same.ini", L"no\\file", L"c\\d\\", L"c\\none.txt"})
            paths.push_back(folder / name);
        for (const std::wstring& path : paths)
            files.push_back(path.c_str());
        return UtilDebugHelpWriteSupportArchive(archive.c_str(), files.data(),
                                                static_cast<UINT>(files.size()), flags);
    }

    Tree Reports() const { return treeOf(folder.Path() / L"reports"); }

    clsTempFolder folder;
};

// Bytes up to a line end, after what stands before it; "?" when that is nowhere.
Bytes ValueIn(const Bytes& text, const Bytes& before) {
    const std::size_t at = ("\r\n" + text).find("\r\n" + before);
    return at == Bytes::npos ? "?"
                             : text.substr(at + before.size(), text.find("\r\n", at) - at - before.size());
}

TEST_F(SupportArchive, HoldsWhatASupportDeskAsksFor) {
    Protect();
    const std::wstring archive = folder / L"support.zip";
    WriteBytes(archive, "the archive of before");
    ASSERT_EQ(Write(archive, UTIL_SUPPORT_TAKE), UTIL_OK);
    EXPECT_EQ(Reports(), (Tree{{L"other-20261121-221005-1.txt", "of another program"}}));
    const std::vector<std::wstring> names = entriesOf(archive);
    EXPECT_EQ(names, (std::vector<std::wstring>{L"system.txt", L"reports/" + newer + L".txt",
                                                L"reports/" + newer + L".dmp", L"reports/" + older + L".txt",
                                                L"log/lines.log", L"files/same.ini", L"files/Same-2.ini",
                                                L"files/d/", L"files/d/e.txt", L"missing.txt"}));
    ASSERT_EQ(UtilExtractZip(archive.c_str(), (folder / L"out").c_str(), nullptr), UTIL_OK);
    Tree out = treeOf(folder.Path() / L"out");
    EXPECT_EQ(out[L"files\\Same-2.ini"], "second");
    EXPECT_EQ(out[L"log\\lines.log"].substr(0, 6), "a line");
    EXPECT_EQ(out[L"reports\\" + newer + L".dmp"], "its dump");
    const auto path = [&](const wchar_t* name) { return fs::path(folder / name).string(); };
    EXPECT_EQ(out[L"missing.txt"],
              path(L"no\\file") + ": not found\r\n" + path(L"c\\none.txt") + ": not found\r\n");
    const Bytes& system = out[L"system.txt"];
    EXPECT_EQ(ValueIn(system, "Product: "), "Invoice Designer");
    EXPECT_EQ(ValueIn(system, "Version: "), "4.2.1");
    EXPECT_EQ(ValueIn(system, "Process: "), std::to_string(GetCurrentProcessId()));
    EXPECT_EQ(ValueIn(system, "Code page: "), std::to_string(GetACP()));
    for (const char* const line : {"Program: ", "Time: 20", "System: Windows ", "Language: ", "Memory: ",
                                   "Monitor: ", "Drive: C: ", "Modules:", "  10000000-"})
        EXPECT_NE(ValueIn(system, line), "?") << line << " in\n" << system;
    if (const wchar_t* const kept = _wgetenv(L"TVUT22_KEPT_ARCHIVE")) // for programs of others
        fs::copy_file(archive, kept, fs::copy_options::overwrite_existing);
}

TEST_F(SupportArchive, HasNoReportsWithoutProtection) {
    ASSERT_EQ(UtilDebugHelpWriteSupportArchive((folder / L"s.zip").c_str(), nullptr, 0, 0), UTIL_OK);
    EXPECT_EQ(entriesOf(folder / L"s.zip"), (std::vector<std::wstring>{L"system.txt", L"log/lines.log"}));
    EXPECT_EQ(UtilExtractZip((folder / L"s.zip").c_str(), (folder / L"out").c_str(), nullptr), UTIL_OK);
    EXPECT_EQ(ValueIn(treeOf(folder.Path() / L"out")[L"system.txt"], "Product: "), "support_archive_test");
}

TEST_F(SupportArchive, LeavesAllAsItWasWhenItCannotBeMade) {
    Protect();
    const Tree before = treeOf(folder.Path());
    const wchar_t* const null[] = {nullptr};
    const wchar_t* const empty[] = {L""};
    const std::wstring archive = folder / L"s.zip";
    EXPECT_EQ(UtilDebugHelpWriteSupportArchive(nullptr, nullptr, 0, 0), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilDebugHelpWriteSupportArchive(L"", nullptr, 0, 0), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilDebugHelpWriteSupportArchive(archive.c_str(), nullptr, 1, 0), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilDebugHelpWriteSupportArchive(archive.c_str(), null, 1, 0), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilDebugHelpWriteSupportArchive(archive.c_str(), empty, 1, 0), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilDebugHelpWriteSupportArchive(archive.c_str(), nullptr, 0, 2), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(Write(folder / L"no folder\\s.zip", UTIL_SUPPORT_TAKE), UTIL_NO_ACCESS);
    EXPECT_EQ(Write(folder / L"reports", UTIL_SUPPORT_TAKE), UTIL_NO_ACCESS);
    EXPECT_EQ(treeOf(folder.Path()), before);
}

// Each time with some more room, until the archive fits.
TEST_F(SupportArchive, IsWholeOrAbsentOnAFullDisk) {
    const wchar_t* const disk = _wgetenv(L"TVUT22_SMALL_DISK");
    ASSERT_TRUE(disk) << "run this test in the session of scripts/test";
    WriteBytes(folder / L"a\\same.ini", Bytes(300000, 'x')); // packs to next to nothing
    Protect();
    const clsTempFolder small{fs::path(disk)};
    const Tree before = Reports();
    INT result = UTIL_FAILED;
    for (std::size_t left = 0; result != UTIL_OK; left += 1024) {
        ASSERT_LT(left, 64u * 1024);
        const auto free = static_cast<std::size_t>(fs::space(small.Path()).available);
        WriteBytes(fs::path(disk) / L"padding", Bytes(free - std::min(free, left), 'p'));
        result = Write(small / L"s.zip", UTIL_SUPPORT_TAKE);
        fs::remove(fs::path(disk) / L"padding");
        EXPECT_EQ(small.Count(), result == UTIL_OK ? 1 : 0) << left;
        EXPECT_EQ(Reports() == before, result != UTIL_OK) << left;
    }
    EXPECT_EQ(entriesOf(small / L"s.zip").size(), 10u);
}

} // namespace
} // namespace testing_prof
