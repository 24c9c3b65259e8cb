// Addresses, heads of answers and what may become a file, without a network.
#include "files/download_rules.h"
#include "support/cases.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace tvut;

namespace {

constexpr const char* schemeNames[] = {"none", "http", "https"};

std::u16string Shown(std::u16string_view url) {
    clsDiagnosticLine line;
    UtilpPutUrl(line, url);
    return std::u16string(line.View());
}

TEST(DownloadRules, TakeAddresses) {
    for (const scCaseRow& row : CaseRows("download/addresses", 3)) {
        EXPECT_EQ(schemeNames[static_cast<int>(UtilpUrlScheme(row[0]))], NarrowCase(row[1])) << row.where;
        EXPECT_EQ(WideCase(Shown(row[0])), WideCase(row[2])) << row.where;
    }
    const std::u16string longest = u"http://a/" + std::u16string(longestUrl - 9, u'x');
    EXPECT_EQ(UtilpUrlScheme(longest), UrlScheme::http);
    EXPECT_EQ(UtilpUrlScheme(longest + u"x"), UrlScheme::none);
}

TEST(DownloadRules, ReadHeads) {
    for (const scCaseRow& row : CaseRows("download/heads", 3)) {
        const scHttpHead head = UtilpReadHttpHead(row[0]);
        EXPECT_EQ(head.length ? std::to_string(*head.length) : "none", NarrowCase(row[1])) << row.where;
        EXPECT_EQ(std::string(head.isEncoded ? "e" : "") + (head.isChunked ? "c" : ""), NarrowCase(row[2]))
            << row.where;
    }
}

// Lets one thing happen, as the case file has it; false ends it.
bool Happen(clsDownloadRules& rules, const std::u16string& event) {
    const std::string narrow = NarrowCase(event);
    if (narrow.starts_with("-> "))
        return rules.Redirected(event.substr(7), static_cast<unsigned>(std::stoul(narrow.substr(3, 3))));
    if (narrow.starts_with("+"))
        return rules.Received(std::stoull(narrow.substr(1)));
    if (narrow == ".")
        return rules.Completed();
    if (narrow.starts_with("!")) {
        rules.Failed(static_cast<std::uint32_t>(std::stoul(narrow.substr(1), nullptr, 16)));
        return false;
    }
    return rules.Answered(static_cast<unsigned>(std::stoul(narrow)),
                          u"HTTP/1.1 " + event.substr(0, 3) + u" x\n" +
                              event.substr(std::min<std::size_t>(4, event.size())));
}

std::string Reason(const scDownloadFault& fault) {
    clsDiagnosticLine line;
    UtilpPutReason(line, fault);
    return NarrowCase(line.View());
}

TEST(DownloadRules, JudgeWhatHappens) {
    for (const scCaseRow& row : CaseRows("download/rules", 5)) {
        const bool httpsOnly = row[1].starts_with(u's');
        clsDownloadRules rules(row[0], httpsOnly, std::stoull(NarrowCase(row[1].substr(httpsOnly ? 1 : 0))));
        bool goesOn = !rules.Fault();
        for (std::size_t at = 0, end = 0; end != row[2].npos; at = end + 1) {
            end = row[2].find(u'|', at);
            const bool now = Happen(rules, row[2].substr(at, end == row[2].npos ? end : end - at));
            EXPECT_TRUE(goesOn || !now) << "went on after a fault: " << row.where;
            goesOn = now;
        }
        EXPECT_EQ(goesOn, !rules.Fault()) << row.where;
        EXPECT_EQ(std::to_string(static_cast<int>(UtilpResultOf(rules.Fault()))), NarrowCase(row[3]))
            << row.where;
        EXPECT_EQ(Reason(rules.Fault()), NarrowCase(row[4])) << row.where;
    }
}

TEST(DownloadRules, FollowTenRedirections) {
    for (const unsigned count : {10u, 11u}) {
        clsDownloadRules rules(u"http://a/", false, 10);
        for (unsigned number = 0; number < count; ++number)
            EXPECT_EQ(rules.Redirected(u"http://a/", 307), number < 10);
        EXPECT_EQ(rules.Status(), 307u);
        EXPECT_EQ(rules.Answered(200, u"Content-Length: 0"), count == 10);
        EXPECT_EQ(Reason(rules.Fault()), count == 10 ? "" : "too many redirections");
        EXPECT_EQ(static_cast<int>(UtilpResultOf(rules.Fault())), count == 10 ? 0 : UTIL_SERVER_REFUSED);
    }
}

} // namespace
