// Archives written and read again, record by record and whole.
#include "unit/zip_support.h"
#include "zip/zip_extra.h"

#include <gtest/gtest.h>

#include <random>

using namespace tvut;

namespace {

std::string Text(std::size_t size) {
    std::string text;
    for (unsigned n = 0; text.size() < size; ++n)
        text += "line " + std::to_string(n * 2654435761u % 1000) + "\n";
    return text.substr(0, size);
}

std::string Noise(std::size_t size) {
    std::mt19937 random(static_cast<unsigned>(size));
    std::string noise(size, '\0');
    for (char& byte : noise)
        byte = static_cast<char>(random());
    return noise;
}

// Sizes around every bound on the way: the window, the block, the bytes below which nothing is deflated.
std::vector<scContents> ManySizes() {
    std::vector<scContents> entries{{u"folder/", ""}};
    for (const std::size_t size : {0u, 1u, 31u, 32u, 100u, 65535u, 65536u, 65537u, 131072u, 200000u, 3000000u}) {
        const std::string number = std::to_string(size);
        entries.push_back({u"folder/text " + std::u16string(number.begin(), number.end()), Text(size)});
        entries.push_back({u"\u65E5\u672C\U0001F600 noise " + std::u16string(number.begin(), number.end()), Noise(size)});
    }
    return entries;
}

std::u16string PathOf(std::u16string name) {
    std::ranges::replace(name, u'/', u'\\');
    return name;
}

void ExpectUnpacked(const std::vector<scContents>& entries, const clsMemoryTarget& target) {
    std::size_t files = 0;
    for (const scContents& contents : entries) {
        if (contents.name.ends_with(u'/'))
            continue;
        ++files;
        const auto found = target.files.find(PathOf(contents.name));
        ASSERT_NE(found, target.files.end()) << testing::PrintToString(contents.name);
        EXPECT_TRUE(found->second.bytes == contents.bytes) << testing::PrintToString(contents.name);
    }
    EXPECT_EQ(target.files.size(), files);
    EXPECT_EQ(target.unfinished, 0);
}

TEST(ZipRoundTrip, GivesBackWhatWasPacked) {
    const std::vector<scContents> entries = ManySizes();
    for (const std::string_view password : {"", "secret"}) {
        for (const ZipCompression compression : {ZipCompression::deflate, ZipCompression::store}) {
            clsMemoryTarget target;
            const std::u16string given(password.begin(), password.end());
            EXPECT_EQ(Extract(Archive(entries, password, compression), &target, nullptr, given), UtilResult::ok);
            ExpectUnpacked(entries, target);
            EXPECT_TRUE(target.folders.contains(u"folder"));
            EXPECT_EQ(target.files[u"folder\\text 1"].marks.modified, 0x01D9000000000000u);
        }
    }
}

TEST(ZipRoundTrip, OfNothingIsAnEndRecordAndAFolder) {
    const std::string archive = Archive({});
    EXPECT_EQ(archive.size(), 22u);
    clsMemoryTarget target;
    EXPECT_EQ(Extract(archive, &target), UtilResult::ok);
    EXPECT_TRUE(target.isMade);
}

// 65,535 is the first count that does not fit.
TEST(ZipRoundTrip, OfManyEntries) {
    for (const std::uint32_t count : {65534u, 65535u, 65536u}) {
        clsMemoryArchive archive;
        clsZIPWriter writer(archive, ZipCompression::deflate, {});
        for (std::uint32_t n = 0; n < count; ++n) {
            const std::string number = std::to_string(n);
            Add(writer, {std::u16string(number.begin(), number.end()), ""});
        }
        writer.Finish();
        EXPECT_EQ(archive.bytes.find("PK\6\6") != std::string::npos, count > 65534) << count;
        clsCaller caller;
        caller.answer = [](const scShownZipEntry&) { return ZipAnswer::skip; };
        EXPECT_EQ(Extract(archive.bytes, nullptr, &caller), UtilResult::ok);
        ASSERT_EQ(caller.seen.size(), count);
        EXPECT_EQ(caller.seen.back().entry.count, count);
        EXPECT_EQ(caller.seen.back().entry.index, count - 1);
    }
}

TEST(ZipWriter, DeflatesWhatShrinksAndStoresTheRest) {
    EXPECT_LT(Archive({{u"a", Text(100000)}}).size(), 40000u);
    const std::size_t around = Archive({{u"a", ""}}).size();
    EXPECT_EQ(Archive({{u"a", Noise(100000)}}).size(), around + 100000);
    EXPECT_EQ(Archive({{u"a", std::string(31, 'a')}}).size(), around + 31) << "too short to gain anything";
    EXPECT_LT(Archive({{u"a", std::string(32, 'a')}}).size(), around + 32);
    // What comes after the first 64 KB does not change it.
    EXPECT_EQ(Archive({{u"a", Noise(65536) + std::string(65536, 'a')}}).size(), around + 131072);
}

TEST(ZipWriter, KnowsNamesWithoutRegardToCaseAndWhatLiesInTheirWay) {
    clsMemoryArchive archive;
    clsZIPWriter writer(archive, ZipCompression::deflate, {});
    Add(writer, {u"Docs/", ""});
    Add(writer, {u"docs/sub/Read.me", "x"});
    const struct {
        const char16_t* name;
        bool isFolder, isTaken;
    } rows[] = {
        {u"docs", true, true},          {u"DOCS", false, true},          {u"docs/SUB", true, false},
        {u"docs/sub", false, true},     {u"docs/sub/read.ME", false, true}, {u"docs/sub/read", false, false},
        {u"docs/sub/read.me/x", false, true}, {u"doc", false, false},    {u"docs/subs", false, false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(writer.IsTaken(row.name, row.isFolder), row.isTaken) << testing::PrintToString(row.name);
}

class clsFailingSource final : public clsByteSource {
  public:
    explicit clsFailingSource(std::size_t good) : good_(good) {}
    std::uint64_t SizeHint() override { return 0; }
    std::size_t Read(void* buffer, std::size_t bytes) override {
        if (good_ == 0)
            throw clsException("gone", 59);
        const std::size_t count = std::min(good_, bytes);
        std::memset(buffer, 'x', count);
        good_ -= count;
        return count;
    }

  private:
    std::size_t good_;
};

class clsCancelling final : public IclsZipProgress {
  public:
    explicit clsCancelling(int at) : left_(at) {}
    void Tell(std::uint64_t, std::uint64_t, bool) override {
        if (--left_ == 0)
            throw clsZIPError(ZipFault::cancelled);
    }

  private:
    int left_;
};

TEST(ZipWriter, TakesAFailedEntryBack) {
    const std::vector<scContents> good{{u"one", Text(70000)}, {u"two", Noise(3000)}};
    const std::string wanted = Archive(good);
    const auto with = [&](const std::function<void(clsZIPWriter&)>& fail) {
        clsMemoryArchive archive;
        clsZIPWriter writer(archive, ZipCompression::deflate, {});
        Add(writer, good[0]);
        EXPECT_THROW(fail(writer), clsZIPError);
        EXPECT_FALSE(writer.IsTaken(u"bad", false));
        Add(writer, good[1]);
        writer.Finish();
        return archive.bytes;
    };
    for (const std::size_t goodBytes : {0u, 1u, 65536u, 500000u}) {
        EXPECT_TRUE(with([&](clsZIPWriter& writer) {
                        clsFailingSource source(goodBytes);
                        clsNoProgress progress;
                        writer.AddFile({u"bad"}, source, progress);
                    }) == wanted)
            << goodBytes;
    }
    for (const int call : {1, 2, 3, 4}) {
        EXPECT_TRUE(with([&](clsZIPWriter& writer) {
                        const std::string bytes = Noise(3 * progressBytes + 1);
                        clsMemorySource source(bytes);
                        clsCancelling progress(call);
                        writer.AddFile({u"bad"}, source, progress);
                    }) == wanted)
            << call;
    }
}

TEST(ZipWriter, TakesSeveralEntriesBack) {
    clsMemoryArchive archive;
    clsZIPWriter writer(archive, ZipCompression::deflate, {});
    Add(writer, {u"kept", "1"});
    const clsZIPWriter::scMark mark = writer.Mark();
    for (const char16_t* name : {u"folder/", u"folder/a", u"folder/b"})
        Add(writer, {name, Noise(100000)});
    writer.TakeBack(mark);
    EXPECT_FALSE(writer.IsTaken(u"folder", false));
    EXPECT_TRUE(writer.IsTaken(u"KEPT", false));
    Add(writer, {u"folder", "2"});
    writer.Finish();
    EXPECT_TRUE(archive.bytes == Archive({{u"kept", "1"}, {u"folder", "2"}}));
}

TEST(ZipWriter, FailsForGoodWhenItsTargetDoes) {
    const std::vector<scContents> entries{{u"one", Noise(200000)}, {u"two", Text(300000)}, {u"three", "x"}};
    int steps = 0;
    {
        clsMemoryArchive archive;
        clsZIPWriter writer(archive, ZipCompression::deflate, {});
        for (const scContents& contents : entries)
            Add(writer, contents);
        writer.Finish();
        steps = archive.steps;
    }
    EXPECT_GT(steps, 5);
    for (int step = 1; step <= steps; ++step) {
        clsMemoryArchive archive;
        archive.failAt = step;
        clsZIPWriter writer(archive, ZipCompression::deflate, {});
        int failures = 0;
        for (const scContents& contents : entries) {
            try {
                Add(writer, contents);
                EXPECT_EQ(failures, 0);
            } catch (const clsZIPError& error) {
                EXPECT_EQ(error.Fault(), ZipFault::unwritable);
                ++failures;
            }
        }
        EXPECT_THROW(writer.Finish(), clsZIPError) << step;
        EXPECT_TRUE(writer.HasFailed());
    }
}

// ---- Records ------------------------------------------------------------------------------------

TEST(ZipRecords, StandInTheirDocumentedOrder) {
    EXPECT_EQ(BytesOf(scEndRecord{1, 2, 3, 4, 5, 6, 7}),
              std::string("PK\5\6\1\0\2\0\3\0\4\0\5\0\0\0\6\0\0\0\7\0", 22));
    EXPECT_EQ(BytesOf(scLocalHeader{20, 0x0800, 8, 0x12345678, 0xAABBCCDD, 2, 3, 4, 5}),
              std::string("PK\3\4\x14\0\0\x08\x08\0\x78\x56\x34\x12\xDD\xCC\xBB\xAA\2\0\0\0\3\0\0\0\4\0\5\0", 30));
    scCentralHeader header{};
    EXPECT_FALSE(UtilpReadRecord(std::string_view("PK\1\2"), header));
    EXPECT_FALSE(UtilpReadRecord(std::string(46, 'P'), header));
}

TEST(ZipRecords, HaveLargeNumbersOnlyWhereTheyDoNotFit) {
    constexpr std::uint64_t large = 0x123456789A;
    const struct {
        scLargeNumbers numbers;
        std::size_t bytes;
    } rows[] = {
        {{1, 2, 3, 0}, 0},          {{large, 2, 3, 0}, 12},        {{1, large, 3, 0}, 12},
        {{1, 2, 0xFFFFFFFF, 0}, 12}, {{large, large, 3, 0}, 20}, {{large, large, large, 0}, 28},
    };
    for (const auto& [numbers, bytes] : rows) {
        std::string field(64, '\0');
        field.resize(static_cast<std::size_t>(UtilpWriteLargeNumbers(field.data(), numbers) - field.data()));
        EXPECT_EQ(field.size(), bytes);
        const auto shown = [](std::uint64_t number) { return std::uint64_t{UtilpShown(number)}; };
        scLargeNumbers read{shown(numbers.bytes), shown(numbers.packed), shown(numbers.position), 0};
        EXPECT_TRUE(clsEntryExtras(field).TakeLargeNumbers(read));
        EXPECT_EQ(read.bytes, numbers.bytes);
        EXPECT_EQ(read.packed, numbers.packed);
        EXPECT_EQ(read.position, numbers.position);
        for (std::size_t cut = 0; cut < field.size(); ++cut) {
            read = {elsewhere32, elsewhere32, elsewhere32, 0};
            EXPECT_FALSE(clsEntryExtras(std::string_view(field).substr(0, cut)).TakeLargeNumbers(read));
        }
    }
}

TEST(ZipTimes, ComeBackToTheirOwnPrecision) {
    constexpr std::uint64_t second = 10'000'000;
    const std::uint64_t noon = UtilpFromUnixTime(1'700'000'000);
    EXPECT_EQ(noon, 133'444'736'000'000'000u);
    EXPECT_EQ(UtilpUnixTime(noon + second - 1), 1'700'000'000u);
    EXPECT_EQ(UtilpFromDosTime(UtilpDosTime(noon)), noon);
    EXPECT_EQ(UtilpFromDosTime(UtilpDosTime(noon + second)), noon) << "even seconds, downwards";
    EXPECT_EQ(UtilpDosTime(0), 0x00210000u);
    EXPECT_EQ(UtilpDosTime(UINT64_MAX), 0xFF9FBF7Du);
    for (const std::uint32_t none : {0u, 0x00200000u, 0x01A00000u, 0x005E0000u, 0x0021C000u, 0x00210780u, 0x0021001Eu})
        EXPECT_EQ(UtilpFromDosTime(none), std::nullopt) << std::hex << none;
    EXPECT_FALSE(UtilpHasUnixTime(0));
    EXPECT_TRUE(UtilpHasUnixTime(UtilpFromUnixTime(0)));
    EXPECT_TRUE(UtilpHasUnixTime(UtilpFromUnixTime(0x7FFFFFFF)));
    EXPECT_FALSE(UtilpHasUnixTime(UtilpFromUnixTime(0x7FFFFFFF) + second));
}

} // namespace
