// The XML form as an XML parser of the machine reads it, and as other programs leave it. Only natively: they
// are this machine's.
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

// What comes back from programs that read our file and write it anew, if the tree holds what they leave
// alone: at level 0 anything; at 1 no value of line ends and tabs alone, at 2 no blanks either.
TEST(ForeignXml, ReadsWhatOtherProgramsLeave) {
    const std::string elementTree = "python3 -c 'import xml.etree.ElementTree as tree; "
                                    "t = tree.parse(\"own.xml\"); tree.indent(t); t.write(\"other.xml\", ";
    const std::pair<std::string, int> programs[] = {
        {"xmllint --format own.xml >other.xml", 0},
        {"xmllint --noblanks --dropdtd --noent own.xml >other.xml", 1},
        {"xmllint --format --noent own.xml >other.xml", 1},
        {"xmllint --noent --encode ISO-8859-1 own.xml >other.xml", 0},
        {elementTree + "\"us-ascii\")'", 0},
        {elementTree + "\"windows-1252\", True, short_empty_elements=False)'", 0},
        {elementTree + "\"unicode\")'", 0},
        {"tidy -q -xml -i -wrap 0 --show-warnings no own.xml >other.xml; test $? -lt 2", 2},
    };
    const auto folder = std::filesystem::temp_directory_path() / "tvut22_foreign_xml_test";
    std::filesystem::create_directories(folder);
    for (const int level : {0, 1, 2}) {
        clsTree tree(true);
        GrowTree(tree, 7,
                 level < 2 ? u"ab =[]{}#;/<>&'\"é\u4E00\uFF5E\u00A0\u0085" : u"ab=[]#;/<>&'\"é\u4E00");
        tree.AppendItem(tree.Root(), scName(u"emoji"), u"\xD83D\xDE00");
        if (level < 2)
            tree.AppendItem(tree.Root(), scName(u" b  l "), u"\r\n  x\t\t \r\n\r\n ");
        if (level == 0) {
            for (const std::u16string_view value : {u" ", u"\r\n", u"\t"})
                tree.AppendItem(tree.Root(), scName(u"blank"), value);
        }
        std::ofstream(folder / "own.xml", std::ios::binary) << Saved(tree, 1);
        for (const auto& [command, most] : programs) {
            if (level < most)
                continue;
            ASSERT_EQ(std::system(("cd '" + folder.string() + "' && " + command).c_str()), 0) << command;
            EXPECT_TRUE(Read(ReadFile(folder / "other.xml"), ReadMode::foreignXml) == Describe(tree.Root()))
                << command;
        }
    }
    std::filesystem::remove_all(folder);
}

} // namespace
