// Base64 and its engines, the block cipher, and the text form of bytes.
#include "support/cases.h"
#include "text/bytes/base64.h"
#include "text/bytes/base64_engine.h"
#include "text/bytes/block_cipher.h"
#include "text/bytes/byte_text.h"
#include "text/bytes/crc32.h"
#include "unit/native_platform.h"

#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <zlib.h>

using namespace tvut;

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Random(std::size_t count, unsigned seed = 1) {
    std::mt19937 random(seed);
    Bytes bytes(count);
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random()); });
    return bytes;
}

std::u16string Encoded(std::span<const std::uint8_t> bytes) {
    std::u16string text(UtilpBase64Length(bytes.size()), u'?');
    UtilpBase64Encode(bytes, text.data());
    return text;
}

std::u16string Ascii(std::string_view text) {
    return {text.begin(), text.end()};
}

// Decodes in a room of exactly the size, so that the sanitizer sees each byte too many.
std::optional<std::string> Decoded(std::u16string_view text, std::size_t room = 3 * 1024) {
    clsBase64Decoder decoder(text);
    std::string all;
    for (Bytes piece(room);;) {
        const auto count = decoder.Decode(piece);
        if (!count)
            return {};
        all.append(piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(*count));
        if (*count < room)
            return all;
    }
}

TEST(Base64, EncodesAsPublished) {
    const std::string_view texts[] = {"", "Zg==", "Zm8=", "Zm9v", "Zm9vYg==", "Zm9vYmE=", "Zm9vYmFy"};
    for (std::size_t length = 0; length < std::size(texts); ++length) {
        const auto* const bytes = reinterpret_cast<const std::uint8_t*>("foobar");
        EXPECT_EQ(Encoded({bytes, length}), Ascii(texts[length]));
        EXPECT_EQ(Decoded(Ascii(texts[length])), std::string("foobar", length));
    }
}

TEST(Base64, EveryLengthComesBackInRoomsOfEverySize) {
    for (std::size_t length = 0; length <= 200; ++length) {
        const Bytes bytes = Random(length, static_cast<unsigned>(length));
        const std::u16string text = Encoded(bytes);
        for (const std::size_t room : {3u, 24u, 48u, 300u})
            ASSERT_EQ(Decoded(text, room), std::string(bytes.begin(), bytes.end())) << length << " " << room;
    }
}

TEST(Base64, WhatIsTakenAndWhatIsBadFormat) {
    for (const scCaseRow& row : CaseRows("base64", 2)) {
        const std::optional<std::string> bytes = Decoded(row[0]);
        EXPECT_EQ(bytes ? Ascii(*bytes) : u"bad format", row[1]) << row.where;
    }
}

TEST(Base64, LineBreaksAnywhereInLongTexts) {
    const Bytes bytes = Random(1000);
    const std::string expected(bytes.begin(), bytes.end());
    for (const std::size_t width : {1u, 3u, 64u, 76u, 77u}) {
        std::u16string text = Encoded(bytes);
        for (std::size_t at = width; at < text.size(); at += width + 2)
            text.insert(at, u"\r\n");
        EXPECT_EQ(Decoded(text), expected) << width;
    }
}

// Each engine against the table: every unit at every position, and every length at both ends.
class Engine : public testing::TestWithParam<scBase64Engine> {};

TEST_P(Engine, GivesWhatTheTableGives) {
    const auto& engine = GetParam();
    if (!engine.isAvailable())
        GTEST_SKIP() << "this processor has no " << engine.name;
    for (std::size_t length = 0; length <= 120; ++length) {
        const Bytes bytes = Random(length, static_cast<unsigned>(length));
        std::u16string text(length / 3 * 4, u'?');
        const std::size_t done = engine.encode(bytes.data(), length, text.data());
        ASSERT_EQ(done, length / 3 * 3);
        ASSERT_EQ(text, Encoded({bytes.data(), done}));
        Bytes back(done);
        ASSERT_EQ(engine.decode(text.data(), text.size(), back.data()), text.size());
        ASSERT_TRUE(std::equal(back.begin(), back.end(), bytes.begin()));
    }
}

TEST_P(Engine, StopsWhereTheTableStops) {
    const auto& engine = GetParam();
    if (!engine.isAvailable())
        GTEST_SKIP() << "this processor has no " << engine.name;
    std::u16string text = Encoded(Random(72));
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char16_t good = text[at];
        for (unsigned unit = 0; unit < 0x10000; unit += unit < 0x400 ? 1 : 0x0B) {
            text[at] = static_cast<char16_t>(unit);
            Bytes expected(72), bytes(72);
            const std::size_t stop = UtilpBase64DecodeByTable(text.data(), text.size(), expected.data());
            ASSERT_EQ(engine.decode(text.data(), text.size(), bytes.data()), stop) << at << " " << unit;
            ASSERT_TRUE(std::equal(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(stop / 4 * 3),
                                   expected.begin()));
        }
        text[at] = good;
    }
}

INSTANTIATE_TEST_SUITE_P(Base64, Engine,
                         testing::ValuesIn(UtilpBase64Engines().begin(), UtilpBase64Engines().end()),
                         [](const auto& engine) { return engine.param.name; });

