// Changes to the text of plain INI files: what becomes of it, and that the library then reads the old tree
// with that one change.
#include "plain_ini_edit.h"

#include "prof/path.h"
#include "support/cases.h"
#include "unit/native_platform.h"

#include <gtest/gtest.h>
#include <random>

using namespace tvut;
using tool::prof::clsPlainIniText;

namespace {

struct scEdit {
    std::u16string operation, section, name, value;

    clsPlainIniText::Section Section() const {
        return section == u"-" ? std::nullopt : clsPlainIniText::Section{section};
    }
};

std::u16string Edited(const std::u16string& text, const scEdit& edit) {
    clsPlainIniText ini{text};
    if (edit.operation == u"set")
        ini.Set(edit.Section(), edit.name, edit.value);
    else if (edit.operation == u"delete")
        ini.DeleteItems({{edit.Section() ? std::optional{edit.section} : std::nullopt, edit.name}});
    else
        ini.DeleteSections({edit.section});
    return ini.Text();
}

TEST(PlainIniEdit, GivesTheseTexts) {
    for (const scCaseRow& row : CaseRows("forms/plain_ini_edits", 6))
        EXPECT_EQ(Edited(row[0], {row[1], row[2], row[3], row[4]}), row[5]) << row.where;
}

TEST(PlainIniEdit, KnowsWhatALineCannotHold) {
    using namespace tool::prof;
    for (const char16_t* name : {u" a", u"a\t", u"a=b", u"[a", u"#a", u";a", u"a\nb", u"a\rb"})
        EXPECT_FALSE(IsIniItemName(name)) << testing::PrintToString(name);
    for (const char16_t* value : {u" a", u"a ", u"\t", u"a\nb", u"a\r"})
        EXPECT_FALSE(IsIniValue(value)) << testing::PrintToString(value);
    EXPECT_FALSE(IsIniValue(std::u16string_view{u"a\0b", 3}));
    EXPECT_FALSE(IsIniSectionName(u"a\n"));
    EXPECT_TRUE(IsIniItemName(u"a b]#") && IsIniSectionName(u" a]=# ") && IsIniValue(u"\"[ = ;#\""));
}

// Items above the lists: in a tree one that is set later stands after them, in the text it cannot.
std::u16string ItemsFirst(const clsItemList& root) {
    std::u16string items, lists;
    for (std::uint32_t at = 0; at < root.End(); ++at) {
        const clsItem& entry = root.At(at);
        if (entry.IsItem())
            items.append(entry.Name()).append(u"=").append(entry.Value()).append(u";");
        else if (entry.IsList())
            lists.append(entry.Name()).append(u"{").append(Describe(*entry.subList)).append(u"}");
    }
    return items + lists;
}

std::u16string TreeOf(const std::u16string& text, const scEdit* edit) {
    clsTree tree(true);
    Load(tree, "\xff\xfe" + Utf16Bytes(text), ReadMode::plainIni);
    if (edit) {
        const std::u16string path =
            u"/" + (edit->section == u"-" ? edit->name : edit->section + u"/" + edit->name);
        if (edit->operation == u"set")
            ProfpSetItem(tree.Root(), path, edit->value);
        else if (edit->operation == u"delete")
            ProfpRemove(tree.Root(), EntryKind::item, path);
        else
            ProfpRemove(tree.Root(), EntryKind::list, edit->section);
    }
    return ItemsFirst(tree.Root());
}

// CR and LF end a line each: where a line between them goes, they are a pair.
std::vector<std::u16string> LinesOf(const std::u16string& text) {
    std::vector<std::u16string> lines;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (at == 0 || text[at - 1] == u'\n' || text[at - 1] == u'\r')
            lines.emplace_back();
        lines.back() += text[at];
    }
    return lines;
}

// Whether all lines of one text are in the other one in their order.
bool IsPartOf(const std::u16string& text, const std::u16string& whole) {
    const std::vector<std::u16string> all = LinesOf(whole);
    auto at = all.begin();
    for (const std::u16string& line : LinesOf(text)) {
        at = std::find(at, all.end(), line);
        if (at == all.end())
            return false;
        ++at;
    }
    return true;
}

// Whether all that one text has and the other has not is one piece, within a line.
bool IsKeptButForOneLine(const std::u16string& text, const std::u16string& edited) {
    const auto begin = std::mismatch(text.begin(), text.end(), edited.begin(), edited.end()).first;
    const std::reverse_iterator from(begin);
    const auto end = std::mismatch(text.rbegin(), from, edited.rbegin(), edited.rend()).first.base();
    return std::none_of(begin, std::max(begin, end),
                        [](char16_t unit) { return unit == u'\r' || unit == u'\n'; });
}

TEST(PlainIniEdit, ChangesThatAloneInAnyText) {
    const std::u16string pieces[] = {u"a", u"b",   u"=",   u" ",   u"\t", u"\r\n", u"\n",     u"\r",
                                     u"[", u"[S]", u"[T]", u"]",   u";",  u"#",    u"\"",     u"a=1",
                                     u"{", u"\n",  u"\n",  u"b =", u"\n", u"\n",   u"\n[S]\n"};
    const std::u16string sections[] = {u"-", u"S", u"T", u"", u"new"}, names[] = {u"a", u"b", u"", u"new"},
                         values[] = {u"", u"1", u"\" = ;#[ \""}, operations[] = {u"set", u"delete", u"drop"};
    std::mt19937 random(20);
    const auto any = [&](const auto& of) { return of[random() % std::size(of)]; };
    for (int round = 0; round < 20'000; ++round) {
        std::u16string text;
        for (unsigned left = random() % 30; left > 0; --left)
            text += any(pieces);
        const scEdit edit{any(operations), any(sections), any(names), any(values)};
        if (edit.operation == u"drop" && edit.section == u"-")
            continue;
        const std::u16string edited = Edited(text, edit);
        ASSERT_EQ(TreeOf(edited, nullptr), TreeOf(text, &edit)) << testing::PrintToString(text);
        ASSERT_TRUE(edit.operation == u"set" ? IsKeptButForOneLine(text, edited) : IsPartOf(edited, text))
            << testing::PrintToString(text);
    }
}

} // namespace
