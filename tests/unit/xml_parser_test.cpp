// The XML form as an XML parser of the machine reads it. Only natively: the parser is Python's.
#include "unit/native_platform.h"
#include "unit/whole_file.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <random>

using namespace tvut;
using namespace std::literals;

namespace {

void GrowTree(clsTree& tree, unsigned seed, std::u16string_view alphabet) {
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

// What an XML parser of the machine makes of our files; see read_with_expat.py. Control characters and halves
// of characters are no XML however they are written, and a line end in a name is none either.
TEST(XmlForm, IsReadAlikeByAnXmlParser) {
    const auto folder = std::filesystem::temp_directory_path() / "tvut22_xml_forms_test";
    std::filesystem::create_directories(folder);
    for (unsigned seed = 1; seed <= 3; ++seed) {
        clsTree tree(true);
        GrowTree(tree, seed, u"ab =[]{}#;/<>&'\"\u2400é\u4E00\uFF5E");
        tree.AppendItem(tree.Root(), scName(u"&'<>\""), u"\xD83D\xDE00\r\nb\t\r\r\nc\n\n");
        std::ofstream(folder / "tree.xml", std::ios::binary) << Saved(tree, 1);
        const std::string command = "python3 '" TVUT22_TEST_DATA "/../unit/read_with_expat.py' '" +
                                    (folder / "tree.xml").string() + "' '" + (folder / "tree.txt").string() +
                                    "'";
        ASSERT_EQ(std::system(command.c_str()), 0);
        std::u16string expected = Describe(tree.Root());
        for (std::size_t at = 0; (at = expected.find(u'\r', at)) != expected.npos;)
            expected.replace(at, expected.substr(at, 2) == u"\r\n" ? 2 : 1, u"\n");
        EXPECT_TRUE(ReadFile(folder / "tree.txt") == Utf16Bytes(expected)) << seed;
    }
    std::filesystem::remove_all(folder);
}

} // namespace
