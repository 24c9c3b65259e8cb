// Properties of documents: the fixtures of tests/data/docinfo, each whole, cut, changed, and on a source that
// fails; dates, text and bounds by tables. What makes the fixtures, and what other programs read in them:
// tests/docinfo.
#include "docinfo/dates.h"
#include "docinfo/document_text.h"
#include "support/cases.h"
#include "unit/docinfo_support.h"
#include "unit/whole_file.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace tvut {
namespace {

struct scFixture {
    std::filesystem::path path;
    std::string bytes;
};

const std::vector<scFixture>& Fixtures() {
    static const std::vector<scFixture> fixtures = [] {
        std::vector<scFixture> found;
        for (const auto& file : std::filesystem::directory_iterator(TVUT22_TEST_DATA "/docinfo")) {
            if (file.path().extension() == ".in")
                found.push_back({file.path(), ReadFile(file.path().string())});
        }
        std::ranges::sort(found, {}, &scFixture::path);
        return found;
    }();
    return fixtures;
}

// TVUT22_REWRITE=1 in the environment writes the expectations anew.
TEST(DocInfo, Fixtures) {
    ASSERT_FALSE(Fixtures().empty());
    for (const scFixture& fixture : Fixtures()) {
        const std::filesystem::path expected =
            std::filesystem::path(fixture.path).replace_extension(".expected");
        const std::string properties = Properties(fixture.bytes);
        if (std::getenv("TVUT22_REWRITE"))
            std::ofstream(expected, std::ios::binary) << properties;
        EXPECT_EQ(properties, ReadFile(expected.string())) << fixture.path;
    }
}

// Whatever becomes of a document: no more is read than its readers may, and what is found keeps the rules.
void CheckAny(std::string_view bytes, unsigned failingRead = 0) {
    clsMemoryDocument document(bytes, failingRead);
    clsDocInfo info;
    try {
        if (!UtilpReadDocument(document, u"document", info)) {
            EXPECT_EQ(info.Names(), u"");
        }
    } catch (const clsException&) {
        EXPECT_NE(failingRead, 0u);
    }
}

// A few hundred places of each: the first and the last bytes, and others evenly.
template <class Work>
void AtPlaces(std::size_t size, Work work) {
    const std::size_t step = std::max<std::size_t>(size / 250, 1);
    for (std::size_t at = 0; at < size; at += at < 64 || size - at <= 64 ? 1 : step)
        work(at);
}

TEST(DocInfo, CutDocuments) {
    for (const scFixture& fixture : Fixtures())
        AtPlaces(fixture.bytes.size(), [&](std::size_t at) {
            const std::string cut(fixture.bytes, 0, at); // its end is the end of readable memory
            CheckAny(cut);
        });
}

TEST(DocInfo, ChangedDocuments) {
    for (const scFixture& fixture : Fixtures()) {
        std::string changed = fixture.bytes;
        AtPlaces(changed.size(), [&](std::size_t at) {
            for (const char byte : {'\xFF', static_cast<char>(fixture.bytes[at] + 1)}) {
                changed[at] = byte;
                CheckAny(changed);
            }
            changed[at] = fixture.bytes[at];
        });
    }
}

TEST(DocInfo, SourcesThatFail) {
    for (const scFixture& fixture : Fixtures()) {
        clsMemoryDocument whole(fixture.bytes);
        Properties(whole);
        for (unsigned read = 1; read <= whole.reads; ++read)
            CheckAny(fixture.bytes, read);
    }
}

// ---- Large ones -----------------------------------------------------------------------------------

// A document with zeros at a place.
class clsGapDocument final : public clsRandomSource {
  public:
    clsGapDocument(std::string bytes, std::size_t gapAt, std::uint64_t gapBytes)
        : bytes_(std::move(bytes)), gapAt_(gapAt), gapBytes_(gapBytes) {}
    std::uint64_t Size() override { return bytes_.size() + gapBytes_; }
    std::size_t ReadAt(std::uint64_t position, void* buffer, std::size_t count) override {
        read += count;
        for (std::size_t at = 0; at < count; ++at) {
            const std::uint64_t place = position + at;
            const bool isAfter = place >= gapAt_ + gapBytes_;
            if (isAfter && place - gapBytes_ >= bytes_.size())
                return at;
            static_cast<char*>(buffer)[at] = isAfter ? bytes_[static_cast<std::size_t>(place - gapBytes_)]
                                             : place >= gapAt_ ? '\0'
                                                               : bytes_[static_cast<std::size_t>(place)];
        }
        return count;
    }

    std::uint64_t read = 0;

