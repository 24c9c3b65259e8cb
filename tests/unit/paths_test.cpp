// Paths as text: their roots and parts, joining them, tokens for folders; properties over random texts.
#include "files/folder_tokens.h"
#include "unit/path_properties.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

using namespace tvut;

namespace {

std::string Shown(std::u16string_view text) {
    return testing::PrintToString(std::u16string(text));
}

constexpr auto ok = UtilResult::ok;
constexpr auto badArgument = UtilResult::badArgument;
constexpr auto unsafe = UtilResult::unsafe;

TEST(Paths, HaveRoots) {
    using enum PathKind;
    const struct {
        std::u16string_view root, rest;
        PathKind kind;
    } rows[] = {
        {u"", u"", relative},
        {u"", u"a\\b", relative},
        {u"", u"1:\\a", relative},
        {u"", u"\u00E4:\\a", relative},
        {u"C:\\", u"a", absolute},
        {u"z:/", u"/a", absolute},
        {u"C:", u"a\\b", relativeToDrive},
        {u"\\", u"a\\b", rooted},
        {u"/", u"", rooted},
        {u"\\\\srv\\share\\", u"a\\b", absolute},
        {u"//srv/share/", u"a", absolute},
        {u"\\\\srv\\share", u"", absolute},
        {u"\\\\srv\\", u"", absolute},
        {u"\\\\srv\\\\x", u"", absolute},
        {u"\\\\\\x\\y\\z", u"", absolute},
        {u"\\\\", u"", absolute},
        {u"\\\\?\\C:\\", u"a/b", absolute},
        {u"//?/C:\\", u"a", absolute},
        {u"\\\\?\\C:", u"", absolute},
        {u"\\\\?\\C:/a\\", u"b", absolute},
        {u"\\\\?\\UNC\\srv\\share\\", u"a", absolute},
        {u"\\\\?\\unc\\srv\\sh/are", u"", absolute},
        {u"\\\\?\\UNC\\srv", u"", absolute},
        {u"\\\\?\\UNC\\\\a\\b", u"", absolute},
        {u"\\\\?\\UNC", u"", absolute},
        {u"\\\\?\\Volume{1}\\", u"a\\b", absolute},
        {u"\\\\.\\pipe/", u"a", absolute},
        {u"\\\\.\\UNC\\", u"srv\\share\\a", absolute},
        {u"\\\\?", u"", absolute},
        {u"\\\\.\\", u"", absolute},
    };
    for (const auto& row : rows) {
        const std::u16string path = std::u16string(row.root).append(row.rest);
        const scPathRoot root = UtilpRootOf(path);
        EXPECT_EQ(root.length, row.root.size()) << Shown(path);
        EXPECT_EQ(root.kind, row.kind) << Shown(path);
        EXPECT_EQ(root.verbatim, path.size() > 3 && path[2] == u'?') << Shown(path);
    }
}

TEST(Paths, FallIntoParts) {
    const scPathParts rows[] = {
        {u"C:\\", u"Data\\x.y\\", u"report", u".prf"},
        {u"\\\\srv\\share\\", u"", u"a", u".b"},
        {u"C:", u"a\\", u".x", u""},
        {u"C:\\", u"Data\\", u"", u""},
        {u"", u"", u"..", u""},
        {u"", u"", u".", u""},
        {u"", u"", u".profile", u""},
        {u"", u"", u"a", u"."},
        {u"", u"b/", u"a.tar", u".gz"},
        {u"", u"", u"..", u"."},
        {u"", u"", u".a", u".b"},
        {u"\\\\?\\C:\\", u"a\\", u"b/c", u".d/e"},
        {u"", u"", u"", u""},
        {u"\\", u"", u"x", u""},
    };
    for (const scPathParts& row : rows) {
        const std::u16string path =
            std::u16string(row.root).append(row.folder).append(row.name).append(row.extension);
        const scPathParts parts = UtilpSplitPath(path);
        EXPECT_EQ(parts.root, row.root) << Shown(path);
        EXPECT_EQ(parts.folder, row.folder) << Shown(path);
        EXPECT_EQ(parts.name, row.name) << Shown(path);
        EXPECT_EQ(parts.extension, row.extension) << Shown(path);
    }
}

TEST(Paths, AreMergedAsMeant) {
    const struct {
        std::u16string_view base, path, merged; // nothing merged: a bad argument
    } rows[] = {
        // one of them
        {u"", u"", u""},
        {u"C:\\a\\", u"", u"C:\\a\\"},
        {u"", u"a/b", u"a\\b"},
        {u"C:\\a", u"D:\\b", u"D:\\b"},
        {u"a", u"\\\\srv/share//b", u"\\\\srv\\share\\b"},
        // from the base's root
        {u"C:\\a\\b", u"\\x", u"C:\\x"},
        {u"C:a", u"/x/", u"C:\\x\\"},
        {u"\\\\srv\\share", u"\\x", u"\\\\srv\\share\\x"},
        {u"\\\\srv\\share\\a", u"\\", u"\\\\srv\\share\\"},
        {u"a\\b", u"\\x", u"\\x"},
        {u"\\\\?\\C:\\a", u"\\x\\..", u"\\\\?\\C:\\x\\.."},
        // on the base's drive
        {u"C:\\a", u"c:b", u"C:\\a\\b"},
        {u"c:", u"C:b", u"c:b"},
        {u"C:\\a\\", u"C:", u"C:\\a"},
        {u"\\\\?\\C:\\a", u"C:b", u"\\\\?\\C:\\a\\b"},
        {u"C:\\a", u"D:b", u""},
        {u"a", u"D:b", u""},
        {u"\\\\srv\\share", u"D:b", u""},
        // below it
        {u"C:\\a", u"b", u"C:\\a\\b"},
        {u"C:\\a\\", u"b\\", u"C:\\a\\b\\"},
        {u"C:/a//b", u"./c//d", u"C:\\a\\b\\c\\d"},
        {u"C:\\a\\b", u"..\\..\\..\\c", u"C:\\c"},
        {u"\\a", u"..\\..\\b", u"\\b"},
        {u"\\\\srv\\share\\a", u"../../b", u"\\\\srv\\share\\b"},
        {u"a\\b", u"..\\..\\..\\c\\d\\..", u"..\\c"},
        {u"..", u"..\\a", u"..\\..\\a"},
        {u"C:..", u"..", u"C:..\\.."},
        {u"C:", u"a", u"C:a"},
        {u"\\", u"srv\\share", u"\\srv\\share"},
        {u"C:\\", u"\u00E4 .\\...", u"C:\\\u00E4 .\\..."},
        // nothing left
        {u"a", u"..", u"."},
        {u"a", u"..\\", u".\\"},
        {u"C:a", u"..", u"C:."},
        {u"C:a", u"..\\", u"C:.\\"},
        {u"C:\\a", u"..", u"C:\\"},
        {u"\\\\srv\\share\\a", u"..", u"\\\\srv\\share\\"},
        {u"", u"//srv/share", u"\\\\srv\\share"},
        // what looks like a drive, and is none
        {u"a", u"..\\C:x", u".\\C:x"},
        {u"", u".\\C:x\\", u".\\C:x\\"},
        // nothing is touched
        {u"", u"\\\\?\\C:\\a/.\\..\\b", u"\\\\?\\C:\\a/.\\..\\b"},
        {u"\\\\?\\C:\\a", u"..\\b/c", u"\\\\?\\C:\\a\\..\\b/c"},
        {u"", u"//srv", u"\\\\srv"},
    };
    for (const auto& row : rows) {
        const scMerged merged = Merged(UtilpMergePaths, row.base, row.path);
        EXPECT_EQ(merged.path, row.merged) << Shown(row.base) << Shown(row.path);
        EXPECT_EQ(merged.result, row.merged.empty() ? badArgument : ok) << Shown(row.base) << Shown(row.path);
    }
}

TEST(Paths, StayInside) {
    const struct {
        std::u16string_view base, path, merged;
        UtilResult result = ok;
    } rows[] = {
        {u"C:\\a", u"b/c", u"C:\\a\\b\\c"},
        {u"C:\\a", u"", u"C:\\a"},
        {u"C:\\a\\..\\b\\", u".\\c\\.\\", u"C:\\b\\c\\"},
        {u"\\\\srv\\share", u"..a\\ b..c", u"\\\\srv\\share\\..a\\ b..c"},
        {u"\\\\?\\C:\\a", u"b\\c\\", u"\\\\?\\C:\\a\\b\\c\\"},
        {u"\\\\.\\x\\", u"a", u"\\\\.\\x\\a"},
        // no folder to stay in
        {u"", u"a", u"", badArgument},
        {u"a", u"b", u"", badArgument},
        {u"\\a", u"b", u"", badArgument},
        {u"C:", u"b", u"", badArgument},
        {u"\\\\srv", u"share\\a", u"", badArgument},
        {u"\\\\", u"srv\\share\\a", u"", badArgument},
        {u"\\\\?\\", u"UNC\\srv\\share\\a", u"", badArgument},
        {u"\\\\?\\UNC\\", u"srv\\share\\a", u"", badArgument},
        {u"\\\\.", u"pipe\\a", u"", badArgument},
        // out of it, or no names
        {u"C:\\a", u"..", u"", unsafe},
        {u"C:\\a", u"b\\..\\c", u"", unsafe},
        {u"C:\\a", u"\\b", u"", unsafe},
        {u"C:\\a", u"C:b", u"", unsafe},
        {u"C:\\a", u"C:\\a\\b", u"", unsafe},
        {u"C:\\a", u"\\\\srv\\share\\b", u"", unsafe},
        {u"C:\\a", u"b:c", u"", unsafe},
        {u"C:\\a", u"nul", u"", unsafe},
        {u"C:\\a", u"com\u00B9.x\\b", u"", unsafe},
        {u"C:\\a", u"b. \\c", u"", unsafe},
        {u"C:\\a", u"b\\c.", u"", unsafe},
        {u"C:\\a", u"b\n", u"", unsafe},
        {u"\\\\?\\C:\\a", u"b/c", u"", unsafe},
        {u"\\\\?\\C:\\a", u".", u"", unsafe},
        {u"\\\\?\\C:\\a", u"b\\\\c", u"", unsafe},
    };
    for (const auto& row : rows) {
        const scMerged merged = Merged(UtilpMergeInside, row.base, row.path);
        EXPECT_EQ(merged.path, row.merged) << Shown(row.base) << Shown(row.path);
        EXPECT_EQ(merged.result, row.result) << Shown(row.base) << Shown(row.path);
    }
}

TEST(Paths, HaveAGreatestLength) {
    const std::u16string longName(longestPath - 3, u'a');
    EXPECT_EQ(Merged(UtilpMergePaths, u"C:\\", longName).path.size(), longestPath);
    EXPECT_EQ(Merged(UtilpMergePaths, u"C:\\", longName + u"a").result, UtilResult::tooLarge);
    EXPECT_EQ(Merged(UtilpMergePaths, u"\\\\?\\C:\\", longName).result, UtilResult::tooLarge);
    std::u16string detours;
    for (int i = 0; i < 20000; ++i)
        detours += u"a/../";
    EXPECT_EQ(Merged(UtilpMergePaths, u"C:\\b", detours + u"c").path, u"C:\\b\\c");
}

// ---- Any text ------------------------------------------------------------------------------------

class clsTexts {
  public:
    explicit clsTexts(unsigned seed) : random_(seed) {}
    std::u16string Next() {
        static constexpr std::u16string_view parts[] = {
            u"\\",     u"\\",     u"\\",    u"/",  u".",
            u"..",     u"?",      u"C:",    u"c:", u"UNC",
            u"srv",    u"a",      u"b",     u" ",  u"*",
            u":",      u"con",    u"nul",   u"\t", u"\xA0",
            u"\xD83D", u"\xDE00", u"x.txt", u"<",  u"a long part of a name",
            u"\u65E5"};
        std::u16string text;
        for (unsigned count = random_() % 9; count != 0; --count)
            text += parts[random_() % std::size(parts)];
        return text;
    }

