// The product's notes: what they hold, and that a reader who takes no lock finds whole ones only.
#include "runtime/crash/notes.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <string>
#include <thread>

using namespace tvut;

namespace {

std::u16string All(const clsNotes& notes) {
    static std::array<char16_t, clsNotes::longestText> text;
    return {text.data(), notes.ReadAll(text)};
}

TEST(Notes, StandInTheOrderOfFirstSetting) {
    static clsNotes notes;
    notes.Set(u"b", u"1");
    notes.Set(u"a", u"\u00E4\r\n\t\u0085|");
    notes.Set(u"B", u"");
    notes.Set(u"b", u"2");
    EXPECT_EQ(All(notes), u"b=2\na=\u00E4    |\nB=");
    EXPECT_EQ(notes.Remove(u"b"), UtilResult::ok);
    EXPECT_EQ(notes.Remove(u"b"), UtilResult::ok) << "it is gone already";
    notes.Set(u"b", u"3");
    EXPECT_EQ(All(notes), u"a=\u00E4    |\nB=\nb=3");
    for (const auto result : {notes.Set(u"", u"x"), notes.Remove(u"")})
        EXPECT_EQ(result, UtilResult::badArgument);
}

TEST(Notes, HaveRoomForSoManyOfSuchLength) {
    static clsNotes notes;
    std::u16string expected;
    for (std::size_t i = 0; i < clsNotes::most; ++i) {
        std::u16string name(scNote::longestName, u'n');
        name[0] = static_cast<char16_t>(u'0' + i);
        const std::u16string value(scNote::longestValue, static_cast<char16_t>(u'0' + i));
        EXPECT_EQ(notes.Set(name + u"too long", value + u"too long"), UtilResult::ok);
        expected += (i == 0 ? u"" : u"\n") + name + u"=" + value;
    }
    EXPECT_EQ(All(notes), expected);
    EXPECT_EQ(notes.Set(u"one more", u""), UtilResult::tooLarge);
    std::array<char16_t, 700> small; // for two notes
    EXPECT_EQ(notes.ReadAll(small), expected.find(u"\n2"));
    EXPECT_EQ(notes.ReadAll({}), 0u);
}

TEST(Notes, AreReadWholeWhileOthersWrite) {
    static clsNotes notes;
    std::atomic<bool> isOver{false};
    const auto write = [&](char16_t name, unsigned start) {
        for (unsigned i = start; !isOver.load(); ++i) {
            const std::u16string value(i % 7 == 0 ? 255 : i % 60, static_cast<char16_t>(u'a' + i % 26));
            notes.Set(std::u16string(1, name), value);
            if (i % 5 == 0)
                notes.Remove(std::u16string(1, name));
        }
    };
    std::thread one(write, u'x', 0), other(write, u'y', 3);
    std::size_t found = 0;
    scNote note;
    for (std::size_t order = 0; found < 20000; order ^= 1) {
        if (!notes.Read(order, note))
            continue;
        ++found;
        const std::u16string_view value = note.Value();
        if (note.nameLength != 1 || value.find_first_not_of(value.empty() ? u'\0' : value[0]) != value.npos) {
            ADD_FAILURE() << "a note is made of two";
            break;
        }
    }
    isOver.store(true);
    one.join();
    other.join();
}

} // namespace
