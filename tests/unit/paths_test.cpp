// Paths as text: their roots and parts, joining them, tokens for folders. What holds for any: fuzz/paths.cpp.
#include "files/folder_tokens.h"
#include "support/cases.h"
#include "unit/path_properties.h"

#include <gtest/gtest.h>

#include <map>

using namespace tvut;

namespace {

std::string Shown(std::u16string_view text) {
    return testing::PrintToString(std::u16string(text));
}

constexpr auto ok = UtilResult::ok;

TEST(Paths, HaveRoots) {
    const std::map<std::u16string, PathKind> kinds{{u"relative", PathKind::relative},
                                                   {u"relativeToDrive", PathKind::relativeToDrive},
                                                   {u"rooted", PathKind::rooted},
                                                   {u"absolute", PathKind::absolute}};
    for (const scCaseRow& row : CaseRows("paths/roots", 3)) {
        const std::u16string path = row[0] + row[1];
        const scPathRoot root = UtilpRootOf(path);
        EXPECT_EQ(root.length, row[0].size()) << row.where;
        EXPECT_EQ(root.kind, kinds.at(row[2])) << row.where;
        EXPECT_EQ(root.verbatim, path.size() > 3 && path[2] == u'?') << row.where;
    }
}

TEST(Paths, FallIntoParts) {
    for (const scCaseRow& row : CaseRows("paths/parts", 4)) {
        const std::u16string path = row[0] + row[1] + row[2] + row[3];
        const scPathParts parts = UtilpSplitPath(path);
        EXPECT_EQ((std::vector<std::u16string>{std::u16string(parts.root), std::u16string(parts.folder),
                                               std::u16string(parts.name), std::u16string(parts.extension)}),
                  row.columns)
            << row.where;
    }
}

TEST(Paths, AreMergedAsMeant) {
    for (const scCaseRow& row : CaseRows("paths/merged", 3)) {
        const scMerged merged = Merged(UtilpMergePaths, row[0], row[1]);
        EXPECT_EQ(merged.path, row[2]) << row.where;
        EXPECT_EQ(merged.result, row[2].empty() ? UtilResult::badArgument : ok) << row.where;
    }
}

TEST(Paths, StayInside) {
    const std::map<UtilResult, std::u16string> faults{{UtilResult::badArgument, u"badArgument"},
                                                      {UtilResult::unsafe, u"unsafe"}};
    for (const scCaseRow& row : CaseRows("paths/inside", 3)) {
        const scMerged merged = Merged(UtilpMergeInside, row[0], row[1]);
        EXPECT_EQ(merged.result == ok ? merged.path : faults.at(merged.result), row[2]) << row.where;
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

TEST(Names, AreMadeOfTitles) {
    for (const scCaseRow& row : CaseRows("paths/names", 2))
        EXPECT_EQ(MadeName(row[0]), row[1]) << row.where;
}

TEST(Names, AreCutBetweenCharactersAndKeepTheirExtension) {
    const auto x = [](std::size_t count) { return std::u16string(count, u'x'); };
    const std::u16string pair = u"\xD83D\xDE00";
    const std::pair<std::u16string, std::u16string> rows[] = {
        {u"\xDE00\xDE00" + pair, u"__" + pair},
        {x(300), x(200)},
        {x(300) + u".txt", x(196) + u".txt"},
        {x(300) + u"." + x(15), x(184) + u"." + x(15)},
        {x(199) + u".x" + x(180), x(199)},
        {x(199) + pair + pair, x(199)},
        {x(195) + pair + pair + u".txt", x(195) + u".txt"},
        {u"con." + x(300), u"con_." + x(195)}};
    for (const auto& [text, name] : rows)
        EXPECT_EQ(MadeName(text), name) << Shown(text);
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
    clsFolders folders;
    const auto same = [](char16_t unit) {
        return unit == u'/' ? u'\\' : unit >= u'a' && unit <= u'z' ? unit - 32 : unit;
    };
    for (const scCaseRow& row : CaseRows("paths/collapsed", 2)) {
        std::u16string collapsed, expanded;
        EXPECT_EQ(UtilpCollapsePath(row[0], folders, collapsed), ok);
        EXPECT_EQ(collapsed, row[1]) << row.where;
        EXPECT_EQ(UtilpExpandPath(collapsed, folders, expanded), ok);
        EXPECT_TRUE(std::ranges::equal(expanded, row[0], {}, same, same)) << row.where;
    }
}

TEST(Tokens, AreExpanded) {
    clsFolders folders;
    for (const scCaseRow& row : CaseRows("paths/expanded", 2)) {
        std::u16string expanded;
        const UtilResult result = UtilpExpandPath(row[0], folders, expanded);
        EXPECT_EQ(result, row[1].empty() ? UtilResult::notFound : ok) << row.where;
        EXPECT_TRUE(result != ok || expanded == row[1]) << row.where;
    }
    std::u16string expanded;
    const std::u16string longPath = u"<Temp>" + std::u16string(longestPath - 7, u'/');
    EXPECT_EQ(UtilpExpandPath(longPath, folders, expanded), ok);
    EXPECT_EQ(UtilpExpandPath(longPath + u"/", folders, expanded), UtilResult::tooLarge);
}

} // namespace
