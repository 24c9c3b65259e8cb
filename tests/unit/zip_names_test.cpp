// Names from archives as paths on Windows: a few shown one by one, and what holds for all.
#include "unit/zip_name_properties.h"

#include <gtest/gtest.h>

#include <random>

using namespace tvut;

namespace {

TEST(ZipNames, KeepTheirPropertiesWhateverTheyAre) {
    std::mt19937 random(22);
    constexpr std::string_view alphabet = "..//\\\\aA C:?*\"<>|\n\0con\xC3\xBC\xFF auxNUL1";
    for (int round = 0; round < 200000; ++round) {
        std::string name(random() % 12, ' ');
        for (char& c : name)
            c = alphabet[random() % alphabet.size()];
        for (const ZipNameForm form : {ZipNameForm::utf8, ZipNameForm::oem})
            ASSERT_EQ(FaultOfZipName(name, form), nullptr) << testing::PrintToString(name);
    }
}

TEST(ZipNames, MayBeGivenToEntriesWhenFilesMayHaveThem) {
    for (const char16_t* const good : {u"a", u"a/b.c", u"a\\b", u".profile", u"\u65E5\U0001F600/x y"})
        EXPECT_TRUE(UtilpCanBeEntryName(good)) << testing::PrintToString(good);
    for (const char16_t* const bad : {u"", u"/a", u"a/", u"a//b", u"..", u"a/../b", u".", u"C:", u"C:\\a", u"a/con", u"aux.c",
                                      u"a.", u"a /b", u"a\n", u"q?", u"\xD800"})
        EXPECT_FALSE(UtilpCanBeEntryName(bad)) << testing::PrintToString(bad);
}

} // namespace
