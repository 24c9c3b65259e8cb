// The way of a line from the gate to the sinks: who is asked, who gets it, in which form, and that no sink
// disturbs another or the caller.
#include "runtime/output/audience_gate.h"
#include "runtime/output/line_front.h"
#include "runtime/output/line_pieces.h"
#include "runtime/output/whole_lines.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace tvut {
namespace {

using Texts = std::vector<std::u16string>;

class clsRecordingSink final : public IclsLineSink {
  public:
    explicit clsRecordingSink(bool wants) : wants_(wants) {}
    bool Wants() noexcept override { return wants_; }
    void Take(const scOutputLine& line) noexcept override {
        stamped.emplace_back(line.stamped);
        texts.push_back(std::u16string(line.stamp.level, u' ').append(line.text));
        wants_ = wants_ && !fails;
        if (onTake)
            onTake();
    }

    Texts stamped, texts;
    bool fails = false; // goes away with the line that it takes
    std::function<void()> onTake;

  private:
    bool wants_;
};

class LineFront : public testing::Test {
  protected:
    clsLineFront Front() { return clsLineFront({viewer, {&mailslot, &logFile}, debugger}); }
    // What the writer does: asks first, and writes at a fixed time.
    bool Write(clsLineFront& front, std::u16string_view tag, std::int32_t change, std::u16string_view text) {
        if (front.IsWriting() || !front.HasListener())
            return false;
        scOutputLine line;
        line.tag = tag;
        line.text = text;
        line.stamp.thread = 0xABC;
        front.Write(shared, line, {change});
        return true;
    }

