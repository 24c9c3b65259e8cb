// The list of temporary files against a plain model: order, paths without regard to case, free numbers.
#include "runtime/temp_files/temp_file_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

using namespace tvut;

namespace {

std::u16string Upper(std::u16string text) {
    for (char16_t& c : text)
        c = c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c;
    return text;
}

TEST(TempFileList, DoesWhatAModelDoes) {
    clsTempFileList list;
    std::vector<std::pair<std::u16string, scTempFile*>> model; // oldest first
    std::mt19937 random(17);
    const auto find = [&](const std::u16string& path) {
        return std::ranges::find_if(model,
                                    [&](const auto& file) { return Upper(file.first) == Upper(path); });
    };
    for (int step = 0; step < 20000; ++step) {
        std::u16string path = u"C:\\Temp\\file ";
        for (unsigned digits = 1 + random() % 3; digits != 0; --digits)
            path += u"aAbB\u00E4\u65E5"[random() % 6];
        scTempFile* const found = list.Find(path);
        const auto expected = find(path);
        ASSERT_EQ(found, expected == model.end() ? nullptr : expected->second);
        if (!found) {
            list.Put(clsTempFileList::Make(path));
            model.emplace_back(path, list.Newest());
        } else if (random() % 3 == 0) {
            ASSERT_EQ(list.Take(*found)->Path(), expected->first);
            model.erase(expected);
        }
        if (step % 100 == 0) {
            auto at = model.rbegin();
            for (const scTempFile* file = list.Newest(); file; file = file->older, ++at)
                ASSERT_EQ(file->Path(), at->first);
            ASSERT_EQ(at, model.rend());
        }
    }
}

TEST(TempFileList, TellsTheFirstNumberThatMayBeFree) {
    clsTempFileList list;
    std::map<std::uint32_t, scTempFile*> taken;
    std::mt19937 random(19);
    for (int step = 0; step < 1500; ++step) {
        std::uint32_t number = list.FirstNumber(77);
        while (taken.contains(number))
            ++number;
        for (std::uint32_t before = 1; before < number; ++before)
            ASSERT_TRUE(taken.contains(before)) << "a free number is left out";
        list.Put(clsTempFileList::Make(u"a", {77, number}));
        taken[number] = list.Newest();
        ASSERT_EQ(list.FirstNumber(77), number + 1);
        if (random() % 2 == 0) {
            const auto any = std::next(taken.begin(), static_cast<std::ptrdiff_t>(random() % taken.size()));
            list.Take(*any->second);
            taken.erase(any);
        }
        if (step % 500 == 0)
            list.Put(clsTempFileList::Make(u"b", {77 + 64, 1})); // takes the place of what was known
    }
}

TEST(TempFileList, PassesOverWhatIsBeingRemoved) {
    clsTempFileList list;
    list.Put(clsTempFileList::Make(u"a"));
    list.Newest()->leaving = true;
    EXPECT_EQ(list.Find(u"a"), nullptr);
    list.Put(clsTempFileList::Make(u"A"));
    EXPECT_EQ(list.Find(u"a"), list.Newest());
    while (!list.IsFull())
        list.Put(clsTempFileList::Make(u"b"));
}

} // namespace
