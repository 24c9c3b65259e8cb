// Text primitives: UTF-8, input encodings, the vector scans against their plain definition.
#include "prof/formats/line_reader.h"
#include "prof/formats/xml_text.h"
#include "text/encoding/input_text.h"
#include "text/encoding/utf8.h"
#include "text/hash.h"
#include "text/string.h"
#include "unit/native_platform.h"

#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>

using namespace tvut;
using namespace std::literals;

namespace {

std::u16string Decoded(std::string_view bytes) {
    std::u16string text(bytes.size(), u'?');
    text.resize(UtilpDecodeUtf8(bytes, text.data()));
    return text;
}

TEST(Utf8, AcceptsWhatIsWellFormedAndReplacesTheRest) {
    struct scCase {
        std::string_view bytes;
        bool valid;
        std::u16string_view text;
    };
    const scCase cases[] = {{"", true, u""},
                            {"aé€😀", true, u"aé€😀"},
                            {"\x7F\xC2\x80\xDF\xBF", true, u"\u007F\u0080\u07FF"},
                            {"\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80", true, u"\u0800\uD7FF\uE000"},
                            {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", true, u"\U00010000\U0010FFFF"},
                            {"\xC0\x80", false, u"\uFFFD\uFFFD"},                     // overlong
                            {"\xE0\x9F\xBF", false, u"\uFFFD\uFFFD\uFFFD"},           // overlong
                            {"\xED\xA0\x80", false, u"\uFFFD\uFFFD\uFFFD"},           // a surrogate
                            {"\xF4\x90\x80\x80", false, u"\uFFFD\uFFFD\uFFFD\uFFFD"}, // beyond U+10FFFF
                            {"\xE2\x82", false, u"\uFFFD\uFFFD"},                     // cut off
                            {"a\xFFz\x80", false, u"a\uFFFDz\uFFFD"}};
    for (const scCase& c : cases) {
        SCOPED_TRACE(::testing::PrintToString(c.bytes));
        for (const std::size_t around : {0u, 3u, 13u, 16u, 29u}) { // ASCII passes in blocks
            const std::string bytes = std::string(around, 'x') + std::string(c.bytes);
            EXPECT_EQ(UtilpIsUtf8(bytes + std::string(around, 'y')), c.valid);
            EXPECT_EQ(Decoded(bytes + std::string(around, 'y')),
                      std::u16string(around, u'x') + std::u16string(c.text) + std::u16string(around, u'y'));
        }
    }
}

std::u16string Input(std::string_view bytes, std::size_t piece) {
    clsMemorySource source(bytes, piece);
    clsInputText input(source);
    input.Decode(1252);
    return std::u16string(input.Text());
}

TEST(InputText, TellsTheEncoding) {
    const std::string utf16 = Utf16Bytes(u"[ä]\r\nk=€\r\n");
    std::string swapped = utf16;
    for (std::size_t i = 0; i < swapped.size(); i += 2)
        std::swap(swapped[i], swapped[i + 1]);
    const std::u16string text = u"[ä]\r\nk=€\r\n";
    struct scCase {
        std::string bytes;
        std::u16string text;
    };
    const scCase cases[] = {
        {"\xFF\xFE" + utf16, text},
        {"\xFE\xFF" + swapped, text},
        {"\xEF\xBB\xBF[ä]\r\nk=€\r\n", text},
        {utf16, text},
        {"[ä]\r\nk=€\r\n", text},
        {"[\xE4]\r\nk=1", u"[ä]\r\nk=1"}, // neither UTF-16 nor UTF-8: the code page
        {"\xFF\xFE" + utf16 + "x", text}, // half a character at the end
        {"\xEF\xBB\xBFk=\xFF", u"k=\uFFFD"},
        {Utf16Bytes(u"名=山\u3000田\r\n[一]\r\n"), u"名=山\u3000田\r\n[一]\r\n"},
        {"[a]\r\nk=1\r\n" + std::string(1, '\0'), u"[a]\r\nk=1\r\n" + std::u16string(1, u'\0')},
        {"", u""},
        {"\xFF\xFE", u""},
        {"\xFF", u"\u00FF"},
        {"x", u"x"}};
    for (const scCase& c : cases) {
        for (const std::size_t piece : {1u, 2u, 5u, 1024u}) {
            SCOPED_TRACE(::testing::PrintToString(c.bytes) + " in pieces of " + std::to_string(piece));
            EXPECT_EQ(Input(c.bytes, piece), c.text);
        }
    }
}

// A window at a time, with lines that end anywhere and some that are longer than a window.
TEST(LineReader, SeesEveryLineWhole) {
    std::mt19937 random(5);
    std::u16string text = u"\uFEFF";
    std::vector<std::u16string> lines;
    for (int i = 0; i < 3000; ++i) {
        const std::size_t length = 1 + (i % 500 == 0 ? 100000 + random() % 200000 : random() % 100);
        lines.emplace_back(length, static_cast<char16_t>(u'A' + i % 26));
        text.append(random() % 4, u' ').append(lines.back()).append(i % 3 ? u"\r\n" : u"\n \n");
    }
    const std::string bytes = Utf16Bytes(text);
    clsMemorySource source(bytes, 77777);
    clsInputText input(source);
    input.Decode(1252);
    clsLineReader reader(input);
    for (const std::u16string& line : lines) {
        ASSERT_TRUE(reader.Next());
        ASSERT_EQ(reader.Line(), line);
    }
    EXPECT_FALSE(reader.Next());
    EXPECT_FALSE(reader.Next());
}

TEST(Scan, GivesTheAnswersOfAPlainScan) {
    std::mt19937 random(7);
    constexpr std::u16string_view alphabet = u"ab=[]\x1F\x20\u2337\u2338\u2409\u301B\u301C\uFFFF";
    for (int round = 0; round < 20000; ++round) {
        std::u16string line;
        for (std::size_t length = random() % 40; length != 0; --length)
            line += alphabet[random() % alphabet.size()];
        const std::size_t length = line.size();
        const std::u16string padded =
            line + (round % 2 ? u'\r' : u'\n') + std::u16string(clsLineBlock::units - 1, u'=');
        scLine scan{};
        ProfpScanLine(padded.data(), nullptr, scan);
        ASSERT_EQ(scan.end - padded.data(), static_cast<std::ptrdiff_t>(length));
        ASSERT_EQ(scan.equals - padded.data(),
                  static_cast<std::ptrdiff_t>(std::min(line.find(u'='), length)));
        ASSERT_EQ(scan.marked, std::any_of(line.begin(), line.end(),
                                           [](char16_t c) { return c >= firstMark && c <= lastMark; }));

        std::u16string expected = line;
        std::transform(line.begin(), line.end(), expected.begin(), ProfpMarkInName);
        std::u16string copy(length, u'?');
        ProfpCopyMarked<true>(copy.data(), line);
        ASSERT_EQ(copy, expected);
    }
}

template <class Special>
void ExpectPlainAnswers(std::u16string_view text) {
    const auto special = std::find_if(text.begin(), text.end(), Special::Is) - text.begin();
    ASSERT_EQ(UtilpLengthBefore<Special>(text), static_cast<std::size_t>(special));
    if constexpr (std::is_same_v<Special, scXmlSpecial>) {
        std::u16string copy(text.size(), u'?');
        ASSERT_EQ(UtilpCopyFinding<scXmlSpecial>(copy.data(), text), special != std::ssize(text));
        ASSERT_EQ(copy, text);
    }
}

// Every character at every place of a text, in memory of just its length: sanitizers see a look beyond.
TEST(Scan, TellsWhatIsSpecialAtEveryPlace) {
    for (std::size_t length = 0; length <= 40; ++length) {
        const std::string ascii(length, 'a');
        std::string narrowed(length, '?');
        const std::vector<char16_t> wide(length, u'a');
        ASSERT_TRUE(UtilpNarrowAscii(narrowed.data(), {wide.data(), length}));
        ASSERT_EQ(narrowed, ascii);
        for (std::size_t place = 0; place < length; ++place) {
            for (const char16_t c :
                 u"\0\x1F !\"#%&'(;<=>?\x7F\x80\xFF\u0100\u043C\u7FFF\u8000\u803C\uFFFF"sv) {
                std::vector<char16_t> text(length, u'a');
                text[place] = c;
                ExpectPlainAnswers<scXmlSpecial>({text.data(), length});
                ExpectPlainAnswers<scNotAscii>({text.data(), length});
                ASSERT_EQ(UtilpNarrowAscii(narrowed.data(), {text.data(), length}), c < 0x80);
            }
        }
    }
}

TEST(Scan, FindsItsWayInMarkup) {
    std::mt19937 random(7);
    constexpr std::u16string_view alphabet = u"aaaa<\"&>\0\u013C\u8022\uFFFF"sv;
    for (int round = 0; round < 20000; ++round) {
        std::u16string line(random() % 40, u'a');
        for (char16_t& c : line)
            c = alphabet[random() % alphabet.size()];
        const std::u16string padded = line + (round % 2 ? u'\r' : u'\n') + std::u16string(15, u'<');
        scMarkupLine scan{};
        ProfpScanMarkupLine<12>(padded.data(), scan);
        const auto place = [&](const char16_t* found) {
            return static_cast<std::size_t>(found - padded.data());
        };
        ASSERT_EQ(place(scan.end), line.size());
        ASSERT_EQ(place(scan.quote), std::min(line.find(u'"', 12), line.size()));
        ASSERT_EQ(place(scan.less), std::min(line.find(u'<', 1), line.size()));
        ASSERT_EQ(scan.marked, line.find_first_of(u"&\0"sv) != line.npos);
    }
}

TEST(String, SharesUntilWrittenTo) {
    String a(u"abc");
    String b = a;
    EXPECT_EQ(a.Characters(), b.Characters());
    b[1] = u'X';
    EXPECT_EQ(a.View(), u"abc");
    EXPECT_EQ(b.View(), u"aXc");
    b.Append(b.View().substr(1));
    b.Append(b.View());
    EXPECT_EQ(b.View(), u"aXcXcaXcXc");
    a = b;
    b = String();
    EXPECT_EQ(a.Length(), 10u);
    EXPECT_TRUE(b.IsEmpty());
    EXPECT_EQ(String::FromAnsi("\xE4z", 1252).ToAnsi(), "\xE4z");
}

TEST(String, KeepsAnOpenBufferToItself) {
    String a(u"hello");
    char16_t* const buffer = a.GetBuffer(5);
    const String b = a;
    buffer[0] = u'X';
    a.ReleaseBuffer(2);
    EXPECT_EQ(a.View(), u"Xe");
    EXPECT_EQ(b.View(), u"hello");
    a[0] = a[1];
    EXPECT_EQ(a.View(), u"ee");
}

TEST(String, RefusesMisuseAndReportsIt) {
    DiagnosticLines().clear();
    String text(u"abc");
    text[3] = u'x';
    EXPECT_EQ(text.View(), u"abc");
    EXPECT_EQ(text[3], u'\0');
    char16_t* const buffer = text.GetBuffer(5);
    buffer[3] = buffer[4] = u'!';
    text.ReleaseBuffer(4);
    text.ReleaseBuffer(1);
    EXPECT_EQ(text.View(), u"abc!");
    const std::vector<std::u16string> expected{
        u"WRN: detected write to String::operator[] with index out of bounds",
        u"WRN: String buffer released twice (usage=0)"};
    EXPECT_EQ(DiagnosticLines(), expected);
}

TEST(String, ReplacesInOnePass) {
    struct scCase {
        std::u16string_view text, from, to, result;
        std::size_t count;
    };
    const scCase cases[] = {{u"aaaa", u"aa", u"a", u"aa", 2},      {u"aaa", u"aa", u"aaa", u"aaaa", 1},
                            {u"abc", u"", u"x", u"abc", 0},        {u"abcabc", u"bc", u"", u"aa", 2},
                            {u"abc", u"d", u"x", u"abc", 0},       {u"", u"a", u"b", u"", 0},
                            {u"a.b.c", u".", u"..", u"a..b..c", 2}};
    for (const scCase& c : cases) {
        String text(c.text);
        EXPECT_EQ(text.Replace(c.from, c.to), c.count);
        EXPECT_EQ(text.View(), c.result);
    }
}

TEST(String, ComparesExactlyAndIStringWithoutCase) {
    EXPECT_FALSE(String(u"Abc") == String(u"abc"));
    EXPECT_TRUE(String(u"B") < String(u"a"));
    EXPECT_TRUE(IString(u"Abc") == IString(u"aBC"));
    EXPECT_TRUE(IString(u"a") < IString(u"B"));
}

// A weak hash would make lookups crawl: the buckets of similar names must fill evenly.
TEST(Hash, SpreadsSimilarNames) {
    constexpr unsigned names = 65536;
    std::vector<unsigned> buckets(256);
    for (unsigned i = 0; i < names; ++i) {
        const std::string digits = "item_" + std::to_string(i);
        ++buckets[UtilpHashText(std::u16string(digits.begin(), digits.end())) & 255];
    }
    double chiSquare = 0;
    for (const unsigned count : buckets)
        chiSquare += (count - 256.0) * (count - 256.0) / 256.0;
    EXPECT_LT(chiSquare, 400); // 255 degrees of freedom: far beyond what chance gives
}

// Archives know a name by 62 bits of its hash alone: "100" was once the same as "6000".
TEST(Hash, TellsNumbersOfAnyLengthApart) {
    std::set<std::uint64_t> seen;
    for (unsigned i = 0; i < 20000; ++i) {
        const std::string digits = std::to_string(i);
        EXPECT_TRUE(seen.insert(UtilpHashAfter(7, std::u16string(digits.begin(), digits.end())) >> 2).second)
            << i;
    }
}

} // namespace
