// Archives written and read again, record by record and whole.
#include "support/cases.h"
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
    for (const std::size_t size :
         {0u, 1u, 31u, 32u, 100u, 65535u, 65536u, 65537u, 131072u, 200000u, 3000000u}) {
        const std::u16string number = WideNumber(size);
        entries.push_back({u"folder/text " + number, Text(size)});
        entries.push_back({u"\u65E5\u672C\U0001F600 noise " + number, Noise(size)});
    }
    return entries;
}

TEST(ZipRoundTrip, GivesBackWhatWasPacked) {
    const std::vector<scContents> entries = ManySizes();
    for (const std::u16string_view password : {u"", u"secret"}) {
        for (const ZipCompression compression : {ZipCompression::deflate, ZipCompression::store}) {
            clsMemoryTarget target;
            EXPECT_EQ(
                Extract(Archive(entries, NarrowCase(password), compression), &target, nullptr, password),
                UtilResult::ok);
            EXPECT_EQ(target.files.size(), entries.size() - 1);
            for (auto [name, bytes] : entries) {
                std::ranges::replace(name, u'/', u'\\');
                EXPECT_TRUE(name == u"folder\\" || target.files[name].bytes == bytes)
                    << testing::PrintToString(name);
            }
            EXPECT_EQ(target.unfinished, 0);
            EXPECT_TRUE(target.folders.contains(u"folder"));
            EXPECT_EQ(target.files[u"folder\\text 1"].marks.modified, 0x01D9000000000000u);
        }
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
    // A folder's name ends with "/".
    for (const std::u16string_view taken :
         {u"docs/", u"DOCS", u"docs/sub", u"docs/sub/read.ME", u"docs/sub/read.me/x"})
        EXPECT_TRUE(writer.IsTaken(taken.substr(0, taken.find_last_not_of(u'/') + 1), taken.ends_with(u'/')))
            << testing::PrintToString(taken);
    EXPECT_FALSE(writer.IsTaken(u"docs/SUB", true));
    for (const std::u16string_view free : {u"docs/sub/read", u"doc", u"docs/subs"})
        EXPECT_FALSE(writer.IsTaken(free, false)) << testing::PrintToString(free);
}

// Fails after that many good bytes.
class clsFailingSource final : public clsByteSource {
  public:
    explicit clsFailingSource(std::size_t good) : bytes_(good, 'x'), source_(bytes_) {}
    std::uint64_t SizeHint() override { return 0; }
    std::size_t Read(void* buffer, std::size_t bytes) override {
        const std::size_t count = source_.Read(buffer, bytes);
        if (count == 0)
            throw clsException("gone", 59);
        return count;
    }

  private:
    std::string bytes_;
    clsMemorySource source_;
};

// Cancels at a call, unless it is 0.
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
    const auto expectTakenBack = [&](clsByteSource& source, int cancelAt) {
        clsMemoryArchive archive;
        clsZIPWriter writer(archive, ZipCompression::deflate, {});
        Add(writer, good[0]);
        clsCancelling progress(cancelAt);
        EXPECT_THROW(writer.AddFile({u"bad"}, source, progress), clsZIPError);
        EXPECT_FALSE(writer.IsTaken(u"bad", false));
        Add(writer, good[1]);
        writer.Finish();
        EXPECT_TRUE(archive.bytes == wanted) << cancelAt;
    };
    for (const std::size_t goodBytes : {0u, 1u, 65536u, 500000u}) {
        clsFailingSource source(goodBytes);
        expectTakenBack(source, 0);
    }
    const std::string bytes = Noise(3 * progressBytes + 1);
    for (const int call : {1, 2, 3, 4}) {
        clsMemorySource source(bytes);
        expectTakenBack(source, call);
    }
}

TEST(ZipWriter, FailsForGoodWhenItsTargetDoes) {
    const std::vector<scContents> entries{{u"one", Noise(200000)}, {u"two", Text(300000)}, {u"three", "x"}};
    int failures = 1;
    for (int step = 1; failures != 0; ++step) {
        clsMemoryArchive archive;
        archive.failAt = step;
        clsZIPWriter writer(archive, ZipCompression::deflate, {});
        failures = 0;
        const auto attempt = [&](const auto& what) {
            try {
                what();
                EXPECT_EQ(failures, 0) << step;
            } catch (const clsZIPError& error) {
                EXPECT_EQ(error.Fault(), ZipFault::unwritable);
                ++failures;
            }
        };
        for (const scContents& contents : entries)
            attempt([&] { Add(writer, contents); });
        attempt([&] { writer.Finish(); });
        EXPECT_EQ(writer.HasFailed(), failures != 0);
        EXPECT_TRUE(failures != 0 || step > 5) << "hardly ever failed";
    }
}

// ---- Records ------------------------------------------------------------------------------------

TEST(ZipRecords, HaveLargeNumbersOnlyWhereTheyDoNotFit) {
    constexpr std::uint64_t large = 0x123456789A;
    const struct {
        scLargeNumbers numbers;
        std::size_t bytes;
    } rows[] = {
        {{1, 2, 3, 0}, 0},           {{large, 2, 3, 0}, 12},     {{1, large, 3, 0}, 12},
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
    EXPECT_EQ(UtilpDosTime(0), 0x00210000u) << "the first it has";
    EXPECT_EQ(UtilpDosTime(UINT64_MAX), 0xFF9FBF7Du) << "the last it has";
    for (const std::uint32_t none :
         {0u, 0x00200000u, 0x01A00000u, 0x005E0000u, 0x0021C000u, 0x00210780u, 0x0021001Eu})
        EXPECT_EQ(UtilpFromDosTime(none), std::nullopt) << std::hex << none;
    EXPECT_FALSE(UtilpHasUnixTime(0));
    EXPECT_TRUE(UtilpHasUnixTime(UtilpFromUnixTime(0)));
    EXPECT_TRUE(UtilpHasUnixTime(UtilpFromUnixTime(0x7FFFFFFF)));
    EXPECT_FALSE(UtilpHasUnixTime(UtilpFromUnixTime(0x7FFFFFFF) + second));
    // Of makers without sign, when DOS agrees.
    const std::uint64_t year2040 = UtilpFromUnixTime(0x7FFFFFFF) + 2 * 365 * 86400 * second,
                        year1903 = year2040 - (second << 32);
    EXPECT_EQ(UtilpUnwrappedTime(year1903, UtilpDosTime(year2040)), year2040);
    EXPECT_EQ(UtilpUnwrappedTime(year1903, UtilpDosTime(year1903)), year1903);
    EXPECT_EQ(UtilpUnwrappedTime(noon, UtilpDosTime(year2040)), noon);
}

} // namespace