  private:
    std::mt19937 random_;
};

TEST(AnyText, KeepsItsProperties) {
    const struct {
        std::u16string_view base;
        std::size_t rootComponents;
    } bases[] = {{u"C:\\", 1},           {u"C:\\a\\..\\..\\b/c\\", 1},
                 {u"\\\\srv\\share", 2}, {u"//srv/share/../a", 2},
                 {u"\\\\?\\C:\\a", 2},   {u"\\\\?\\UNC\\srv\\share\\a", 4},
                 {u"\\\\.\\x", 2}};
    clsTexts texts(7);
    int inside = 0;
    for (int i = 0; i < 60000; ++i) {
        const std::u16string text = texts.Next(), other = texts.Next();
        ASSERT_STREQ(FaultOfSplit(text), nullptr) << Shown(text);
        ASSERT_STREQ(FaultOfMerge(text, other), nullptr) << Shown(text) << Shown(other);
        ASSERT_STREQ(FaultOfName(text), nullptr) << Shown(text);
        for (const auto& [base, rootComponents] : bases) {
            ASSERT_STREQ(FaultOfInside(base, rootComponents, text), nullptr) << Shown(base) << Shown(text);
            inside += Merged(UtilpMergeInside, base, text).result == ok;
        }
    }
    EXPECT_GT(inside, 20000);
}

TEST(Names, AreMadeOfTitles) {
    const std::u16string x180(180, u'x'), x300(300, u'x'), pair = u"\xD83D\xDE00";
    const struct {
        std::u16string text, name;
    } rows[] = {
        {u"Report 3/4: \"Sales\" <draft>?.doc", u"Report 3_4_ _Sales_ _draft_.doc"},
        {u"a\\/:b", u"a_b"},
        {u"a\x01?_b", u"a__b"},
        {u" \t a \r\n\u00A0\u3000b\u2028 ", u"a b"},
        {u"a. . .", u"a"},
        {u"..", u"_"},
        {u".profile", u".profile"},
        {u"", u"_"},
        {u" ", u"_"},
        {u"?", u"_"},
        {u"CON", u"CON_"},
        {u"aux.txt", u"aux_.txt"},
        {u"com\u00B2 .a.b", u"com\u00B2_ .a.b"},
        {u"conin$", u"conin$_"},
        {u"CON.", u"CON_"},
        {u"console", u"console"},
        {u"a\xD83D", u"a_"},
        {u"\xDE00\xDE00" + pair, u"__" + pair},
        {x300, x300.substr(0, 200)},
        {x300 + u".txt", x300.substr(0, 196) + u".txt"},
        {x300 + u"." + x180.substr(0, 15), x300.substr(0, 184) + u"." + x180.substr(0, 15)},
        {x180 + x180.substr(0, 19) + u".x" + x180, x180 + x180.substr(0, 19)},
        {x180 + x180.substr(0, 19) + pair + pair, x180 + x180.substr(0, 19)},
        {x180 + x180.substr(0, 15) + pair + pair + u".txt", x180 + x180.substr(0, 15) + u".txt"},
        {u"con." + x300, u"con_." + x300.substr(0, 195)},
    };
    for (const auto& row : rows)
        EXPECT_EQ(MadeName(row.text), row.name) << Shown(row.text);
}

// ---- Tokens --------------------------------------------------------------------------------------

class clsFolders final : public IclsFolders {
  public:
    std::u16string Folder(KnownFolder folder) override { return folders[folder]; }