    clsRecordingSink viewer{false}, mailslot{false}, logFile{true}, debugger{true};
    scAppLocalData shared{};
};

TEST_F(LineFront, StampsCountsAndIndents) {
    clsLineFront front = Front();
    const struct {
        std::u16string_view tag;
        std::int32_t change;
        std::u16string_view text, written;
    } lines[] = {{u"", 0, u"100%s", u"@1  100%s"},
                 {u"REPORT", 5, u"in", u"REPORT  : @2  in"},
                 {u"", 0, u"deeper", u"@3   deeper"},
                 {u"", -7, u"out", u"@4  out"},
                 {u"LONGMODULE", -1, u"below", u"LONGMODULE: @5  below"},
                 {u"A", 1, u"", u"A       : @6  "},
                 {u"", 0, u"a\r\nb", u"@7  a\r\nb"}};
    for (const auto& line : lines) {
        EXPECT_TRUE(Write(front, line.tag, line.change, line.text));
        std::u16string written(line.written);
        written.replace(written.find(u'@'), 1, u"00:00:00.000 00000abc/00 ");
        EXPECT_EQ(logFile.stamped.back(), written);
    }
    Write(front, u"", 0, std::u16string(1100, u'x'));
    EXPECT_EQ(logFile.stamped.back(), u"00:00:00.000 00000abc/00 8  " + std::u16string(1025 - 28, u'x'));
    EXPECT_EQ(debugger.stamped, logFile.stamped);
}

TEST_F(LineFront, CountsLevelsBeyondWhatItShows) {
    clsLineFront front = Front();
    const auto shown = [](std::size_t level) {
        return std::u16string(std::min<std::size_t>(level, 50), u' ');
    };
    for (std::size_t i = 0; i < 60; ++i) {
        Write(front, u"", 1, u"");
        EXPECT_EQ(logFile.texts.back(), shown(i));
    }
    for (std::size_t i = 60; i-- > 0;) {
        Write(front, u"", -1, u"");
        EXPECT_EQ(logFile.texts.back(), shown(i));
    }
    shared.level = INT32_MIN; // another copy may have put anything there
    EXPECT_TRUE(Write(front, u"", -1, u"around"));
    EXPECT_EQ(shared.level, INT32_MAX);
}

TEST_F(LineFront, WritesForListenersOnlyAndForTheViewerAlone) {
    const struct {
        bool viewer, mailslot, logFile, debugger;
        const char* getIt;
    } audiences[] = {{false, false, false, false, ""}, {false, false, false, true, ""},
                     {false, true, false, true, "MD"}, {false, true, true, false, "ML"},
                     {false, false, true, true, "LD"}, {true, true, true, true, "V"}};
    for (const auto& wants : audiences) {
        clsRecordingSink v(wants.viewer), m(wants.mailslot), l(wants.logFile), d(wants.debugger);
        clsLineFront front({v, {&m, &l}, d});
        shared = {};
        EXPECT_EQ(Write(front, u"", 1, u"text"), *wants.getIt != '\0');
        EXPECT_EQ(shared.level, *wants.getIt ? 1 : 0) << "what is not written does not indent";
        std::string got;
        for (const auto& [sink, name] : {std::pair{&v, 'V'}, {&m, 'M'}, {&l, 'L'}, {&d, 'D'}})
            got.append(sink->texts.size(), name);
        EXPECT_EQ(got, wants.getIt);
    }
}

TEST_F(LineFront, SurvivesSinksThatFailAndSinksThatWrite) {
    clsRecordingSink failing(true);
    failing.fails = true;
    clsLineFront front({viewer, {&failing, &logFile}, debugger});
    bool answered = false;
    debugger.onTake = [&] {
        answered = front.HasListener();
        EXPECT_FALSE(Write(front, u"", 1, u"about a line"));
    };
    Write(front, u"", 0, u"first");
    Write(front, u"", 0, u"second");
    EXPECT_TRUE(answered) << "asking is allowed";
    EXPECT_EQ(failing.texts, (Texts{u"first"}));
    EXPECT_EQ(logFile.texts, (Texts{u"first", u"second"}));
    EXPECT_EQ(debugger.texts, logFile.texts);
    EXPECT_EQ(shared.level, 0);
}

std::uint32_t ticks = 0;

TEST(AudienceGate, IsShutUntilALookIsDue) {
    for (const std::uint32_t start : {0u, 5000u, 0xFFFFFF00u}) { // the clock comes round
        ticks = start;
        clsAudienceGate gate([]() noexcept { return ticks; });
        EXPECT_FALSE(gate.IsShut()) << "nobody knows yet";
        EXPECT_TRUE(gate.LookIsDue());
        gate.NoteLookBegins();
        gate.NoteLookEnds();
        gate.NoteAudience(false);
        for (const std::uint32_t after : {0u, 999u}) {
            ticks = start + after;
            EXPECT_TRUE(gate.IsShut());
            EXPECT_FALSE(gate.LookIsDue());
        }
        ticks = start + 1000;
        EXPECT_FALSE(gate.IsShut());
        EXPECT_TRUE(gate.LookIsDue());
    }
}

TEST(AudienceGate, StaysOpenForWhoMayListen) {
    ticks = 1;
    clsAudienceGate gate([]() noexcept { return ticks; });
    gate.NoteLookBegins();
    gate.NoteSinks(true, false);
    gate.NoteAudience(false);
    EXPECT_FALSE(gate.IsShut()) << "a viewer may change its mind";
    EXPECT_TRUE(gate.IsSettled());
    gate.NoteSinks(false, false);
    gate.NoteAudience(false);
    EXPECT_TRUE(gate.IsShut());
    gate.Open();
    EXPECT_FALSE(gate.IsShut());
    gate.NoteSinks(false, true);
    EXPECT_TRUE(gate.IsSettled());
    EXPECT_FALSE(gate.HasViewer());
    gate.End();
    EXPECT_TRUE(gate.IsShut());
}

// A disk that is full after any number of bytes, and has room again some lines later.
TEST(WholeLines, BeginEachLineAnewWhateverIsCutOff) {
    const std::string lines[] = {"begin\r\n", "xxxxxx\r\n", "yyyyyy\r\n", "after\r\n"};
    for (std::size_t room = 0; room < 30; ++room) {
        std::string file;
        clsWholeLines whole;
        std::size_t left = room;
        const auto append = [&](std::string_view bytes) {
            const std::size_t taken = std::min(bytes.size(), left);
            file.append(bytes.substr(0, taken));
            left -= taken;
            return taken;
        };
        for (const std::string& written : {lines[0], lines[1] + lines[2]})
            whole.Write(written, append);
        left = 100;
        whole.Write(lines[3], append);
        ASSERT_GE(file.size(), lines[3].size());
        const std::size_t at = file.size() - lines[3].size();
        EXPECT_EQ(file.substr(at), lines[3]) << room;
        EXPECT_TRUE(at == 0 || file[at - 1] == '\n') << file;
    }
}

TEST(LinePieces, AreMessagesUpToLineEnds) {
    const std::u16string x510(510, u'x');
    const std::pair<std::u16string, Texts> cases[] = {{u"", {}},
                                                      {u"one", {u"one"}},
                                                      {u"one\r\ntwo\n", {u"one", u"", u"two"}},
                                                      {u"\n\n", {u"", u""}},
                                                      {x510, {x510}},
                                                      {x510 + u"\ny", {x510, u"", u"y"}},
                                                      {x510 + x510 + u"z", {x510, x510, u"z"}}};
    for (const auto& [line, messages] : cases) {
        Texts taken;
        for (std::u16string_view left = line; !left.empty();)
            taken.emplace_back(UtilpTakeMessage(left));
        EXPECT_EQ(taken, messages);
    }
}

} // namespace
} // namespace tvut
