// The console mode from the outside: real packets and messages in, exact output out.
#include "viewer.h"

namespace logpan_test {

namespace {

std::string json(const Sender& sender, const std::string& module, const std::string& sequence,
                 const std::string& level, const std::string& severity, const std::string& text) {
    return R"({"time":"2024-01-31T12:34:56.789","module":")" + module +
           R"(","thread":"00001234","processor":"01","sequence":)" + sequence +
           ",\"port\":" + std::to_string(sender.port()) + ",\"level\":" + level + R"(,"severity":")" +
           severity + R"(","text":")" + text + "\"}\n";
}

void sendHostile(const Sender& sender) {
    const LogpanPacketHeader good = headerOf(L"KX32UTIL", '5');
    sender.sendBytes("", 0);
    sender.sendBytes("x", 1);
    sender.sendBytes(&good, sizeof good - 1);
    LogpanPacketHeader header = good;
    for (const UINT32 size : {0u, 111u, 113u, 114u, 4096u, ~0u}) {
        header.headerSize = size; // 114 would be one that has grown, were it as long as it says
        sender.sendBytes(&header, sizeof header);
    }
    header = good;
    header.kind = 2;
    sender.send(header, L"of another kind");
}
constexpr int hostileCount = 10;

} // namespace

TEST(Console, PrintsGoodPacketsAndRefusesOthers) {
    Viewer viewer{"--json --max-lines 7"};
    const Sender sender{viewer.port()};
    sender.line(L"first\r\n", '0');
    sendHostile(sender);
    sender.line(L"  WRN: \"q\" \\ \x1b[31m\t\xe4\xd83d\xde00\xd800 end", '1');

    LogpanPacketHeader header = headerOf(L"", '2');
    header.textBytes = ~0u; // lies, as the next ones
    sender.sendAsIs(header, L"all that is there");
    header.sequence = '3';
    header.textBytes = 7;
    sender.sendAsIs(header, L"cut here");
    header.sequence = '4';
    std::fill(std::begin(header.tag), std::end(header.tag), L'x'); // not terminated
    sender.send(header, L"");
    header = headerOf(L"Later", 'A');
    header.headerSize = sizeof header + 4; // a header that has grown by two fields
    header.textBytes = 6;
    sender.sendAsIs(header, L"12new");
    header = headerOf(L"", '7');
    header.time = {9999, 99, 99, 99, 99, 99, 99, 9999};
    sender.send(header, L"no time");

    const Outcome outcome = viewer.expect("received 7, shown 7, lost 0, refused 10, skipped 0");
    static_assert(hostileCount == 10);
    std::string noTime = json(sender, "", "7", "0", "", "no time");
    noTime.replace(8, std::string_view{"\"2024-01-31T12:34:56.789\""}.size(), "null");
    EXPECT_EQ(outcome.out, json(sender, "KX32UTIL", "0", "0", "", "first") +
                               json(sender, "KX32UTIL", "1", "2", "warning",
                                    R"(WRN: \"q\" \\ \u001b[31m\u0009)"
                                    "\xc3\xa4\xf0\x9f\x98\x80\xef\xbf\xbd end") +
                               json(sender, "", "2", "0", "", "all that is there") +
                               json(sender, "", "3", "0", "", "cut") +
                               json(sender, std::string(32, 'x'), "4", "0", "", "") +
                               json(sender, "Later", "null", "0", "", "new") + noTime);
}

TEST(Console, JoinsThePiecesOfALine) {
    Viewer viewer{"--console --datagram 512 --max-lines 3"};
    const UINT32 port = viewer.port();
    EXPECT_EQ(publishedInfo().largestDatagram, 512u);
    const Sender one{port};
    const Sender other{port};
    constexpr std::size_t most = (512 - sizeof(LogpanPacketHeader)) / sizeof(wchar_t);
    const std::wstring text(2 * most + 50, L'x');
    for (std::size_t at = 0; at < text.size(); at += most) {
        one.line(std::wstring_view{text}.substr(at, most), '0');
        if (at == 0)
            other.line(L"between", '9');
    }
    one.line(L"next", '1');
    const Outcome outcome = viewer.expect("received 3, shown 3, lost 0, refused 0, skipped 0");
    const std::string head = "12:34:56.789 KX32UTIL 00001234/01 ";
    EXPECT_EQ(outcome.out,
              head + "0 " + std::string(text.size(), 'x') + "\n" + head + "9 between\n" + head + "1 next\n");
}