    std::map<KnownFolder, std::u16string> folders{{KnownFolder::profile, u"C:\\Users\\me"},
                                                  {KnownFolder::documents, u"C:\\Users\\me\\Documents"},
                                                  {KnownFolder::desktop, u"C:\\Users\\me\\Docu"},
                                                  {KnownFolder::temp, u"C:\\Same"},
                                                  {KnownFolder::windows, u"C:\\same"},
                                                  {KnownFolder::pictures, u"D:\\"},
                                                  {KnownFolder::commonDocuments, u"\\\\srv\\share\\all"}};
};

TEST(Tokens, StandForFolders) {
    const struct {
        std::u16string_view path, collapsed;
    } rows[] = {
        {u"C:\\Users\\me\\Documents\\a.txt", u"<Documents>\\a.txt"},
        {u"c:/users/ME/documents/a/", u"<Documents>/a/"},
        {u"C:\\Users\\me\\Documents", u"<Documents>"},
        {u"C:\\Users\\me\\Documentary", u"<Profile>\\Documentary"},
        {u"C:\\Users\\meme", u"C:\\Users\\meme"},
        {u"C:\\Same\\x", u"<Windows>\\x"},
        {u"D:\\", u"<Pictures>\\"},
        {u"d:\\x", u"<Pictures>\\x"},
        {u"D:x", u"D:x"},
        {u"D:", u"D:"},
        {u"\\\\SRV\\share\\all\\a", u"<CommonDocuments>\\a"},
        {u"\\\\srv\\share\\a", u"\\\\srv\\share\\a"},
        {u"", u""},
    };
    clsFolders folders;
    for (const auto& row : rows) {
        std::u16string collapsed, expanded;
        EXPECT_EQ(UtilpCollapsePath(row.path, folders, collapsed), ok);
        EXPECT_EQ(collapsed, row.collapsed) << Shown(row.path);
        EXPECT_EQ(UtilpExpandPath(collapsed, folders, expanded), ok);
        const auto upper = [](std::u16string text) {
            for (char16_t& unit : text)
                unit = unit == u'/' ? u'\\' : unit >= u'a' && unit <= u'z' ? char16_t(unit - 32) : unit;
            return text;
        };
        EXPECT_EQ(upper(expanded), upper(std::u16string(row.path)));
    }
}

TEST(Tokens, AreExpanded) {
    const struct {
        std::u16string_view path, expanded; // nothing expanded: not found
    } rows[] = {
        {u"<dOCUMENTS>\\a", u"C:\\Users\\me\\Documents\\a"},
        {u"<Pictures>/a", u"D:\\a"},
        {u"<Pictures>", u"D:\\"},
        {u"a<Temp>", u"a<Temp>"},
        {u"<Temp>x", u""},
        {u"<Temp", u""},
        {u"<", u""},
        {u"<Nothing>\\a", u""},
        {u"<Fonts>\\a", u""}, // which the system does not name
    };
    clsFolders folders;
    for (const auto& row : rows) {
        std::u16string expanded;
        const UtilResult result = UtilpExpandPath(row.path, folders, expanded);
        EXPECT_EQ(result, row.expanded.empty() ? UtilResult::notFound : ok) << Shown(row.path);
        EXPECT_TRUE(result != ok || expanded == row.expanded) << Shown(row.path);
    }
    std::u16string expanded;
    const std::u16string longPath = u"<Temp>" + std::u16string(longestPath - 7, u'/');
    EXPECT_EQ(UtilpExpandPath(longPath, folders, expanded), ok);
    EXPECT_EQ(UtilpExpandPath(longPath + u"/", folders, expanded), UtilResult::tooLarge);
}

} // namespace
