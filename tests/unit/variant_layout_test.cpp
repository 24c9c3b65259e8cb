// The bytes of variants: what they hold, and what bytes that nobody vouches for may do.
#include "prof/variant_layout.h"
#include "unit/native_platform.h"

#include <gtest/gtest.h>

using namespace tvut;

namespace {

std::string FromHex(std::string_view hex) {
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += hex[i] == ' ' ? 1 : 2) {
        if (hex[i] != ' ')
            bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    }
    return bytes;
}

bool Reads(std::string_view bytes, clsVariantWriter& again) {
    try {
        ProfpReadVariant(bytes, again);
        return true;
    } catch (const clsException&) {
        return false;
    }
}

// One of each kind; stored profiles hold such bytes.
constexpr std::string_view stored[] = {
    "01 0000",                                // empty
    "01 0100",                                // null
    "01 0300 2A000000",                       // Int32 42
    "01 0800 04000000 61006200",              // text "ab"
    "01 0800 FFFFFFFF",                       // null text
    "01 0D00 00",                             // null interface
    "01 0E00 0280 00000000 7B00000000000000", // decimal -1.23
    "01 0320 0000",                           // no array
    "01 0220 0200 02000000 00000000 02000000 FFFFFFFF 0100 0200 0300 0400",
    "01 0820 0100 02000000 01000000 00000000 FFFFFFFF",
    "01 0920 0100 02000000 00000000 00 00",
    "01 0C20 0100 02000000 00000000 0000 0C20 0100 01000000 00000000 0B00 FFFF",
    "01 0C20 0100 00000000 05000000"};

TEST(Variants, ReadAsTheyWereWrittenAndNotWhenCutOrLengthened) {
    for (const std::string_view hex : stored) {
        const std::string bytes = FromHex(hex);
        clsVariantWriter again;
        ASSERT_TRUE(Reads(bytes, again)) << hex;
        EXPECT_EQ(again.Bytes(), bytes) << hex;
        for (std::size_t length = 0; length < bytes.size(); ++length)
            EXPECT_FALSE(Reads(std::string_view(bytes).substr(0, length), again))
                << hex << " cut at " << length;
        EXPECT_FALSE(Reads(bytes + '\0', again)) << hex;
    }
}

TEST(Variants, ThatNobodyWroteAreRefusedBeforeAnythingIsMade) {
    for (const std::string_view hex :
         {"00 0000",
          "02 0000", // another layout
          "01 0C00", "01 0F00", "01 2400", "01 0340 00000000", "01 0D00 01",
          "01 0E00 1D00 00000000 0000000000000000", // decimal of scale 29
          "01 0E00 0001 00000000 0000000000000000", // of an unknown sign
          "01 0020 0100 00000000 00000000", "01 0120 0000", "01 2420 0000", "01 0320 4100",
          "01 1120 0100 FFFFFFFF 00000000 00", // counts that the bytes do not hold
          "01 1120 0200 00000100 00000000 00000100 00000000 00", "01 0C20 0100 02000000 00000000 0000",
          "01 0820 0100 01000000 00000000 05000000 00"}) {
        clsVariantWriter written;
        EXPECT_FALSE(Reads(FromHex(hex), written)) << hex;
    }
    const std::string level = FromHex("0C20 0100 01000000 00000000");
    for (const std::size_t depth : {deepestVariant, deepestVariant + 1, std::size_t{1} << 20}) {
        std::string nested(1, '\1');
        for (std::size_t i = 0; i < depth; ++i)
            nested += level;
        clsVariantWriter written;
        EXPECT_EQ(Reads(nested + FromHex("0000"), written), depth == deepestVariant) << depth;
    }
}

} // namespace
