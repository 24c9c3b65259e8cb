// The calls of the ZIP family: what they refuse, what they pack and unpack, and what they say of it.
#include "support/fake_clock.h"
#include "support/log.h"
#include "support/piece_stream.h"
#include "support/zip.h"

#include <gtest/gtest.h>

namespace testing_prof {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;
using Names = std::vector<std::wstring>;

// Runs first, before anything has asked for a cipher.
TEST(ZipLibrary, IsLoadedForCiphersAlone) {
    const clsTempFolder folder;
    const std::wstring archive = folder / L"a.zip";
    WriteBytes(folder / L"one", "1");
    EXPECT_FALSE(GetModuleHandleW(L"bcrypt.dll"));
    EXPECT_EQ(packed(archive, folder / L"one"), UTIL_OK);
    EXPECT_EQ(UtilExtractZip(archive.c_str(), nullptr, nullptr), UTIL_OK);
    EXPECT_FALSE(GetModuleHandleW(L"bcrypt.dll"));
    const ZipOptions secret(L"secret");
    EXPECT_EQ(packed(archive, folder / L"one", &secret.options), UTIL_OK);
    EXPECT_TRUE(GetModuleHandleW(L"bcrypt.dll"));
}

// A folder with an archive that is being made in it, and a few sources.
class Zip : public ::testing::Test {
  protected:
    void SetUp() override {
        fs::create_directories(source);
        WriteBytes(folder / L"one.txt", "1");
        WriteBytes(folder / L"two.txt", "22");
    }
    UtilZip create(const UtilZipOptions* options = nullptr) {
        const UtilZip zip = UtilZIPCreate(archive.c_str(), options);
        EXPECT_TRUE(zip);
        return zip;
    }
    INT append(UtilZip zip, const wchar_t* name, const wchar_t* as = nullptr) {
        return UtilZIPAppend(zip, (folder / name).c_str(), as);
    }
    // A line about a source in the folder.
    std::string line(const char* file, const std::string& words) const {
        return appended + (folder.Path() / file).string() + "'): " + words;
    }
    INT extract(const std::wstring& to, const UtilZipOptions* options = nullptr) const {
        return UtilExtractZip(archive.c_str(), to.c_str(), options);
    }

    const clsTempFolder folder;
    const std::wstring archive = folder / L"a.zip", source = folder / L"source", target = folder / L"out";
    const std::string shown = fs::path(archive).string(),
                      appended = "ERR: clsZIPFile('" + shown + "')::Append('";
};

// ---- Arguments -----------------------------------------------------------------------------------------

TEST_F(Zip, RefusesOptionsItDoesNotKnow) {
    ASSERT_EQ(packed(archive, folder / L"one.txt"), UTIL_OK);
    const UtilZipOptions good = ZipOptions().options;
    const struct {
        UINT size, flags, reserved;
        bool creates, extracts;
    } rows[] = {{4096, 0, 0, true, true},
                {31, 0, 0, false, false},
                {32, 0, 1, false, false},
                {32, UTIL_ZIP_STORE, 0, true, false},
                {32, UTIL_ZIP_KEEP_EXISTING, 0, false, true},
                {32, 0x80000000, 0, false, false}};
    for (const auto& row : rows) {
        UtilZipOptions options = good;
        options.size = row.size;
        options.flags = row.flags;
        options.reserved = row.reserved;
        options.callback = nullptr;
        SetLastError(ERROR_SUCCESS);
        const UtilZip zip = UtilZIPCreate((folder / L"b.zip").c_str(), &options);
        EXPECT_EQ(zip != nullptr, row.creates) << row.size << ' ' << row.flags;
        EXPECT_EQ(GetLastError(), row.creates ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER);
        EXPECT_EQ(UtilZIPClose(zip, FALSE), UTIL_OK);
        EXPECT_EQ(UtilExtractZip(archive.c_str(), nullptr, &options),
                  row.extracts ? UTIL_OK : UTIL_BAD_ARGUMENT);
    }
}

TEST_F(Zip, RefusesWhatIsNoFileAndNoArchive) {
    for (const wchar_t* none : {static_cast<const wchar_t*>(nullptr), L""}) {
        EXPECT_FALSE(UtilZIPCreate(none, nullptr));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
        EXPECT_EQ(UtilExtractZip(none, nullptr, nullptr), UTIL_BAD_ARGUMENT);
    }
    EXPECT_EQ(UtilExtractZip(archive.c_str(), L"", nullptr), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilExtractZip(archive.c_str(), nullptr, nullptr), UTIL_NOT_FOUND);
    EXPECT_FALSE(UtilZIPCreate((folder / L"none\\a.zip").c_str(), nullptr));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PATH_NOT_FOUND});
    EXPECT_FALSE(UtilZIPCreate(source.c_str(), nullptr));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ACCESS_DENIED});
    for (const wchar_t* name : {L"what?.zip", L"a|b.zip", L"nul.zip"}) {
        EXPECT_FALSE(UtilZIPCreate((folder / name).c_str(), nullptr)) << name;
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_NAME});
    }
    EXPECT_EQ(UtilExtractZip(source.c_str(), target.c_str(), nullptr), UTIL_NO_ACCESS);

    clsPieceStream stream("x");
    const auto all = [&](UtilZip zip) {
        const wchar_t* const list[] = {L"x"};
        return std::vector<INT>{UtilZIPAppend(zip, L"x", nullptr), UtilZIPAppendList(zip, list, 1, nullptr),
                                UtilZIPAppendStream(zip, &stream, L"x", nullptr), UtilZIPClose(zip, TRUE)};
    };
    const UtilZip zip = create();
    EXPECT_EQ(UtilZIPClose(zip, FALSE), UTIL_OK);
    int number = 0;
    for (const UtilZip wrong : {zip, reinterpret_cast<UtilZip>(&number), reinterpret_cast<UtilZip>(~0u)})
        EXPECT_EQ(all(wrong), std::vector<INT>(4, UTIL_BAD_ARGUMENT));
    EXPECT_EQ(UtilZIPAppend(nullptr, L"x", nullptr), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilZIPClose(nullptr, TRUE), UTIL_OK);
}

