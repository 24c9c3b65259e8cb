// Names from archives as paths on Windows: a few shown one by one, and what holds for all.
#include "unit/zip_name_properties.h"

#include <gtest/gtest.h>

#include <random>

using namespace tvut;

namespace {

TEST(ZipNames, KeepTheirPropertiesWhateverTheyAre) {
    std::mt19937 random(22);
    constexpr std::string_view alphabet = "..//\\\\aA C:?*\"<>|\n\0con\xC3\xBC\xFF auxNUL1";
    int plain = 0;
    for (int round = 0; round < 200000; ++round) {
        const bool isLong = round % 4 == 0; // with few characters of note, at any place
        std::string name(random() % (isLong ? 40 : 12), 'x');
        for (char& c : name)
            c = !isLong || random() % 16 == 0 ? alphabet[random() % alphabet.size()] : c;
        plain += UtilpIsPlainZipName(name);
        for (const ZipNameForm form : {ZipNameForm::utf8, ZipNameForm::oem})
            ASSERT_EQ(FaultOfZipName(name, form), nullptr) << testing::PrintToString(name);
    }
    EXPECT_GT(plain, 1000);
}

TEST(ZipNames, MayBeGivenToEntriesWhenFilesMayHaveThem) {
    for (const char16_t* const good : {u"a", u"a/b.c", u"a\\b", u".profile", u"\u65E5\U0001F600/x y"})
        EXPECT_TRUE(UtilpCanBeEntryName(good)) << testing::PrintToString(good);
    for (const char16_t* const bad : {u"", u"/a", u"a/", u"a//b", u"..", u"a/../b", u".", u"C:", u"C:\\a",
                                      u"a/con", u"aux.c", u"a.", u"a /b", u"a\n", u"q?", u"\xD800"})
        EXPECT_FALSE(UtilpCanBeEntryName(bad)) << testing::PrintToString(bad);
}

} // namespace