  private:
    std::string bytes_;
    std::size_t gapAt_;
    std::uint64_t gapBytes_;
};

std::string Fixture(const char* name) {
    return ReadFile(std::string(TVUT22_TEST_DATA "/docinfo/") + name);
}

TEST(DocInfo, OfLargeDocumentsLittleIsRead) {
    constexpr std::uint32_t gap = 500 * 1024 * 1024;
    std::string docx = Fixture("docx-strict.in");
    std::string end = docx.substr(docx.size() - 22);
    std::uint32_t directoryAt = 0;
    std::memcpy(&directoryAt, end.data() + 16, 4);
    const std::size_t gapAt = directoryAt;
    directoryAt += gap;
    std::memcpy(docx.data() + docx.size() - 6, &directoryAt, 4);
    struct scCase {
        const char* name;
        std::string bytes;
        std::size_t gapAt;
    };
    for (scCase& one : std::vector<scCase>{{"docx-strict", docx, gapAt},
                                           {"tiff-big-endian", Fixture("tiff-big-endian.in"), SIZE_MAX},
                                           {"msg-wide", Fixture("msg-wide.in"), SIZE_MAX},
                                           {"html-all", Fixture("html-all.in"), SIZE_MAX},
                                           {"mail-python", Fixture("mail-python.in"), SIZE_MAX}}) {
        one.gapAt = std::min(one.gapAt, one.bytes.size());
        clsGapDocument document(one.bytes, one.gapAt, gap);
        EXPECT_EQ(Properties(document), Fixture((one.name + std::string(".expected")).c_str()));
        EXPECT_LE(document.read, 128u * 1024) << one.name;
    }
}

// ---- Values -------------------------------------------------------------------------------------

TEST(DocInfo, Dates) {
    using Reader = std::optional<scDocDate> (*)(std::u16string_view);
    const std::pair<std::u16string_view, Reader> readers[] = {{u"iso", UtilpReadIsoDate},
                                                              {u"pdf", UtilpReadPdfDate},
                                                              {u"mail", UtilpReadMailDate},
                                                              {u"tiff", UtilpReadTiffDate}};
    for (const scCaseRow& row : CaseRows("docinfo/dates", 3)) {
        const auto reader = std::ranges::find(readers, row[0], [](const auto& pair) { return pair.first; });
        ASSERT_NE(reader, std::end(readers)) << row.where;
        const std::optional<scDocDate> date = reader->second(row[1]);
        EXPECT_EQ(Utf8(date ? UtilpDateText(*date) : u"none"), Utf8(row[2])) << row.where;
    }
    const std::pair<std::uint64_t, std::u16string_view> times[] = {
        {1, u"1601-01-01T00:00:00Z"},
        {0x01D9'0000'0000'0000, u"2022-11-24T12:26:38Z"},
        {125'911'584'000'000'000, u"2000-01-01T00:00:00Z"},
        {125'963'423'999'999'999, u"2000-02-29T23:59:59Z"}};
    for (const auto& [time, text] : times)
        EXPECT_EQ(Utf8(UtilpDateText(UtilpDateOfFileTime(time).value())), Utf8(text));
    EXPECT_FALSE(UtilpDateOfFileTime(0) || UtilpDateOfFileTime(UINT64_MAX) ||
                 UtilpDateOfFileTime(UINT64_MAX / 2));
}

TEST(DocInfo, Texts) {
    for (const scCaseRow& row : CaseRows("docinfo/texts", 3)) {
        clsDocInfo info;
        info.Add(DocProperty::title, row[0]);
        info.Add(DocProperty::comments, row[0]);
        EXPECT_EQ(Utf8(info.Text(DocProperty::title)), Utf8(row[1])) << row.where;
        EXPECT_EQ(Utf8(info.Text(DocProperty::comments)), Utf8(row[2])) << row.where;
    }
}

TEST(DocInfo, JoinsRanksAndBounds) {
    clsDocInfo info;
    for (const auto* text : {u"one", u"two", u"one", u" "})
        info.Add(DocProperty::keywords, text);
    info.Add(DocProperty::author, u"plain");
    info.Add(DocProperty::author, u"lesser", DocRank::lesser);
    info.Add(DocProperty::author, u"best", DocRank::best);
    info.AddNumber(DocProperty::pages, -1);
    info.AddNumber(DocProperty::words, u" 0012 ");
    info.AddCustom(u"A name", u"1");
    info.AddCustom(u"a NAME", u"2");
    // A pair of surrogates does not fit into the last unit.
    info.Add(DocProperty::title, std::u16string(clsDocInfo::longestValue - 1, u'x') + u"\xD83D\xDE00");
    EXPECT_EQ(info.Text(DocProperty::title).size(), clsDocInfo::longestValue - 1);
    EXPECT_EQ(info.Find(u"KEYWORDS"), u"one; two");
    EXPECT_EQ(info.Find(u"custom.A Name"), u"1; 2");
    EXPECT_EQ(Utf8(info.Names()), "Title\nAuthor\nKeywords\nWords\nCustom.A name");
    EXPECT_EQ(info.Text(DocProperty::author), u"best");
    EXPECT_EQ(info.Text(DocProperty::words), u"12");
    EXPECT_FALSE(info.Find(u"Pages") || info.Find(u"Custom.") || info.Find(u"Custom.B") || info.Find(u""));

    for (std::size_t number = 1; number <= clsDocInfo::mostCustom; ++number) {
        EXPECT_FALSE(info.Has(DocProperty::problem));
        info.AddCustom(
            u"n" + std::u16string(number, u'x').substr(0, 1) + UtilpWidenLatin(std::to_string(number)), u"v");
    }
    EXPECT_EQ(info.Find(u"Problem"), u"too many properties");
}

TEST(DocInfo, AllValuesTogetherAreBounded) {
    clsDocInfo info;
    const std::u16string large(clsDocInfo::longestValue, u'x');
    for (char16_t number = 0; number < 40; ++number)
        info.AddCustom(std::u16string(u"n") + static_cast<char16_t>(u'A' + number), large);
    EXPECT_EQ(info.Find(u"Problem"), u"too many properties");
    EXPECT_LE(std::ranges::count(info.Names(), u'\n'), 17);
}

} // namespace
} // namespace tvut
