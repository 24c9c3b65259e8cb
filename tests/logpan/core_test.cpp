// The viewer's logic: joining, counting, holding, filtering and printing lines.
#include "columns.h"
#include "elapsed.h"
#include "highlights.h"
#include "log_reader.h"
#include "process_cache.h"
#include "saved_line.h"
#include "search.h"
#include "severity.h"
#include "text_message.h"

#include "support/cases.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

namespace tool::logpan {

using tvut::CaseRows, tvut::NarrowCase, tvut::scCaseRow, tvut::WideCase;

namespace {

using namespace std::chrono_literals;

// A joiner under a clock of its own. Each line's text is its result.
struct scBench {
    clsJoiner joiner;
    clsJoiner::Clock::time_point now{};

    void AddPacket(std::uint16_t port, char digit, std::wstring_view text, std::uint32_t thread = 1,
                   bool full = false) {
        scPacket packet;
        packet.thread = thread;
        packet.sequence = static_cast<std::uint32_t>(digit);
        packet.text = text;
        packet.full = full;
        joiner.Add(port, packet, now);
    }
    void AddMessage(std::wstring_view text) { joiner.AddText(text, {2024, 1, 31, 9, 8, 7, 6}, now); }

    std::wstring Taken() {
        std::wstring texts;
        while (const std::optional<scLine> line = joiner.Take(now))
            texts += line->text + L"|";
        return texts;
    }
    scLine One(std::chrono::milliseconds time = clsJoiner::moment) {
        now += time;
        return joiner.Take(now).value();
    }
    std::wstring TakenAfter(std::chrono::milliseconds time) {
        now += time;
        return Taken();
    }
};

LinePtr LineOf(std::wstring text, std::wstring module = L"KX32UTIL") {
    scLine line;
    line.text = std::move(text);
    line.module = std::move(module);
    return std::make_shared<const scLine>(std::move(line));
}

scStamp StampOf(const std::u16string& column) {
    std::istringstream numbers(NarrowCase(column));
    scStamp time;
    for (std::uint16_t* field :
         {&time.year, &time.month, &time.day, &time.hour, &time.minute, &time.second, &time.millisecond})
        numbers >> *field;
    return time;
}

// What filters and rules choose from.
std::vector<scLine> Samples() {
    const auto kontor = std::make_shared<const scProcess>(scProcess{100, L"kontor.exe"});
    const auto archive = std::make_shared<const scProcess>(scProcess{4711, L"archive.exe"});
    const auto nameless = std::make_shared<const scProcess>(scProcess{12, L""});
    return {{{}, L"KXPRINT", 0x1b0, 0, 0, 0, kontor, 0, L"alpha"},
            {{}, L"two words", 0x1b0, 0, 0, 0, nullptr, 0, L"WRN: tray 3"},
            {{}, L"Archive", 0x7e4, 0, 0, 0, archive, 0, L"ERR: alpha"},
            {{}, L"", 0x1b0, 0, 0, 0, kontor, 0, L"beta"},
            {{}, L"KXPRINT", 0x7e5, 0, 0, 0, nameless, 0, L"alpha \"a \"b\"\""}};
}

void AddTo(clsStore& store, int number, std::wstring text = {}) {
    if (text.empty())
        text = L"line " + std::to_wstring(number);
    scPacket packet;
    packet.sequence = static_cast<std::uint32_t>('0' + number % 10);
    packet.text = text;
    store.Add(7, packet);
}

} // namespace

TEST(Joiner, JoinsPiecesAndKeepsTheOrderOfBeginnings) {
    scBench bench;
    bench.AddPacket(1, '0', L"one ", 1, true);
    bench.AddPacket(2, '5', L"other");
    bench.AddPacket(1, '0', L"two ", 1, true);
    bench.AddPacket(2, '6', L"next");
    EXPECT_EQ(bench.Taken(), L"") << "what began first may still go on";
    bench.AddPacket(1, '0', L"three");
    EXPECT_EQ(bench.TakenAfter(clsJoiner::moment), L"one two three|other|next|");
    bench.AddPacket(1, '0', L"late piece");
    bench.AddPacket(1, '1', L"new");
    EXPECT_EQ(bench.TakenAfter(clsJoiner::moment), L"late piece|new|");
    EXPECT_EQ(bench.joiner.Missing(), 0u) << "a piece of a line that was shown is no gap";
}

TEST(Joiner, WaitsLongerForALineThatFilledItsDatagram) {
    scBench bench;
    bench.AddPacket(1, '0', L"full", 1, true);
    EXPECT_EQ(bench.TakenAfter(clsJoiner::moment), L"");
    EXPECT_EQ(bench.TakenAfter(clsJoiner::longWhile), L"full|");
    for (auto waited = 0ms; waited < clsJoiner::longest; waited += 500ms) {
        bench.AddPacket(1, '1', L".", 1, true);
        EXPECT_EQ(bench.TakenAfter(500ms) == L"", waited + 500ms < clsJoiner::longest)
            << "endless pieces end";
    }
}

TEST(Joiner, CountsMissingLinesBySender) {
    scBench bench;
    std::uint32_t thread = 1; // another one each time: no line is a piece of the one before
    for (const char digit : {'8', '9', '0', '4', '5', '5', 'x', '2', '3'})
        bench.AddPacket(1, digit, L"", thread++);
    EXPECT_EQ(bench.joiner.Missing(), 3u + 9u);
    bench.AddPacket(2, '7', L"");
    bench.AddPacket(2, '9', L"");
    EXPECT_EQ(bench.joiner.Missing(), 3u + 9u + 1u);
}

TEST(Joiner, IsBounded) {
    scBench bench;
    const std::wstring piece(30'000, L'x');
    for (int at = 0; at < 5; ++at)
        bench.AddPacket(1, '0', piece, 1, true);
    const std::wstring cut = bench.One(clsJoiner::longest).text;
    EXPECT_EQ(cut.size(), longestLine);
    EXPECT_EQ(cut.back(), L'\u2026');

    std::size_t early = 0;
    for (unsigned at = 0; at < 20'000; ++at) {
        bench.AddPacket(static_cast<std::uint16_t>(at), '0', at % 4 == 0 ? std::wstring_view{piece} : L"", at,
                        true);
        while (bench.joiner.Take(bench.now))
            ++early;
    }
    EXPECT_GT(early, 15'000u) << "a flood pushes lines out that are not complete";
}

// Without indentation and line end. The library's own reports bear the host program's name in their text. One
// that is longer than its columns counts once it is known: a colon after a word is common.
TEST(Joiner, TakesLinesApart) {
    const std::map<std::u16string, Severity> severities{
        {u"none", Severity::none}, {u"warning", Severity::warning}, {u"error", Severity::error}};
    scBench bench;
    unsigned number = 0;
    for (const scCaseRow& row : CaseRows("logpan/reports", 5)) {
        bench.AddPacket(1, static_cast<char>('0' + number++ % 10), WideCase(row[0]));
        const scLine line = bench.One();
        EXPECT_EQ(line.module, WideCase(row[1])) << row.where;
        EXPECT_EQ(std::to_string(line.level), NarrowCase(row[2])) << row.where;
        EXPECT_EQ(line.text, WideCase(row[3])) << row.where;
        EXPECT_EQ(SeverityOf(line.text), severities.at(row[4])) << row.where;
    }
}

TEST(TextMessage, IsTakenApartWhereItHasColumns) {
    for (const scCaseRow& row : CaseRows("logpan/messages", 2)) {
        const std::wstring message = WideCase(row[0]);
        ASSERT_EQ(ParseTextMessage(message).has_value(), !row[1].empty()) << row.where;
        if (row[1].empty())
            continue;
        scBench bench; // which splits off the indentation
        bench.AddMessage(message);
        EXPECT_EQ(PlainLine(bench.One()), WideCase(row[1])) << row.where;
    }
}

TEST(TextMessage, GoesOnAfterOneThatIsFull) {
    scBench bench;
    const std::wstring full = L"12:34:56.789 00000001/01 9  " + std::wstring(longestTextMessage - 28, L'x');
    bench.AddMessage(full);
    bench.AddMessage(L"tail");
    bench.AddMessage(L"alone");
    bench.AddMessage(L"12:34:56.789 00000001/01 0  next");
    EXPECT_EQ(bench.TakenAfter(clsJoiner::moment), full.substr(28) + L"tail|alone|next|");
}

TEST(Columns, PrintHostileLinesHarmlessly) {
    for (const scCaseRow& row : CaseRows("logpan/columns", 5)) {
        scLine line;
        line.time = StampOf(row[0]);
        std::istringstream numbers(NarrowCase(row[0]));
        for (int column = 0, skipped = 0; column < 7; ++column)
            numbers >> skipped;
        numbers >> line.thread >> line.processor >> line.sequence >> line.port >> line.level;
        line.module = WideCase(row[1]);
        line.text = WideCase(row[2]);
        EXPECT_EQ(PlainLine(line), WideCase(row[3])) << row.where;
        const std::wstring json = JsonLine(line);
        EXPECT_EQ(json, WideCase(row[4])) << row.where;
        EXPECT_EQ(JsonLine(ParseJsonLine(json).value()), json) << row.where;
        for (std::size_t length = 0; length < json.size(); ++length)
            EXPECT_FALSE(ParseJsonLine(json.substr(0, length))) << row.where << length;
    }
}

TEST(Columns, ShowTheTimeBetweenLines) {
    for (const scCaseRow& row : CaseRows("logpan/elapsed", 3)) {
        scLine before, line;
        before.time = StampOf(row[0]);
        line.time = StampOf(row[1]);
        EXPECT_EQ(ElapsedText(before, line), WideCase(row[2])) << row.where;
    }
}

TEST(LogReader, ReadsFilesOfAllKinds) {
    for (const scCaseRow& row : CaseRows("logpan/logs", 2)) {
        const std::wstring text = WideCase(row[0]);
        for (const std::size_t piece : {std::size_t{1}, std::size_t{2}, std::size_t{5}, text.size()}) {
            std::wstring lines;
            clsLogReader reader{
                [&](scLine&& line) { lines += (lines.empty() ? L"" : L"|") + PlainLine(line); }};
            for (std::size_t at = 0; at < text.size(); at += piece)
                reader.Add(std::wstring_view{text}.substr(at, piece));
            reader.End();
            EXPECT_EQ(lines, WideCase(row[1])) << row.where << " in pieces of " << piece;
        }
    }
}

TEST(LogReader, IsBounded) {
    std::size_t longest = 0, lines = 0;
    clsLogReader reader{[&](scLine&& line) { longest = std::max(longest, line.text.size()), ++lines; }};
    reader.Add(L"12:34:56.789 00000001/00 1  x\n");
    for (int at = 0; at < 1000; ++at)
        reader.Add(std::wstring(1000, L'x'));
    reader.Add(L"\n");
    for (int at = 0; at < 1000; ++at)
        reader.Add(L"{" + std::wstring(1000, L'[') + L"\n");
    reader.Add(L"{\"text\":\"" + std::wstring(2 * longestLine, L'x') + L"\"}\n");
    reader.End();
    EXPECT_LE(longest, longestLine);
    EXPECT_GT(lines, 3u);
}

TEST(Filter, ShowsByTextOrModule) {
    const LinePtr line = LineOf(L"Heap 7 destroyed (2 objects)");
    for (const scCaseRow& row : CaseRows("logpan/filters", 4)) {
        const PatternKind kind =
            row[2] == u"regular" ? PatternKind::regularExpression : PatternKind::substring;
        const scFilter filter{{WideCase(row[0]), kind}, {WideCase(row[1]), kind}};
        EXPECT_EQ(filter.Shows(*line), row[3] == u"true") << row.where;
    }
}

TEST(Filter, RefusesPatternsThatAreNone) {
    const std::wstring tooLong(301, L'a');
    for (const std::wstring_view pattern : {L"(", L"[a", L"*", L"(a{1000}){1000}", L"\\", tooLong.c_str()})
        EXPECT_THROW(clsPattern(pattern, PatternKind::regularExpression), scBadPattern);
}

TEST(Filter, ChoosesBySeveralCriteriaAtOnce) {
    const std::vector<scLine> samples = Samples();
    for (const scCaseRow& row : CaseRows("logpan/criteria", 3)) {
        std::string shown;
        try {
            const scFilterText text = ParseFilter(WideCase(row[0]));
            const std::wstring back = TextOf(text);
            EXPECT_EQ(TextOf(ParseFilter(back)), back) << row.where;
            EXPECT_EQ(back, WideCase(row[1].empty() && row[0] != u"  " ? row[0] : row[1])) << row.where;
            const scFilter filter = MakeFilter(text);
            for (std::size_t at = 0; at < samples.size(); ++at)
                shown += filter.Shows(samples[at]) ? std::to_string(at) : "";
        } catch (const scBadPattern& bad) {
            EXPECT_NE(bad.reason.find(NarrowCase(row[2])), std::string::npos) << row.where << bad.reason;
            continue;
        }
        EXPECT_EQ(shown, NarrowCase(row[2])) << row.where;
    }
}

TEST(Filter, IsToggledByALinesOwnValues) {
    const std::vector<scLine> samples = Samples();
    clsCriteria criteria;
    criteria.Toggle(L"module", samples[1], false);
    criteria.Toggle(L"thread", samples[1], false);
    criteria.Toggle(L"process", samples[2], true);
    criteria.Toggle(L"severity", {L"error"});
    EXPECT_EQ(criteria.Text(), L"module=\"two words\" thread=1b0 process=!archive.exe severity=error");
    criteria.Toggle(L"module", samples[1], false);
    criteria.Toggle(L"process", samples[2], true);
    criteria.Toggle(L"thread", samples[1], true);
    criteria.Toggle(L"severity", {L"warning", L"error"});
    EXPECT_EQ(criteria.Text(), L"thread=!1b0 severity=warning,error");
    criteria.Toggle(L"severity", {L"warning", L"error"});
    EXPECT_EQ(criteria.Text(), L"thread=!1b0");
}

TEST(Highlights, ColourByTheFirstRuleThatFits) {
    const std::vector<scLine> samples = Samples();
    for (const scCaseRow& row : CaseRows("logpan/highlights", 3)) {
        std::string colours;
        try {
            const std::vector<scNamedFilter> named = ParseNamedFilters(WideCase(row[0]));
            EXPECT_EQ(ParseNamedFilters(TextOf(named)), named) << row.where;
            const clsHighlights highlights{named};
            for (const scLine& line : samples) {
                const std::optional<Colour> colour = highlights.ColourOf(line);
                colours += std::string{colours.empty() ? "" : " "} +
                           (colour ? "roygcbvg"[static_cast<std::size_t>(*colour)] : '.');
            }
        } catch (const scBadPattern& bad) {
            EXPECT_FALSE(row[1].empty()) << row.where << bad.reason;
            EXPECT_NE(bad.reason.find(NarrowCase(row[1])), std::string::npos) << row.where << bad.reason;
            continue;
        }
        EXPECT_EQ(colours, NarrowCase(row[2])) << row.where;
    }
}

// The pattern decides nothing then, so the line is shown.
TEST(Filter, GivesUpWhereALineWouldHangOrCrashIt) {
    const LinePtr line = LineOf(std::wstring(100'000, L'a'));
    for (const std::wstring_view pattern :
         {L"(a+)+b", L"(a|aa)+$b", L"(.|\\n)*x", L"((a*)*)*c", L"(?:a?){90}a{90}z"}) {
        const clsPattern hard{pattern, PatternKind::regularExpression};
        EXPECT_TRUE((scFilter{hard, {}}.Shows(*line) || scFilter{{}, hard}.Shows(*line)));
    }
    EXPECT_FALSE((scFilter{{L".*foo", PatternKind::regularExpression}, {}}.Shows(*line)));
    const clsPattern exponential{L"(a+)+b", PatternKind::regularExpression};
    EXPECT_TRUE((scFilter{exponential, {}}.Shows(*line) && scFilter{{}, exponential}.Shows(*line)));
}

TEST(Ring, HoldsSoManyLinesAndBytes) {
    clsRing byLines{3, 1 << 20};
    clsRing byBytes{1000, 10'000};
    for (int at = 0; at < 100; ++at) {
        byLines.Push(LineOf(std::to_wstring(at)));
        byBytes.Push(LineOf(std::wstring(500, L'x')));
    }
    EXPECT_EQ(byLines.First(), 97u);
    EXPECT_EQ(byLines.At(97)->text, L"97");
    EXPECT_EQ(byLines.end(), 100u);
    EXPECT_GT(byBytes.size(), 1u);
    EXPECT_LT(byBytes.size(), 20u);
    byBytes.Push(LineOf(std::wstring(60'000, L'x')));
    EXPECT_EQ(byBytes.size(), 1u) << "the newest one stays, however long";
}

TEST(Store, TellsAReaderWhatItMissed) {
    clsStore store{10, 1 << 20};
    for (int at = 0; at < 25; ++at)
        AddTo(store, at);
    store.Refuse();
    store.Stop();
    std::uint64_t next = 0;
    std::vector<LinePtr> lines;
    ASSERT_TRUE(store.Wait(next, {}));
    EXPECT_EQ(store.Read(next, 4, lines), 15u);
    EXPECT_EQ(store.Read(next, 100, lines), 0u);
    ASSERT_EQ(lines.size(), 10u);
    EXPECT_EQ(lines.front()->text, L"line 15");
    EXPECT_EQ(lines.back()->text, L"line 24");
    EXPECT_FALSE(store.Wait(next, {}));
    const scCounters counters = store.Counters();
    EXPECT_EQ(counters.received, 25u);
    EXPECT_EQ(counters.refused, 1u);
    EXPECT_EQ(counters.held, 10u);
}

TEST(ShownLines, FollowFilterPauseAndTrim) {
    clsStore store{1000, 1 << 20};
    clsShownLines shown{store, 100, 1 << 20};
    for (int at = 0; at < 500; ++at)
        AddTo(store, at);
    store.Stop();
    const auto advance = [&](std::optional<std::uint64_t> limit = {}) {
        while (shown.Advance(1ms, limit)) {
        }
        return shown.size();
    };
    EXPECT_EQ(advance(300), 300u) << "paused at line 300";
    EXPECT_EQ(advance(), 500u);
    shown.SetFilter({{L"line 4", PatternKind::substring}, {}});
    EXPECT_EQ(advance(), 111u); // 4, 40 to 49, 400 to 499
    EXPECT_EQ(shown.Trim(), 11u);
    EXPECT_EQ(shown[0]->text, L"line 400");
    EXPECT_EQ(shown.Trim(), 0u);
    EXPECT_EQ(shown.Held(store.Counters()), 500u);
    shown.Clear();
    EXPECT_EQ(advance(), 0u);
    EXPECT_EQ(store.Counters().held, 0u);
}

TEST(Search, GoesOnceAroundInBothDirections) {
    constexpr std::size_t rows = 10;
    const auto found = [&](std::optional<std::size_t> from, bool backwards) {
        clsSearch search;
        search.Begin(rows, from, backwards, [](std::size_t row) { return row == 2 || row == 7; });
        while (search.Advance(0ms) == clsSearch::State::running) { // one row at a time
        }
        return search.Row();
    };
    EXPECT_EQ(found({}, false), 2u);
    EXPECT_EQ(found(2, false), 7u);
    EXPECT_EQ(found(7, false), 2u);
    EXPECT_EQ(found({}, true), 7u);
    EXPECT_EQ(found(7, true), 2u);
    EXPECT_EQ(found(2, true), 7u);

    clsSearch search;
    const auto is = [](std::size_t wanted) { return [wanted](std::size_t row) { return row == wanted; }; };
    search.Begin(rows, 4, false, is(rows));
    EXPECT_EQ(search.Advance(1h), clsSearch::State::notFound);
    search.Begin(rows, 4, false, is(3));
    EXPECT_EQ(search.Advance(0ms), clsSearch::State::running);
    search.DropFirst(4); // six rows are left, and row 5 was looked at
    EXPECT_EQ(search.Advance(1h), clsSearch::State::found);
    EXPECT_EQ(search.Row(), 3u);
    search.Begin(0, {}, true, is(0));
    EXPECT_EQ(search.Advance(1h), clsSearch::State::notFound);
}

TEST(ProcessCache, AsksAgainAfterSilence) {
    int asked = 0;
    ProcessPtr answer = std::make_shared<const scProcess>(scProcess{1, L"a"});
    clsProcessCache cache{[&](std::uint16_t) { return ++asked, answer; }};
    clsProcessCache::Clock::time_point now{};
    for (int at = 0; at < 5; ++at)
        EXPECT_EQ(cache.Of(7, now += clsProcessCache::silence / 2)->id, 1u);
    EXPECT_EQ(asked, 1);
    answer = nullptr; // it has ended; its last lines are still its own
    EXPECT_EQ(cache.Of(7, now += clsProcessCache::silence)->id, 1u);
    EXPECT_EQ(cache.Of(7, now += 2min), nullptr);
    EXPECT_EQ(asked, 3);
}

// Rows outlive their lines in the store, which are held all the same then, and are bounded as the store is.
TEST(ShownLines, CountAndBoundWhatOnlyTheyHold) {
    struct scCase {
        std::size_t mostLines;
        std::size_t mostBytes;
        std::size_t rows; // that are left of 108
    };
    constexpr std::size_t length = 1000;
    constexpr std::size_t tenLines = 10 * (sizeof(scLine) + (length + 100) * sizeof(wchar_t));
    for (const scCase& at : {scCase{100, 1 << 20, 108}, scCase{90, 1 << 20, 90}, scCase{100, tenLines, 10}}) {
        clsStore store{at.mostLines, at.mostBytes};
        clsShownLines shown{store, at.mostLines, at.mostBytes};
        for (int line = 0; line <= 108; ++line) {
            line < 108 ? AddTo(store, line, std::wstring(length, L'x')) : store.Stop();
            while (shown.Advance(1ms)) {
            }
        }
        EXPECT_EQ(shown.Held(store.Counters()), 108u);
        EXPECT_EQ(shown.Trim(), 108 - at.rows);
        EXPECT_EQ(shown.size(), at.rows);
        EXPECT_GE(shown.Held(store.Counters()), shown.size());
    }
}

} // namespace tool::logpan