TEST(Crc32, IsZlibsAtEveryLengthPlaceAndCut) {
    const Bytes bytes = Random(400);
    for (std::size_t length = 0; length <= 380; ++length) {
        const unsigned char* const start = bytes.data() + length % 17;
        const std::size_t cut = length / 3;
        const uLong expected = crc32(0, start, static_cast<uInt>(length));
        ASSERT_EQ(UtilpCrc32(0, start, length), expected) << length;
        ASSERT_EQ(UtilpCrc32(UtilpCrc32(0, start, cut), start + cut, length - cut), expected) << length;
    }
}

std::u16string Enciphered(std::u16string_view keyText, std::string_view plain) {
    Bytes bytes(plain.begin(), plain.end());
    clsCipherChain(keyText).Encipher(bytes);
    return Encoded(bytes);
}

// The first is the vector published with the cipher; the others were made by a second implementation
// and fix how a key text becomes a key and how blocks are chained.
TEST(BlockCipher, KeepsItsVectors) {
    const clsBlockCipher cipher(clsBlockCipher::Key{0x03020100, 0x0B0A0908, 0x13121110, 0x1B1A1918});
    EXPECT_EQ(cipher.Encipher(0x3B7265747475432D), 0x8C6FA548454E028B);

    EXPECT_EQ(Enciphered(u"key", "12345678"), u"MTLVwrAkub8=");
    EXPECT_EQ(Enciphered(u"key", std::string_view(
                                     "\0\1\2\3\4\5\6\7\x8\x9\xA\xB\xC\xD\xE\xF\x10\x11\x12\x13\x14", 21)),
              u"mf3Nef4x3bZK1BG2eTRAypJoQJCw");
    EXPECT_EQ(Enciphered(u"Schlüssel zum Profil", "The quick brown fox jumps over the lazy dog"),
              u"VDRFgc/VhKcoyFk4CXieVdyQJ18Z+OVHchsSKsQYuVx50wF+UwI4cOOWBA==");
}

using Compression = clsPackedBytes::Compression;

std::u16string TextOf(std::string_view bytes, Compression compression, std::u16string_view key = {}) {
    clsMemorySource source(bytes, 1000);
    const clsPackedBytes packed(source, compression, key);
    std::u16string text(packed.TextLength(), u'?');
    packed.WriteText(text.data());
    return text;
}

std::optional<std::string> BytesOf(std::u16string_view text, std::u16string_view key = {},
                                   std::uint64_t limit = largestUnfoldedBytes) {
    clsMemorySink sink;
    DiagnosticLines().clear();
    if (!UtilpWriteBytesOfText(text, key, sink, limit)) {
        EXPECT_EQ(DiagnosticLines().size(), 1u);
        return {};
    }
    EXPECT_TRUE(DiagnosticLines().empty());
    return sink.bytes;
}

TEST(ByteText, ThatIsStoredIsReadForEver) {
    std::string expected;
    for (int time = 0; time < 4; ++time)
        expected += "stored profiles stay readable for ever, ";
    EXPECT_EQ(BytesOf(u"@2@eNorLskvSk1RKCjKT8vMSS1WKC5JrFQoSk1MSUzKSVVIyy9SSC1LLdIBig+MOgDUyjst"), expected);
    EXPECT_EQ(BytesOf(u"@2@IE4UL7qkagtrlXNwlYuZN9Af+CCvVsNDRp57YcFFsW8zy2qh9ro+LRUZe1IxIWp5pWiD", u"key"),
              expected);
    EXPECT_EQ(BytesOf(u"@1@QUI="), std::string("AB\0", 3));
    EXPECT_EQ(BytesOf(u"@1@QQ"), std::string("A\0\0", 3));
    EXPECT_EQ(BytesOf(u"@1@"), "");
}

TEST(ByteText, OfNoKnownFormIsRefused) {
    for (const std::u16string_view text :
         {u"@", u"@2", u"@2@", u"@0@QUJD", u"@3@QUJD", u"@@", u"@2@QUJD", u"@1@Q"})
        EXPECT_EQ(BytesOf(text), std::nullopt) << testing::PrintToString(std::u16string(text));
    BytesOf(u"QUJD*");
    EXPECT_EQ(DiagnosticLines().at(0), u"ERR: Base64 string has bad format!");
}

// What is damaged where nothing depends on it may still unfold, to the right bytes: there is a checksum.
TEST(ByteText, DamagedOrCutAnywhereIsRefused) {
    const std::string bytes = std::string(500, 'x') + "and something else";
    std::u16string good = TextOf(bytes, Compression::zlib);
    good.erase(good.find_last_not_of(u'=') + 1);
    EXPECT_EQ(BytesOf(good), bytes);
    EXPECT_EQ(BytesOf(good + std::u16string(8 - good.size() % 4 + 3, u'A')), std::nullopt);
    for (std::size_t at = 3; at < good.size(); ++at) {
        EXPECT_EQ(BytesOf(good.substr(0, at)), std::nullopt) << at;
        std::u16string damaged = good;
        damaged[at] = damaged[at] == u'A' ? u'B' : u'A';
        EXPECT_EQ(BytesOf(damaged).value_or(bytes), bytes) << at;
    }
}

TEST(ByteText, UnfoldsToItsLimitAndNoFurther) {
    const std::string bytes(1000000, 'x');
    const std::u16string text = TextOf(bytes, Compression::zlib);
    EXPECT_EQ(BytesOf(text, {}, bytes.size()), bytes);
    EXPECT_EQ(BytesOf(text, {}, bytes.size() - 1), std::nullopt);
}

} // namespace
