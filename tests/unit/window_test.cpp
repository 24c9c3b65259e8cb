// Help targets, owners of messages, and the list of handles against a plain model.
#include "support/cases.h"
#include "window/handle_list.h"
#include "window/help_target.h"
#include "window/message_names.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <random>

using namespace tvut;

namespace {

// ---- Help ------------------------------------------------------------------------------------------

TEST(HelpTargets, AreMadeOfFileAndPage) {
    const std::map<std::string, HelpPage> pages{
        {"topic", HelpPage::topic}, {"context", HelpPage::context}, {"keyword", HelpPage::keyword}};
    const std::map<std::string, HelpCall> calls{
        {"none", HelpCall::none},
        {"displayTopic", HelpCall::displayTopic},
        {"displayIndex", HelpCall::displayIndex},
        {"helpContext", HelpCall::helpContext},
        {"keywordLookup", HelpCall::keywordLookup},
        {"openAddress", HelpCall::openAddress},
        {"openFile", HelpCall::openFile},
    };
    for (const scCaseRow& row : CaseRows("window/help_targets", 5)) {
        scHelpRequest request{pages.at(NarrowCase(row[1])), row[2]};
        if (request.page == HelpPage::context)
            request.id = static_cast<std::uint32_t>(std::stoul(NarrowCase(row[2])));
        const scHelpTarget target = UtilpHelpTarget(row[0], request);
        EXPECT_EQ(target.call, calls.at(NarrowCase(row[3]))) << row.where;
        EXPECT_EQ(target.text, row[4]) << row.where;
    }
}

TEST(HelpTargets, FindFoldersForCopies) {
    const std::u16string folder = UtilpHelpCopyFolder(u"C:\\a.chm");
    EXPECT_EQ(folder, u"c0ee907823d62777") << "other processes and later versions find the same copy";
    EXPECT_NE(folder, UtilpHelpCopyFolder(u"C:\\b.chm"));
}

TEST(HelpTargets, KnowFilesFromOutside) {
    for (const auto& [mark, isOutside] : std::map<std::string, bool>{
             {"[ZoneTransfer]\r\nZoneId=3\r\n", true},
             {"[ZoneTransfer]\nReferrerUrl=http://x/ZoneId=1\nZoneId=4", true},
             {"ZoneId=3", true},
             {"[ZoneTransfer]\r\nZoneId=2\r\n", false},
             {"XZoneId=3\n", false},
             {"ZoneId=", false},
             {"", false},
         })
        EXPECT_EQ(UtilpIsFromOutside(mark), isOutside) << mark;
}

// ---- Messages --------------------------------------------------------------------------------------

TEST(MessageOwners, AreClassesOrPartsOfTheirNames) {
    const std::map<std::u16string, MessageOwner> owners{
        {u"ToolbarWindow32", MessageOwner::toolbar},
        {u"TOOLBARWINDOW32", MessageOwner::toolbar},
        {u"WindowsForms10.RichEdit20W.app.0.2bf8098", MessageOwner::richEdit},
        {u"WindowsForms10.msctls_progress32", MessageOwner::progress},
        {u"#32770", MessageOwner::dialog},
        {u"a..SysMonthCal32.", MessageOwner::monthCalendar},
        {u"Edit", MessageOwner::none},
        {u"ToolbarWindow321", MessageOwner::none},
        {u"oolbarWindow32", MessageOwner::none},
        {u"", MessageOwner::none},
    };
    for (const auto& [name, owner] : owners)
        EXPECT_EQ(UtilpMessageOwner(name), owner) << std::string(name.begin(), name.end());
}

// ---- Handles ---------------------------------------------------------------------------------------

// Stacks are numbers here, and so are their frames.
clsHandleStack Stack(std::uintptr_t number) {
    std::vector<const void*> frames(1 + number % 20); // more than are kept, too
    for (std::size_t i = 0; i < frames.size(); ++i)
        frames[i] = reinterpret_cast<const void*>(number * 64 + i);
    return clsHandleStack(frames);
}

struct scModelEntry {
    std::uint8_t kind;
    std::u16string label;
    std::uintptr_t stack;
    std::uint32_t addition, mark;
};

class clsModel {
  public:
    void Step(std::mt19937& random) {
        const std::uint32_t handle = random() % 3000 * 4 + 4;
        const auto kind = static_cast<std::uint8_t>(random() % 5 + 1);
        if (const unsigned what = random() % 20; what == 0)
            EXPECT_EQ(list.Mark(), ++marks);
        else if (what < 11)
            Add(handle, kind, random() % 50);
        else
            Remove(handle, what < 14 ? clsHandleList::anyKind : kind);
    }

