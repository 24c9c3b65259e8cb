// The bytes of variants: what they hold, and what bytes that nobody vouches for may do.
#include "prof/variant_layout.h"
#include "support/cases.h"
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

TEST(Variants, ReadAsTheyWereWrittenAndNotWhenCutOrLengthened) {
    for (const scCaseRow& row : CaseRows("variants/stored", 2)) {
        const std::string bytes = FromHex(NarrowCase(row[0]));
        clsVariantWriter again;
        ASSERT_TRUE(Reads(bytes, again)) << row.where;
        EXPECT_EQ(again.Bytes(), bytes) << row.where;
        for (std::size_t length = 0; length < bytes.size(); ++length)
            EXPECT_FALSE(Reads(std::string_view(bytes).substr(0, length), again))
                << row.where << " cut at " << length;
        EXPECT_FALSE(Reads(bytes + '\0', again)) << row.where;
    }
}

TEST(Variants, ThatNobodyWroteAreRefusedBeforeAnythingIsMade) {
    for (const scCaseRow& row : CaseRows("variants/refused", 2)) {
        clsVariantWriter written;
        EXPECT_FALSE(Reads(FromHex(NarrowCase(row[0])), written)) << row.where;
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