TEST(Console, CountsLinesThatNeverCame) {
    Viewer viewer{"--console --max-lines 6"};
    const UINT32 port = viewer.port();
    const Sender one{port};
    const Sender other{port};
    for (const char digit : {'8', '9', '3', '4'}) // 0, 1 and 2 are missing
        one.line(L"one", digit);
    other.line(L"other", '5');
    other.line(L"other", '7'); // 6 is missing
    viewer.expect("received 6, shown 6, lost 4, refused 0, skipped 0");
}

TEST(Console, HearsOlderSenders) {
    Viewer viewer{"--console --max-lines 3"};
    ASSERT_NE(viewer.port(), 0u);
    const std::string head = "12:34:56.789 0000abcd/01 7 ";
    ASSERT_TRUE(sendToMailslot("Module  : " + head + "  indented\r\n"));
    ASSERT_TRUE(sendToMailslot(head + " " + std::string(510 - head.size() - 1, 'x')));
    ASSERT_TRUE(sendToMailslot("tail"));
    ASSERT_TRUE(sendToMailslot("\x1b[2J of no form"));
    const Outcome outcome = viewer.expect("received 3, shown 3, lost 0, refused 0, skipped 0");
    const std::string lines = "12:34:56.789 Module   0000abcd/01 7  indented\n"
                              "12:34:56.789          0000abcd/01 7 " +
                              std::string(510 - head.size() - 1, 'x') + "tail\n";
    EXPECT_EQ(outcome.out.substr(0, lines.size()), lines);
    EXPECT_TRUE(outcome.out.ends_with("          00000000/00 - \\x1b[2J of no form\n")) << outcome.out;
}

TEST(Console, ShowsWhatTheFilterLetsThrough) {
    struct Case {
        const char* arguments;
        const char* shown; // the first letters of the lines
    };
    constexpr Case cases[] = {{"--filter LOAD --max-lines 2", "ac"},
                              {"--filter load --exclude printer --max-lines 1", "c"},
                              {"--regex --filter \"^(alpha|c.*d$)\" --max-lines 2", "ac"},
                              {"--regex --exclude \"^[ac]|^d\" --max-lines 2", "be"},
                              {"--filter kx32util --max-lines 5", "abcde"}};
    for (const Case& at : cases) {
        Viewer viewer{std::string{"--console "} + at.arguments};
        const Sender sender{viewer.port()};
        char digit = '0';
        for (const wchar_t* text : {L"alpha load printer", L"beta", L"charlie load", L"delta", L"echo"})
            sender.line(text, digit++);
        const Outcome outcome = viewer.finish();
        std::string shown;
        for (std::size_t line = 0; line < outcome.out.size(); line = outcome.out.find('\n', line) + 1)
            shown += outcome.out[line + std::string_view{"12:34:56.789 KX32UTIL 00001234/01 0 "}.size()];
        EXPECT_EQ(shown, at.shown) << at.arguments << "\n" << outcome.err;
    }
}

TEST(Console, EndsAfterATime) {
    Viewer viewer{"--console --exit-after 0.1"};
    EXPECT_EQ(viewer.expect("received 0, shown 0, lost 0, refused 0, skipped 0").out, "");
}

TEST(Console, RefusesWrongUsage) {
    struct Case {
        const char* arguments;
        const char* reason;
    };
    constexpr Case cases[] = {{"--console --regex --filter \"(\"", "logpan: --filter: "},
                              {"--regex --exclude \"[\"", "logpan: --exclude: "},
                              {"--max-lines 3", "need --console or --json"},
                              {"--console --max-lines 0", "--max-lines"},
                              {"--console --datagram 100", "--datagram"},
                              {"--console --exit-after -1", "--exit-after"},
                              {"--unknown", "Try 'logpan --help'."}};
    for (const Case& at : cases) {
        const Outcome outcome = Viewer{at.arguments}.finish();
        EXPECT_EQ(outcome.code, 2u) << at.arguments;
        EXPECT_NE(outcome.err.find(at.reason), std::string::npos) << at.arguments << "\n" << outcome.err;
    }
}

} // namespace logpan_test
