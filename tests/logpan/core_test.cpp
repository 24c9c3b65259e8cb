// The viewer's logic: joining, counting, holding, filtering and printing lines.
#include "columns.h"
#include "filter.h"
#include "severity.h"
#include "shown_lines.h"
#include "text_message.h"

#include <gtest/gtest.h>

namespace tool::logpan {

namespace {

using namespace std::chrono_literals;

// A joiner under a clock of its own. Each line's text is its result.
struct Bench {
    clsJoiner joiner;
    clsJoiner::Clock::time_point now{};

    void packet(std::uint16_t port, char digit, std::wstring_view text, std::uint32_t thread = 1,
                bool full = false) {
        scPacket packet;
        packet.thread = thread;
        packet.sequence = static_cast<std::uint32_t>(digit);
        packet.text = text;
        packet.full = full;
        joiner.Add(port, packet, now);
    }
    void message(std::wstring_view text) { joiner.AddText(text, {2024, 1, 31, 9, 8, 7, 6}, now); }

    std::wstring taken() {
        std::wstring texts;
        while (const std::optional<scLine> line = joiner.Take(now))
            texts += line->text + L"|";
        return texts;
    }
    std::wstring takenAfter(std::chrono::milliseconds time) {
        now += time;
        return taken();
    }
};

LinePtr lineOf(std::wstring text, std::wstring module = L"KX32UTIL") {
    scLine line;
    line.text = std::move(text);
    line.module = std::move(module);
    return std::make_shared<const scLine>(std::move(line));
}

void addTo(clsStore& store, int number, std::wstring text = {}) {
    if (text.empty())
        text = L"line " + std::to_wstring(number);
    scPacket packet;
    packet.sequence = static_cast<std::uint32_t>('0' + number % 10);
    packet.text = text;
    store.Add(7, packet);
}

} // namespace

TEST(Joiner, JoinsPiecesAndKeepsTheOrderOfBeginnings) {
    Bench bench;
    bench.packet(1, '0', L"one ", 1, true);
    bench.packet(2, '5', L"other");
    bench.packet(1, '0', L"two ", 1, true);
    bench.packet(2, '6', L"next");
    EXPECT_EQ(bench.taken(), L"") << "what began first may still go on";
    bench.packet(1, '0', L"three");
    EXPECT_EQ(bench.takenAfter(clsJoiner::moment), L"one two three|other|next|");
    bench.packet(1, '0', L"late piece");
    bench.packet(1, '1', L"new");
    EXPECT_EQ(bench.takenAfter(clsJoiner::moment), L"late piece|new|");
    EXPECT_EQ(bench.joiner.Missing(), 0u) << "a piece of a line that was shown is no gap";
}

TEST(Joiner, WaitsLongerForALineThatFilledItsDatagram) {
    Bench bench;
    bench.packet(1, '0', L"full", 1, true);
    EXPECT_EQ(bench.takenAfter(clsJoiner::moment), L"");
    EXPECT_EQ(bench.takenAfter(clsJoiner::longWhile), L"full|");
    for (auto waited = 0ms; waited < clsJoiner::longest; waited += 500ms) {
        bench.packet(1, '1', L".", 1, true);
        EXPECT_EQ(bench.takenAfter(500ms) == L"", waited + 500ms < clsJoiner::longest)
            << "endless pieces end";
    }
}

TEST(Joiner, CountsMissingLinesBySender) {
    Bench bench;
    std::uint32_t thread = 1; // another one each time: no line is a piece of the one before
    for (const char digit : {'8', '9', '0', '4', '5', '5', 'x', '2', '3'})
        bench.packet(1, digit, L"", thread++);
    EXPECT_EQ(bench.joiner.Missing(), 3u + 9u);
    bench.packet(2, '7', L"");
    bench.packet(2, '9', L"");
    EXPECT_EQ(bench.joiner.Missing(), 3u + 9u + 1u);
}

TEST(Joiner, IsBounded) {
    Bench bench;
    const std::wstring piece(30'000, L'x');
    for (int at = 0; at < 5; ++at)
        bench.packet(1, '0', piece, 1, true);
    bench.now += clsJoiner::longest;
    const std::optional<scLine> cut = bench.joiner.Take(bench.now);
    ASSERT_TRUE(cut);
    EXPECT_EQ(cut->text.size(), clsJoiner::longestLine);
    EXPECT_EQ(cut->text.back(), L'\u2026');

    std::size_t early = 0;
    for (unsigned at = 0; at < 20'000; ++at) {
        bench.packet(static_cast<std::uint16_t>(at), '0', at % 4 == 0 ? std::wstring_view{piece} : L"", at,
                     true);
        while (bench.joiner.Take(bench.now))
            ++early;
    }
    EXPECT_GT(early, 15'000u) << "a flood pushes lines out that are not complete";
}

TEST(Joiner, SeparatesIndentationAndLineEnd) {
    struct Case {
        std::wstring_view sent;
        std::size_t level;
        std::wstring_view text;
    };
    for (const Case& at : {Case{L"  text \r\n", 2, L"text "}, Case{L"text", 0, L"text"}, Case{L"   ", 3, L""},
                           Case{L"\r\n", 0, L""}, Case{L" \na\n\n", 1, L"\na"}}) {
        Bench bench;
        bench.packet(1, '0', at.sent);
        bench.now += clsJoiner::moment;
        const std::optional<scLine> line = bench.joiner.Take(bench.now);
        ASSERT_TRUE(line);
        EXPECT_EQ(line->level, at.level) << at.sent.size();
        EXPECT_EQ(line->text, at.text);
    }
}

// The library's own reports bear the host program's name in their text. One that is longer than its columns
// counts once it is known: a colon behind a word is no rarity.
TEST(Joiner, TakesTheHostsNameFromReports) {
    struct Case {
        std::wstring_view sent;
        std::wstring_view module;
        std::size_t level;
        std::wstring_view text;
        Severity severity = Severity::none;
    };
    constexpr Case cases[] = {
        {L"heaps   :Error: clsHeap[]\n", L"heaps", 0, L"Error: clsHeap[]", Severity::error},
        {L"  heaps   :  Warning: left\n", L"heaps", 4, L"Warning: left", Severity::warning},
        {L"a b     :->3", L"a b", 0, L"->3"},
        {L"settings: more", L"", 0, L"settings: more"},
        {L"settings:8080", L"", 0, L"settings:8080"},
        {L"settings:WRN: left", L"settings", 0, L"WRN: left", Severity::warning},
        {L"settings: more", L"settings", 1, L"more"},
        {L"report viewer: more", L"", 0, L"report viewer: more"},
        {L"++report viewer.exe [C:\\r.exe] [r]", L"", 0, L"++report viewer.exe [C:\\r.exe] [r]"},
        {L"report viewer: more", L"report viewer", 1, L"more"},
        {L"customers:UtilJobOpen('A',0)", L"customers", 0, L"UtilJobOpen('A',0)"},
        {L"heaps   Error: no colon", L"", 0, L"heaps   Error: no colon"},
        {L"heaps  :Error: too short", L"", 0, L"heaps  :Error: too short"},
        {L"C:/a/b/c:Error: a path", L"", 0, L"C:/a/b/c:Error: a path"},
        {L"        :Error: no name", L"", 8, L":Error: no name"},
        {L"\nKX32UTIL['a']: error in 'b' (c): d\n", L"", 0, L"\nKX32UTIL['a']: error in 'b' (c): d",
         Severity::error},
        {L"PROF load error line 3: 'x'", L"", 0, L"PROF load error line 3: 'x'", Severity::error},
    };
    Bench bench;
    for (const Case& at : cases) {
        bench.packet(1, static_cast<char>('0' + (&at - cases) % 10), at.sent);
        bench.now += clsJoiner::moment;
        const std::optional<scLine> line = bench.joiner.Take(bench.now);
        ASSERT_TRUE(line);
        EXPECT_EQ(line->module, at.module) << &at - cases;
        EXPECT_EQ(line->level, at.level) << &at - cases;
        EXPECT_EQ(line->text, at.text);
        EXPECT_EQ(SeverityOf(line->text), at.severity) << &at - cases;
    }
}

TEST(TextMessage, IsTakenApartWhereItHasColumns) {
    struct Case {
        std::wstring_view message;
        std::wstring_view plain; // empty: it has none
    };
    constexpr Case cases[] = {
        {L"KX32UTIL: 12:34:56.789 0000abcd/0f 7    two", L"12:34:56.789 KX32UTIL 0000abcd/0f 7   two"},
        {L"App     : 34:56.789 ffffffff/00 0  text", L"00:34:56.789 App      ffffffff/00 0 text"},
        {L"12:34:56.789 00000001/01 9 worker text", L"12:34:56.789          00000001/01 9 worker text"},
        {L"12:34:56.789 0000abcd/01 7", L""},
        {L"12:34:56.78 0000abcd/01 7  x", L""},
        {L": ", L""},
        {L"error: nothing", L""},
        {L"", L""},
    };
    for (const Case& at : cases) {
        const std::optional<scLine> line = ParseTextMessage(at.message);
        ASSERT_EQ(line.has_value(), !at.plain.empty()) << std::string(at.message.begin(), at.message.end());
        if (!line)
            continue;
        Bench bench; // which splits off the indentation
        bench.message(at.message);
        bench.now += clsJoiner::moment;
        EXPECT_EQ(PlainLine(*bench.joiner.Take(bench.now)), at.plain);
    }
}

TEST(TextMessage, GoesOnBehindOneThatIsFull) {
    Bench bench;
    const std::wstring full = L"12:34:56.789 00000001/01 9  " + std::wstring(longestTextMessage - 28, L'x');
    bench.message(full);
    bench.message(L"tail");
    bench.message(L"alone");
    bench.message(L"12:34:56.789 00000001/01 0  next");
    EXPECT_EQ(bench.takenAfter(clsJoiner::moment), full.substr(28) + L"tail|alone|next|");
}

TEST(Columns, PrintHostileLinesHarmlessly) {
    struct Case {
        scLine line;
        std::wstring_view plain;
        std::wstring_view json;
    };
    const Case cases[] = {
        {{{2024, 1, 31, 12, 34, 56, 789}, L"KX32UTIL", 0xabcd, 3, '7', 5000, 2, L"ERR: no \"x\""},
         L"12:34:56.789 KX32UTIL 0000abcd/03 7   ERR: no \"x\"",
         LR"({"time":"2024-01-31T12:34:56.789","module":"KX32UTIL","thread":"0000abcd","processor":"03","sequence":7,)"
         LR"("port":5000,"level":2,"severity":"error","text":"ERR: no \"x\""})"},
        {{{65535, 0, 0, 65535, 0, 0, 0},
          L"\x1b[2J",
          ~0u,
          ~0u,
          ~0u,
          1,
          60'000,
          L"\na\x1b]0;b\a\tC:\\d\x7f\x9b"},
         LR"(--:--:--.--- \x1b[2J  ffffffff/ffffffff -                                                   )"
         LR"(a\x1b]0;b\x07\tC:\d\x7f\x9b)",
         LR"({"time":null,"module":"\u001b[2J","thread":"ffffffff","processor":"ffffffff","sequence":null,)"
         LR"("port":1,"level":60000,"severity":"","text":"\u000aa\u001b]0;b\u0007\u0009C:\\d\u007f\u009b"})"},
        {{{}, L"", 0, 0, '0', 0, 0, std::wstring{L"\xd83d\xde00 \xd83d\xde", 5} + L"\xdc00\xd800"},
         L"00:00:00.000          00000000/00 0 \xd83d\xde00 \\ud83d\u00de\\udc00\\ud800",
         L"{\"time\":null,\"module\":\"\",\"thread\":\"00000000\",\"processor\":\"00\",\"sequence\":0,"
         L"\"port\":0,\"level\":0,"
         L"\"severity\":\"\",\"text\":\"\xd83d\xde00 \xfffd\u00de\xfffd\xfffd\"}"},
    };
    for (const Case& at : cases) {
        EXPECT_EQ(PlainLine(at.line), at.plain);
        EXPECT_EQ(JsonLine(at.line), at.json);
    }
}

TEST(Filter, ShowsByTextOrModule) {
    constexpr auto substring = PatternKind::substring;
    constexpr auto regular = PatternKind::regularExpression;
    struct Case {
        std::wstring_view include;
        std::wstring_view exclude;
        PatternKind kind;
        bool shown; // of "KX32UTIL", "Heap 7 destroyed (2 objects)"
    };
    constexpr Case cases[] = {
        {L"", L"", substring, true},        {L"heap", L"", substring, true},
        {L"kx32", L"", substring, true},    {L"HEAP 7 DES", L"", substring, true},
        {L"heap 8", L"", substring, false}, {L"", L"heap", substring, false},
        {L"heap", L"(2", substring, false}, {L"", L"other", substring, true},
        {L"heap.", L"", substring, false},  {L"^heap \\d+", L"", regular, true},
        {L"^util|obj", L"", regular, true}, {L"^\\d", L"", regular, false},
        {L"", L"util$", regular, false},    {L"destroyed$", L"", regular, false},
    };
    const LinePtr line = lineOf(L"Heap 7 destroyed (2 objects)");
    for (const Case& at : cases)
        EXPECT_EQ((scFilter{{at.include, at.kind}, {at.exclude, at.kind}}.Shows(*line)), at.shown)
            << &at - cases;
}

TEST(Filter, RefusesPatternsThatAreNone) {
    for (const std::wstring& pattern :
         {std::wstring{L"("}, std::wstring{L"[a"}, std::wstring{L"*"}, std::wstring{L"(a{1000}){1000}"},
          std::wstring(301, L'a'), std::wstring{L"\\"}})
        EXPECT_THROW(clsPattern(pattern, PatternKind::regularExpression), scBadPattern);
}

// The pattern decides nothing then, so the line is shown.
TEST(Filter, GivesUpWhereALineWouldHangOrCrashIt) {
    const LinePtr line = lineOf(std::wstring(100'000, L'a'));
    for (const std::wstring_view pattern :
         {L"(a+)+b", L"(a|aa)+$b", L"(.|\\n)*x", L"((a*)*)*c", L"(?:a?){90}a{90}z"}) {
        const clsPattern hard{pattern, PatternKind::regularExpression};
        EXPECT_TRUE((scFilter{hard, {}}.Shows(*line) || scFilter{{}, hard}.Shows(*line)));
    }
    EXPECT_FALSE((scFilter{{L".*foo", PatternKind::regularExpression}, {}}.Shows(*line)));
    const clsPattern exponential{L"(a+)+b", PatternKind::regularExpression};
    EXPECT_TRUE((scFilter{exponential, {}}.Shows(*line)));
    EXPECT_TRUE((scFilter{{}, exponential}.Shows(*line)));
}

TEST(Ring, HoldsSoManyLinesAndBytes) {
    clsRing byLines{3, 1 << 20};
    clsRing byBytes{1000, 10'000};
    for (int at = 0; at < 100; ++at) {
        byLines.Push(lineOf(std::to_wstring(at)));
        byBytes.Push(lineOf(std::wstring(500, L'x')));
    }
    EXPECT_EQ(byLines.First(), 97u);
    EXPECT_EQ(byLines.At(97)->text, L"97");
    EXPECT_EQ(byLines.end(), 100u);
    EXPECT_GT(byBytes.size(), 1u);
    EXPECT_LT(byBytes.size(), 20u);
    byBytes.Push(lineOf(std::wstring(60'000, L'x')));
    EXPECT_EQ(byBytes.size(), 1u) << "the newest one stays, however long";
}

TEST(Store, TellsAReaderWhatItMissed) {
    clsStore store{10, 1 << 20};
    for (int at = 0; at < 25; ++at)
        addTo(store, at);
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
        addTo(store, at);
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

// Rows outlive their lines in the store, which are held all the same then, and are bounded as the store is.
TEST(ShownLines, CountAndBoundWhatOnlyTheyHold) {
    struct Case {
        std::size_t mostLines;
        std::size_t mostBytes;
        std::size_t rows; // that are left of 108
    };
    constexpr std::size_t length = 1000;
    constexpr std::size_t tenLines = 10 * (sizeof(scLine) + (length + 100) * sizeof(wchar_t));
    for (const Case& at : {Case{100, 1 << 20, 108}, Case{90, 1 << 20, 90}, Case{100, tenLines, 10}}) {
        clsStore store{at.mostLines, at.mostBytes};
        clsShownLines shown{store, at.mostLines, at.mostBytes};
        for (int line = 0; line <= 108; ++line) {
            line < 108 ? addTo(store, line, std::wstring(length, L'x')) : store.Stop();
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