    void Add(std::uint32_t handle, std::uint8_t kind, std::uintptr_t stack) {
        const std::u16string label(stack % 40, static_cast<char16_t>(u'a' + stack % 26));
        scKeptHandle old;
        const auto added = list.Add({handle, kind, label, additions}, Stack(stack), old);
        const auto before = entries.find(handle);
        EXPECT_EQ(added,
                  before == entries.end() ? clsHandleList::Added::asNew : clsHandleList::Added::inPlace);
        if (before != entries.end()) {
            EXPECT_TRUE(IsSame(old, handle, before->second));
        }
        entries[handle] = {kind, label.substr(0, clsHandleNote::longestLabel), stack, additions++, marks};
    }

    void Remove(std::uint32_t handle, std::uint8_t kind) {
        const auto entry = entries.find(handle);
        const auto expected = entry == entries.end() ? clsHandleList::Removed::notThere
                              : kind != clsHandleList::anyKind && kind != entry->second.kind
                                  ? clsHandleList::Removed::otherKind
                                  : clsHandleList::Removed::yes;
        EXPECT_EQ(list.Remove(handle, kind), expected);
        if (expected == clsHandleList::Removed::yes)
            entries.erase(entry);
    }

    void Compare(std::uint8_t kind, std::uint32_t mark, std::size_t mostGroups) {
        std::map<std::uintptr_t, std::vector<std::uint32_t>> byStack; // handles
        std::uint32_t ofKind = 0, since = 0;
        for (const auto& [handle, entry] : entries) {
            const bool counts = kind == clsHandleList::anyKind || kind == entry.kind;
            ofKind += counts;
            if (counts && entry.mark >= mark && ++since)
                byStack[entry.stack].push_back(handle);
        }
        EXPECT_EQ(list.Count(kind), ofKind);
        EXPECT_EQ(list.CountSince(kind, mark), since);
        const scHandlesLeft left = list.Left(kind, mark, mostGroups);
        EXPECT_EQ(left.handles, since);
        EXPECT_EQ(left.stacks, byStack.size());
        ASSERT_EQ(left.groups.size(), std::min(mostGroups, byStack.size()));
        std::uint32_t most = ~0u;
        for (const scHandleGroup& group : left.groups) {
            EXPECT_LE(group.handles, std::exchange(most, group.handles));
            CompareGroup(group, byStack);
        }
    }

    clsHandleList list;
    std::map<std::uint32_t, scModelEntry> entries;
    std::uint32_t additions = 0, marks = 0;

  private:
    static bool IsSame(const scKeptHandle& kept, std::uint32_t handle, const scModelEntry& entry) {
        return kept.note.Handle() == handle && kept.note.Kind() == entry.kind &&
               kept.note.Label() == entry.label && kept.note.AddedAt() == entry.addition &&
               kept.stack == Stack(entry.stack);
    }

    void CompareGroup(const scHandleGroup& group,
                      const std::map<std::uintptr_t, std::vector<std::uint32_t>>& byStack) {
        const std::uint32_t first = group.first.note.Handle();
        const scModelEntry& entry = entries.at(first);
        EXPECT_TRUE(IsSame(group.first, first, entry));
        const auto& handles = byStack.at(entry.stack);
        EXPECT_EQ(group.handles, handles.size());
        for (const std::uint32_t handle : handles)
            EXPECT_LE(entry.addition, entries.at(handle).addition);
    }
};

TEST(HandleLists, DoWhatAModelDoes) {
    std::mt19937 random(18);
    clsModel model;
    for (int round = 0; round < 40; ++round) {
        for (int step = 0; step < 500; ++step)
            model.Step(random);
        for (std::uint8_t kind = 0; kind < clsHandleList::kinds; ++kind)
            model.Compare(kind, random() % (model.marks + 1), round % 3 == 0 ? 7 : 100);
    }
    while (!model.entries.empty())
        model.Remove(model.entries.begin()->first, clsHandleList::anyKind);
    model.Compare(clsHandleList::anyKind, 0, 100);
}

// Stacks 2 and 22 are cut to the same number of frames; whoever shares a stack stands together.
TEST(HandleLists, LeaveOutWhatWasTakenOutMeanwhile) {
    clsHandleList list;
    scKeptHandle old;
    for (std::uint32_t handle = 1; handle <= 100; ++handle)
        list.Add({handle, static_cast<std::uint8_t>(1 + handle % 2), u"", 0}, Stack(handle % 3 * 20 + 2),
                 old);
    const std::vector<scHandleEntry> entries = list.Entries(1);
    ASSERT_EQ(entries.size(), 50u);
    list.Remove(2, 1);
    list.Add({4, 1, u"again", 0}, Stack(2), old); // a new one of the same value
    const std::vector<scKeptHandle> kept = list.StillIn(entries);
    ASSERT_EQ(kept.size(), 48u);
    std::size_t changes = 0;
    for (std::size_t i = 0; i < kept.size(); ++i) {
        EXPECT_NE(kept[i].note.Handle(), 2u);
        EXPECT_NE(kept[i].note.Handle(), 4u);
        changes += i == 0 || kept[i].stack != kept[i - 1].stack;
    }
    EXPECT_EQ(changes, 3u);
}

} // namespace