TEST_F(Zip, RefusesEntriesThatCannotBeAndSaysWhy) {
    const UtilZip zip = create();
    const clsLog log;
    EXPECT_EQ(append(zip, L"one.txt"), UTIL_OK);
    SetLastError(42);
    EXPECT_EQ(append(zip, L"ONE.txt"), UTIL_EXISTS);
    EXPECT_EQ(append(zip, L"one.txt", L"one.txt/below"), UTIL_EXISTS);
    EXPECT_EQ(append(zip, L"two.txt", L"a/../b"), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(append(zip, L"two.txt", L"aux.c"), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(append(zip, L"none.txt"), UTIL_NOT_FOUND);
    EXPECT_EQ(append(zip, L"one.txt", L""), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilZIPAppend(zip, nullptr, nullptr), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilZIPAppendStream(zip, nullptr, L"x", nullptr), UTIL_BAD_ARGUMENT);
    clsPieceStream stream("x");
    EXPECT_EQ(UtilZIPAppendStream(zip, &stream, nullptr, nullptr), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilZIPAppendList(zip, nullptr, 1, nullptr), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilZIPAppendList(zip, nullptr, 0, L"x/.."), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(GetLastError(), 42u) << "the caller's";
    {
        const Handle held = OpenExisting(folder / L"two.txt", GENERIC_READ | GENERIC_WRITE, 0);
        const clsFakeClock clock;
        EXPECT_EQ(append(zip, L"two.txt"), UTIL_NO_ACCESS);
        EXPECT_EQ(clsFakeClock::now, 10000u);
    }
    EXPECT_EQ(UtilZIPClose(zip, TRUE), UTIL_OK);
    EXPECT_EQ(entriesOf(archive), Names{L"one.txt"});
    EXPECT_EQ(log.Lines(),
              (Lines{line("ONE.txt", "name is there already"), line("one.txt", "name is there already"),
                     line("two.txt", "name is not possible"), line("two.txt", "name is not possible"),
                     line("none.txt", "not found"), appended + "x/..'): name is not possible",
                     line("two.txt", "cannot be read (32)")}));
}

// ---- Packing and unpacking -----------------------------------------------------------------------------

Tree Sources() {
    return {{L"empty\\", {}},
            {L"empty.txt", {}},
            {L"\u00DCber \u65E5\u672C\\\U0001F600.txt", "smile"},
            {L"text.txt", Bytes(300000, 't')},
            {L"noise", Noise(300000)},
            {L"deep\\er\\still\\.profile", "p"}};
}

TEST_F(Zip, GivesFoldersBackAsTheyWere) {
    makeTree(source, Sources());
    SetAge(source + L"\\text.txt", 100000);
    SetFileAttributesW((source + L"\\noise").c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
    for (const wchar_t* const password : {static_cast<const wchar_t*>(nullptr), L"p\u00E4sswort"}) {
        ZipOptions making(password), unpacking(password);
        ASSERT_EQ(packed(archive, source, &making.options), UTIL_OK);
        ASSERT_EQ(extract(target, &unpacking.options), UTIL_OK);
        EXPECT_EQ(treeOf(target + L"\\source"), treeOf(source));
        for (const wchar_t* const name : {L"text.txt", L"noise", L"empty.txt"}) {
            WIN32_FILE_ATTRIBUTE_DATA before, after;
            GetFileAttributesExW((source + L"\\" + name).c_str(), GetFileExInfoStandard, &before);
            GetFileAttributesExW((target + L"\\source\\" + name).c_str(), GetFileExInfoStandard, &after);
            EXPECT_EQ(CompareFileTime(&before.ftLastWriteTime, &after.ftLastWriteTime), 0) << name;
            constexpr DWORD kept = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN;
            EXPECT_EQ(before.dwFileAttributes & kept, after.dwFileAttributes & kept) << name;
        }
        const UtilZipEntry& last = making.seen.back().entry;
        EXPECT_EQ(last.size, 56u);
        EXPECT_EQ(last.count, 0u) << "nobody knows yet";
        EXPECT_EQ(last.done, last.bytes);
        const ShownEntry& question = unpacking.seen.front();
        EXPECT_EQ(question.target, target + L"\\source");
        EXPECT_TRUE(question.is(UTIL_ZIP_IS_QUESTION) && question.is(UTIL_ZIP_IS_FOLDER));
        EXPECT_EQ(question.entry.count, 11u);
        EXPECT_EQ(unpacking.seen.back().is(UTIL_ZIP_IS_ENCRYPTED), password != nullptr);
        SetFileAttributesW((target + L"\\source\\noise").c_str(), FILE_ATTRIBUTE_NORMAL);
    }
    ZipOptions wrong(L"wrong");
    EXPECT_EQ(extract(folder / L"none", &wrong.options), UTIL_BAD_PASSWORD);
    EXPECT_EQ(UtilExtractZip(archive.c_str(), nullptr, nullptr), UTIL_BAD_PASSWORD);
    for (const auto& [name, bytes] : treeOf(folder / L"none"))
        EXPECT_TRUE(name.ends_with(L'\\') || bytes.empty()) << name;
}

TEST_F(Zip, TakesPathsOfAnyLength) {
    std::wstring path;
    for (const wchar_t letter : {L'a', L'b', L'c'}) {
        path += L'\\' + std::wstring(120, letter);
        ASSERT_TRUE(CreateDirectoryW((L"\\\\?\\" + source + path).c_str(), nullptr));
    }
    ASSERT_EQ(packed(archive, source, nullptr, L"s"), UTIL_OK);
    ASSERT_EQ(extract(target), UTIL_OK);
    EXPECT_TRUE(GetFileAttributesW((L"\\\\?\\" + target + L"\\s" + path).c_str()) & FILE_ATTRIBUTE_DIRECTORY);
}

TEST_F(Zip, NumbersWhatIsTakenInLists) {
    WriteBytes(source + L"\\one.txt", "other");
    WriteBytes(source + L"\\b.dat", "b");
    WriteBytes(source + L"\\A.dat", "a");
    const UtilZip zip = create();
    const clsLog log;
    const std::wstring paths[] = {folder / L"one.txt", source + L"\\one.txt", folder / L"none",
                                  source + L"\\*.dat", source + L"\\*.none",  source,
                                  source + L"\\"};
    const wchar_t* list[std::size(paths)];
    std::ranges::transform(paths, list, &std::wstring::c_str);
    EXPECT_EQ(UtilZIPAppendList(zip, list, std::size(paths), L"in\\here"), UTIL_NOT_FOUND);
    EXPECT_EQ(log.Lines(), (Lines{line("none", "not found"), line("source\\*.none", "not found")}));
    EXPECT_EQ(UtilZIPAppendList(zip, nullptr, 0, nullptr), UTIL_OK);
    EXPECT_EQ(UtilZIPClose(zip, TRUE), UTIL_OK);
    std::wstring all;
    for (const std::wstring& name : entriesOf(archive))
        all += name.substr(8) + L' '; // after "in/here/"
    EXPECT_EQ(all, L"one.txt one (2).txt A.dat b.dat source/ source/A.dat source/b.dat source/one.txt "
                   L"source (2)/ source (2)/A.dat source (2)/b.dat source (2)/one.txt ");
}

TEST_F(Zip, TakesStreamsOfAllKinds) {
    const Bytes contents = Noise(5000) + Bytes(200000, 's');
    const FILETIME time{0, 0x01D90000};
    const UtilZip zip = create();
    clsPieceStream pieces(contents, 999), standing(contents), failing(contents);
    pieces.position = 50;
    standing.position = 50;
    standing.refuseSeek = true;
    failing.failAt = 150000;
    EXPECT_EQ(UtilZIPAppendStream(zip, &pieces, L"d\\pieces", &time), UTIL_OK);
    EXPECT_EQ(UtilZIPAppendStream(zip, &standing, L"standing", nullptr), UTIL_OK);
    const clsLog log;
    EXPECT_EQ(UtilZIPAppendStream(zip, &failing, L"failing", nullptr), UTIL_FAILED);
    EXPECT_EQ(log.Lines(), Lines{appended + "failing'): cannot be read (30)"});
    EXPECT_EQ(UtilZIPClose(zip, TRUE), UTIL_OK);
    ZipOptions options;
    EXPECT_EQ(extract(target, &options.options), UTIL_OK);
    EXPECT_EQ(treeOf(target),
              (Tree{{L"d\\", {}}, {L"d\\pieces", contents}, {L"standing", contents.substr(50)}}));
    EXPECT_EQ(CompareFileTime(&options.seen[0].entry.modified, &time), 0);
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    EXPECT_EQ(options.seen[1].entry.modified.dwHighDateTime, now.dwHighDateTime) << "within minutes";
}

TEST_F(Zip, LeavesItselfAndLinksOut) {
    WriteBytes(archive, "the archive of before");
    const UtilZip zip = create();
    const clsLog log;
    EXPECT_EQ(UtilZIPAppend(zip, folder.Path().c_str(), L"all"), UTIL_OK);
    EXPECT_EQ(UtilZIPClose(zip, TRUE), UTIL_OK);
    EXPECT_EQ(entriesOf(archive), (Names{L"all/", L"all/one.txt", L"all/source/", L"all/two.txt"}));
    EXPECT_EQ(log.Lines().size(), 2u) << "of the archive and of its temporary file";
}

TEST_F(Zip, AsksBeforeEachEntryThatIsAdded) {
    makeTree(source, {{L"a\\x", "x"}, {L"b\\y", "y"}, {L"c", Bytes(2500000, 'c')}});
    ZipOptions options([](const UtilZipEntry& entry) {
        return std::wstring_view(entry.name).ends_with(L"/a/") ? UTIL_ZIP_SKIP : UTIL_ZIP_GO;
    });
    ASSERT_EQ(packed(archive, source, &options.options), UTIL_OK);
    EXPECT_EQ(entriesOf(archive), (Names{L"source/", L"source/b/", L"source/b/y", L"source/c"}))
        << "nor is asked for what is in a folder that is not wanted";
    std::vector<ULONGLONG> told;
    for (const ShownEntry& seen : options.seen)
        if (seen.name == L"source/c" && !seen.is(UTIL_ZIP_IS_QUESTION))
            told.push_back(seen.entry.done);
    EXPECT_EQ(told, (std::vector<ULONGLONG>{1048576, 2097152, 2500000}));
}

// ---- Callbacks that do what they should not ---------------------------------------------------------------

TEST_F(Zip, IsNotUsedTwiceAtOnce) {
    UtilZip zip = nullptr;
    std::vector<INT> results;
    ZipOptions options([&](const UtilZipEntry&) {
        if (results.empty())
            results = {append(zip, L"two.txt"), UtilZIPClose(zip, TRUE), append(zip, L"two.txt")};
        return UTIL_ZIP_GO;
    });
    zip = create(&options.options);
    EXPECT_EQ(append(zip, L"one.txt"), UTIL_OK);
    EXPECT_EQ(results, (std::vector<INT>{UTIL_BAD_ARGUMENT, UTIL_FAILED, UTIL_BAD_ARGUMENT}))
        << "and once it was closed, it is no handle any more";
    EXPECT_EQ(UtilZIPClose(zip, TRUE), UTIL_BAD_ARGUMENT);
    EXPECT_FALSE(fs::exists(archive));
    EXPECT_EQ(folder.Count(), 3) << "no temporary file stays";
}

TEST_F(Zip, MayBeUnpackedByACallback) {
    ASSERT_EQ(packed(archive, folder / L"one.txt"), UTIL_OK);
    INT inner = UTIL_FAILED;
    ZipOptions options([&](const UtilZipEntry&) {
        inner = extract(target);
        return UTIL_ZIP_GO;
    });
    EXPECT_EQ(extract(target, &options.options), UTIL_OK);
    EXPECT_EQ(inner, UTIL_OK);
    EXPECT_EQ(treeOf(target), (Tree{{L"one.txt", "1"}}));
}

// ---- Targets -------------------------------------------------------------------------------------------

TEST_F(Zip, ReplacesOrKeepsWhatIsThere) {
    makeTree(source, {{L"a", "new"}, {L"b", "new"}, {L"c", "new"}, {L"d", "new"}});
    ASSERT_EQ(packed(archive, source, nullptr, L"x"), UTIL_OK);
    const std::wstring into = target + L"\\x";
    makeTree(into, {{L"a", "old"}, {L"b", "old"}, {L"c\\", {}}});
    SetFileAttributesW((into + L"\\b").c_str(), FILE_ATTRIBUTE_READONLY);
    const ZipOptions keeping(nullptr, UTIL_ZIP_KEEP_EXISTING);
    EXPECT_EQ(extract(target, &keeping.options), UTIL_OK);
    EXPECT_EQ(treeOf(into), (Tree{{L"a", "old"}, {L"b", "old"}, {L"c\\", {}}, {L"d", "new"}}));
    const clsLog log;
    EXPECT_EQ(extract(target), UTIL_NO_ACCESS);
    EXPECT_EQ(treeOf(into), (Tree{{L"a", "new"}, {L"b", "old"}, {L"c\\", {}}, {L"d", "new"}}));
    const std::string start = "ERR: UtilExtractZip('" + shown + "')['x/";
    EXPECT_EQ(log.Lines(),
              (Lines{start + "b']: cannot be written (5)", start + "c']: cannot be written (5)"}));
    const Handle held = OpenExisting(into + L"\\a", GENERIC_READ, FILE_SHARE_READ);
    const clsFakeClock clock;
    ZipOptions one([](const UtilZipEntry& entry) {
        return std::wstring_view(entry.name) == L"x/a" ? UTIL_ZIP_GO : UTIL_ZIP_SKIP;
    });
    EXPECT_EQ(extract(target, &one.options), UTIL_NO_ACCESS);
    EXPECT_EQ(clsFakeClock::now, 10000u);
}

TEST_F(Zip, HoldsToTheLimit) {
    ASSERT_EQ(packed(archive, folder / L"two.txt"), UTIL_OK);
    ZipOptions options;
    for (const UINT limit : {1u, 2u}) {
        options.options.limit = limit;
        EXPECT_EQ(extract(target + L"\\with\\parents", &options.options),
                  limit == 1 ? UTIL_TOO_LARGE : UTIL_OK);
        EXPECT_EQ(fs::exists(target), limit == 2);
    }
}

// The build made a folder with a link of the host's.
TEST_F(Zip, IsNotUnpackedThroughALinkButIntoOne) {
    const wchar_t* const links = _wgetenv(L"TVUT22_ZIP_LINKS");
    ASSERT_TRUE(links);
    const fs::path world = links;
    ASSERT_TRUE(GetFileAttributesW((world / L"into" / L"link").c_str()) & FILE_ATTRIBUTE_REPARSE_POINT);
    makeTree(source, {{L"link\\evil", "x"}, {L"link\\deep\\evil", "x"}, {L"plain\\good", "x"}});
    const UtilZip zip = create();
    for (const wchar_t* const name : {L"link", L"plain"})
        EXPECT_EQ(UtilZIPAppend(zip, (source + L"\\" + name).c_str(), nullptr), UTIL_OK);
    ASSERT_EQ(UtilZIPClose(zip, TRUE), UTIL_OK);
    const clsLog log;
    EXPECT_EQ(extract(world / L"into"), UTIL_UNSAFE);
    EXPECT_EQ(log.Lines().size(), 4u) << "each entry on the way through it";
    EXPECT_TRUE(log.Lines()[0].ends_with("['link/']: folder is a link")) << log.Lines()[0];
    EXPECT_EQ(treeOf(world / L"outside"), (Tree{{L"keep", {}}}));
    EXPECT_TRUE(fs::exists(world / L"into" / L"plain" / L"good"));
    ASSERT_EQ(packed(archive, source + L"\\plain\\good"), UTIL_OK);
    EXPECT_EQ(extract(world / L"into" / L"link"), UTIL_OK) << "the target itself may be one";
    EXPECT_TRUE(fs::remove(world / L"outside" / L"good"));
    EXPECT_EQ(packed(archive, world / L"into"), UTIL_OK);
    EXPECT_EQ(entriesOf(archive), (Names{L"into/", L"into/plain/", L"into/plain/good"}))
        << "links are passed over";
}

} // namespace
} // namespace testing_prof
