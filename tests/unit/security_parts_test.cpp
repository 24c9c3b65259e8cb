// Network paths over tables of drives, texts of accounts, and lists of rights as bytes.
#include "files/access_bits.h"
#include "files/access_entries.h"
#include "files/network_path.h"
#include "platform/letter_case.h"
#include "support/cases.h"
#include "unit/native_platform.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

using namespace tvut;

namespace {

// What drives lead to: S and T to a server, T by a connection that is not up, the same as U; V to a disk, W,
// X and Y by subst; D to K one to the next, L one too many; Q and R to each other.
class clsTable final : public IclsConnections {
  public:
    std::u16string Device(char16_t letter) override {
        static const std::map<char16_t, std::u16string> others{
            {u'C', u"\\Device\\HarddiskVolume1"},
            {u'S', u"\\Device\\LanmanRedirector\\;S:0\\srv\\share"},
            {u'V', u"\\??\\C:\\Data"},
            {u'W', u"\\??\\S:\\w"},
            {u'X', u"\\??\\W:\\x\\"},
            {u'Y', u"\\??\\UNC\\srv2\\pub\\y"},
            {u'K', u"\\??\\S:\\k"},
            {u'L', u"\\??\\D:\\l"},
            {u'Q', u"\\??\\R:\\"},
            {u'R', u"\\??\\Q:\\r"}};
        if (letter >= u'D' && letter < u'K')
            return std::u16string(u"\\??\\") + static_cast<char16_t>(letter + 1) + u":\\" +
                   static_cast<char16_t>(letter | 0x20);
        const auto found = others.find(letter);
        return found == others.end() ? std::u16string() : found->second;
    }
    std::u16string RemoteName(char16_t letter) override {
        switch (letter) {
        case u'S':
            return u"\\\\srv\\share";
        case u'T':
            return u"\\\\Srv\\share\\team\\";
        case u'U':
            return u"\\\\srv\\share\\Team";
        default:
            return {};
        }
    }
    std::vector<std::u16string> ComputerNames() override { return {u"HERE", u"here.example.org"}; }
    std::u16string SharedFolder(std::u16string_view share) override {
        for (const auto& [name, folder] : {std::pair(u"docs", u"C:\\Docs"), std::pair(u"root", u"C:\\"),
                                           std::pair(u"printer", u"printer,LocalsplOnly")})
            if (PlatformCompareIgnoringCase(share, name) == 0)
                return folder;
        return {};
    }
};

using Turn = UtilResult(std::u16string_view, IclsConnections&, std::u16string&);

std::u16string Turned(Turn* turn, std::u16string_view path) {
    clsTable table;
    std::u16string turned = u"untouched";
    DiagnosticLines().clear();
    const UtilResult result = turn(path, table, turned);
    if (result == UtilResult::ok)
        return turned;
    EXPECT_EQ(turned, u"untouched");
    if (!DiagnosticLines().empty())
        return DiagnosticLines().back() ==
                       u"WRN: UtilPathToNetwork('" + std::u16string(path) + u"'): subst goes round"
                   ? u"goes round"
                   : DiagnosticLines().back();
    return result == UtilResult::notFound ? u"notFound" : u"badArgument";
}

TEST(NetworkPaths, AreFoundByWhatDrivesLeadTo) {
    for (const scCaseRow& row : CaseRows("security/to_network", 2))
        EXPECT_EQ(Turned(UtilpPathToNetwork, row[0]), row[1]) << row.where;
}

TEST(NetworkPaths, BecomeLocalByTheNearestDriveOrAShare) {
    for (const scCaseRow& row : CaseRows("security/to_local", 2))
        EXPECT_EQ(Turned(UtilpPathToLocal, row[0]), row[1]) << row.where;
}

TEST(NetworkPaths, EndWhereTheSystemsPathsEnd) {
    const std::u16string most(32767 - 3, u'a');
    EXPECT_EQ(Turned(UtilpPathToNetwork, u"S:\\" + most), u"badArgument");
    EXPECT_EQ(Turned(UtilpPathToNetwork, u"S:\\" + most.substr(9)), u"\\\\srv\\share\\" + most.substr(9));
    EXPECT_EQ(Turned(UtilpPathToLocal, u"C:\\a" + most), u"badArgument");
}

TEST(Accounts, HaveCanonicalSids) {
    for (const scCaseRow& row : CaseRows("security/sids", 2)) {
        const std::optional<scSid> sid = PlatformParseSid(row[0]);
        EXPECT_EQ(sid ? std::u16string(clsSidText(*sid).View()) : u"", row[1]) << row.where;
    }
}

TEST(Accounts, AreSplitAtOneSeparator) {
    const auto split = [](std::u16string_view account) {
        const std::optional<scAccountName> name = PlatformSplitAccount(account);
        return name ? std::u16string(name->domain).append(u"|").append(name->name) : u"none";
    };
    EXPECT_EQ(split(u"OFFICE\\ann"), u"OFFICE|ann");
    EXPECT_EQ(split(u".\\ann"), u".|ann");
    EXPECT_EQ(split(u"ann@office.example"), u"|ann@office.example");
    for (const std::u16string& none :
         {std::u16string(), std::u16string(u"\\ann"), std::u16string(u"OFFICE\\"), std::u16string(u"a\\b\\c"),
          std::u16string(513, u'a')})
        EXPECT_EQ(split(none), u"none");
}

// ---- Lists of rights -----------------------------------------------------------------------------------

constexpr std::string_view letters = "AD   OP  ad"; // at the numbers of their types

using Bytes = std::vector<std::byte>;

void Put(Bytes& bytes, std::uint32_t number, std::size_t count) {
    for (std::size_t at = 0; at < count; ++at)
        bytes.push_back(static_cast<std::byte>(number >> 8 * at));
}

scSid Account(char digit) {
    return *PlatformParseSid(std::u16string(u"S-1-5-21-") + static_cast<char16_t>(digit));
}

Bytes Entry(std::string_view text) {
    Bytes entry;
    const std::size_t type = letters.find(text[0]);
    const bool isObject = type == 5 || type == 6;
    Put(entry, static_cast<std::uint32_t>(type), 1);
    Put(entry, text[1] == 'i' ? 0x10 : 0, 1);
    Put(entry, isObject ? 28 : 24, 2);
    Put(entry, 1, 4); // the mask
    if (isObject)
        Put(entry, 0, 4);
    Put(entry, 0x0201, 2);
    Put(entry, 0, 4);
    Put(entry, 0x0500, 2);
    Put(entry, 21, 4);
    Put(entry, static_cast<std::uint32_t>(text.back() - '0'), 4);
    return entry;
}

Bytes List(const std::string& text) {
    std::istringstream words(text);
    Bytes entries, list;
    std::uint32_t count = 0;
    for (std::string word; words >> word; ++count) {
        const Bytes entry = Entry(word);
        entries.insert(entries.end(), entry.begin(), entry.end());
    }
    Put(list, 4, 2); // the revision, which stays
    Put(list, static_cast<std::uint32_t>(8 + entries.size()), 2);
    Put(list, count, 4);
    list.insert(list.end(), entries.begin(), entries.end());
    return list;
}

// The bytes of a list as its text; those of an entry that the text cannot say are "?".
std::string Described(const Bytes& list) {
    std::string text;
    for (std::size_t at = 8; at < list.size();) {
        const auto size = std::to_integer<std::size_t>(list[at + 2]);
        const Bytes entry(list.begin() + static_cast<std::ptrdiff_t>(at),
                          list.begin() + static_cast<std::ptrdiff_t>(at + size));
        const char account = static_cast<char>('0' + std::to_integer<int>(entry[size - 4]));
        const auto flags = std::to_integer<int>(entry[1]);
        std::string word(1, letters.at(std::to_integer<std::size_t>(entry[0])));
        word += flags == 0x10 ? "i" : "";
        word += account;
        Bytes granted = Entry(std::string("A") + account);
        granted[1] = std::byte{3};
        const std::uint32_t mask = UtilpAccessMask(access::read);
        std::memcpy(&granted[4], &mask, sizeof mask);
        text += (text.empty() ? "" : " ") + (entry == Entry(word) ? word
                                             : entry == granted   ? std::string("G") + account
                                                                  : "?");
        at += size;
    }
    EXPECT_EQ(list, [&] {
        Bytes same = List(text);
        std::copy(list.begin() + 8, list.end(), same.begin() + 8);
        return same;
    }()) << "the head says something else";
    return text;
}

std::string Granted(const Bytes& list, std::uint32_t rights) {
    Bytes result;
    const UtilResult outcome = UtilpGrantInList(list, {Account('1'), UtilpAccessMask(rights), true}, result);
    return outcome == UtilResult::ok         ? Described(result)
           : outcome == UtilResult::tooLarge ? "tooLarge"
                                             : "damaged";
}

TEST(AccessLists, GiveAnAccountExactlyItsRights) {
    for (const scCaseRow& row : CaseRows("security/grants", 3)) {
        const Bytes list = List(NarrowCase(row[0]));
        EXPECT_EQ(Granted(list, access::read), NarrowCase(row[1])) << row.where;
        EXPECT_EQ(Granted(list, 0), NarrowCase(row[2])) << row.where;
    }
}

TEST(AccessLists, EndAt64KB) {
    std::string text;
    for (int entry = 0; entry < 2729; ++entry) // 65,504 bytes
        text += "A2 ";
    EXPECT_EQ(Granted(List(text), access::read).size(), text.size() + 2);
    EXPECT_EQ(Granted(List(text + "A2 "), access::read), "tooLarge");
    EXPECT_EQ(Granted(List(text + "A1 "), access::read).size(), text.size() + 2);
}

TEST(AccessLists, ThatAreDamagedAreSaidToBe) {
    const Bytes whole = List("A2 D1");
    for (std::size_t length = 0; length < whole.size(); ++length) // the head's length is beyond the end
        EXPECT_EQ(Granted(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)), 1),
                  "damaged");
    for (const auto& [place, value] :
         {std::pair(4, 3), std::pair(10, 0), std::pair(10, 200), std::pair(2, 7)}) {
        Bytes list = whole;
        list[static_cast<std::size_t>(place)] = static_cast<std::byte>(value);
        EXPECT_EQ(Granted(list, access::read), "damaged") << place;
    }
}

TEST(AccessLists, KnowRightsByTheirBits) {
    EXPECT_EQ(UtilpAccessMask(access::read | access::write), 0x0012019Fu);
    EXPECT_EQ(UtilpAccessMask(access::all), 0x001F01BFu);
}

} // namespace
