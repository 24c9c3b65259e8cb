// A tree of random shape and texts.
#pragma once

#include "prof/tree.h"

#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tvut {

// Among them all that a form must stand in for.
constexpr std::u16string_view everyKindOfCharacter =
    u"ab =[]{}#;/<>&'\"\r\n\t\x01\x1F\u2400é\u4E00\xD83D\xDE00\uFFFF";

inline void GrowTree(clsTree& tree, unsigned seed, std::u16string_view alphabet) {
    std::mt19937 random(seed);
    const auto text = [&](std::size_t longest, bool anyStart) {
        std::u16string result = anyStart ? u"" : u"n";
        for (std::size_t length = random() % longest; length != 0; --length)
            result += alphabet[random() % alphabet.size()];
        return result;
    };
    std::vector<clsItemList*> lists{&tree.Root()};
    for (int i = 0; i < 400; ++i) {
        clsItemList& list = *lists[random() % lists.size()];
        if (random() % 5 == 0)
            lists.push_back(tree.AppendList(list, scName(u"list" + std::u16string(random() % 3, u'x'))));
        else
            tree.AppendItem(list, scName(text(20, false)), text(random() % 50 == 0 ? 200000 : 40, true));
    }
}

} // namespace tvut
