// The console mode from the outside: real packets and messages in, exact output out.
#include "viewer.h"

#include "support/cases.h"

namespace logpan_test {

namespace {

std::string Json(const clsSender& sender, const std::string& module, const std::string& sequence,
                 const std::string& level, const std::string& severity, const std::string& text) {
    return R"({"time":"2024-01-31T12:34:56.789","module":")" + module +
           R"(","thread":"00001234","processor":"01","sequence":)" + sequence +
           ",\"port\":" + std::to_string(sender.Port()) + R"(,"process":"logpan_test.exe","pid":)" +
           std::to_string(GetCurrentProcessId()) + ",\"level\":" + level + R"(,"severity":")" + severity +
           R"(","text":")" + text + "\"}\n";
}

// A console for this test and the programs that it starts. Those who start after a Ctrl+C take its events
// again.
class clsOwnConsole {
  public:
    clsOwnConsole() {
        FreeConsole();
        AllocConsole();
    }
    ~clsOwnConsole() {
        SetConsoleCtrlHandler(nullptr, FALSE);
        FreeConsole();
    }
    clsOwnConsole(const clsOwnConsole&) = delete;
    clsOwnConsole& operator=(const clsOwnConsole&) = delete;

    // It goes to all programs of the console; this one passes it over.
    void PressCtrlC() const {
        SetConsoleCtrlHandler(nullptr, TRUE);
        EXPECT_TRUE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0));
    }
};

void SendHostile(const clsSender& sender) {
    const LogpanPacketHeader good = HeaderOf(L"KX32UTIL", '5');
    sender.SendBytes("", 0);
    sender.SendBytes("x", 1);
    sender.SendBytes(&good, sizeof good - 1);
    LogpanPacketHeader header = good;
    for (const UINT32 size : {0u, 111u, 113u, 114u, 4096u, ~0u}) {
        header.headerSize = size; // 114 would be one that has grown, were it as long as it says
        sender.SendBytes(&header, sizeof header);
    }
    header = good;
    header.kind = 2;
    sender.Send(header, L"of another kind");
}

} // namespace

TEST(Console, PrintsGoodPacketsAndRefusesOthers) {
    clsViewer viewer{"--json --max-lines 7"};
    const clsSender sender{viewer.Port()};
    sender.Line(L"first\r\n", '0');
    SendHostile(sender);
    sender.Line(L"  WRN: \"q\" \\ \x1b[31m\t\xe4\xd83d\xde00\xd800 end", '1');

    LogpanPacketHeader header = HeaderOf(L"", '2');
    header.textBytes = ~0u; // lies, as the next ones
    sender.SendAsIs(header, L"all that is there");
    header.sequence = '3';
    header.textBytes = 7;
    sender.SendAsIs(header, L"cut here");
    header.sequence = '4';
    std::fill(std::begin(header.tag), std::end(header.tag), L'x'); // not terminated
    sender.Send(header, L"");
    header = HeaderOf(L"Later", 'A');
    header.headerSize = sizeof header + 4; // a header that has grown by two fields
    header.textBytes = 6;
    sender.SendAsIs(header, L"12new");
    header = HeaderOf(L"", '7');
    header.time = {9999, 99, 99, 99, 99, 99, 99, 9999};
    sender.Send(header, L"no time");

    const scOutcome outcome = viewer.Expect("received 7, shown 7, lost 0, refused 10, skipped 0");
    std::string noTime = Json(sender, "", "7", "0", "", "no time");
    noTime.replace(8, std::string_view{"\"2024-01-31T12:34:56.789\""}.size(), "null");
    EXPECT_EQ(outcome.out, Json(sender, "KX32UTIL", "0", "0", "", "first") +
                               Json(sender, "KX32UTIL", "1", "2", "warning",
                                    R"(WRN: \"q\" \\ \u001b[31m\u0009)"
                                    "\xc3\xa4\xf0\x9f\x98\x80\xef\xbf\xbd end") +
                               Json(sender, "", "2", "0", "", "all that is there") +
                               Json(sender, "", "3", "0", "", "cut") +
                               Json(sender, std::string(32, 'x'), "4", "0", "", "") +
                               Json(sender, "Later", "null", "0", "", "new") + noTime);
}

TEST(Console, JoinsThePiecesOfALine) {
    clsViewer viewer{"--console --datagram 512 --max-lines 3"};
    const UINT32 port = viewer.Port();
    EXPECT_EQ(PublishedInfo().largestDatagram, 512u);
    const clsSender one{port};
    const clsSender other{port};
    constexpr std::size_t most = (512 - sizeof(LogpanPacketHeader)) / sizeof(wchar_t);
    const std::wstring text(2 * most + 50, L'x');
    for (std::size_t at = 0; at < text.size(); at += most) {
        one.Line(std::wstring_view{text}.substr(at, most), '0');
        if (at == 0)
            other.Line(L"between", '9');
    }
    one.Line(L"next", '1');
    const scOutcome outcome = viewer.Expect("received 3, shown 3, lost 0, refused 0, skipped 0");
    const std::string head = "12:34:56.789 KX32UTIL 00001234/01 ";
    EXPECT_EQ(outcome.out,
              head + "0 " + std::string(text.size(), 'x') + "\n" + head + "9 between\n" + head + "1 next\n");
}

TEST(Console, HearsOlderSenders) {
    clsViewer viewer{"--console --max-lines 3"};
    ASSERT_NE(viewer.Port(), 0u);
    const std::string head = "12:34:56.789 0000abcd/01 7 ";
    ASSERT_TRUE(SendToMailslot("Module  : " + head + "  indented\r\n"));
    ASSERT_TRUE(SendToMailslot(head + " " + std::string(510 - head.size() - 1, 'x')));
    ASSERT_TRUE(SendToMailslot("tail"));
    ASSERT_TRUE(SendToMailslot("\x1b[2J of no form"));
    const scOutcome outcome = viewer.Expect("received 3, shown 3, lost 0, refused 0, skipped 0");
    const std::string lines = "12:34:56.789 Module   0000abcd/01 7  indented\n"
                              "12:34:56.789          0000abcd/01 7 " +
                              std::string(510 - head.size() - 1, 'x') + "tail\n";
    EXPECT_EQ(outcome.out.substr(0, lines.size()), lines);
    EXPECT_TRUE(outcome.out.ends_with("          00000000/00 - \\x1b[2J of no form\n")) << outcome.out;
}

TEST(Console, ShowsWhatTheFilterLetsThrough) {
    struct scCase {
        const char* arguments;
        const char* shown; // the first letters of the lines
    };
    constexpr scCase cases[] = {{"--filter LOAD --max-lines 2", "ac"},
                                {"--regex --filter \"^(alpha|c.*d$)\" --max-lines 2", "ac"},
                                {"--only \"load module=KX32UTIL process=logpan_test\" --max-lines 2", "ac"},
                                {"--filter load --regex --exclude \"p.*r\" --max-lines 1", "c"}};
    for (const scCase& at : cases) {
        clsViewer viewer{std::string{"--console "} + at.arguments};
        const clsSender sender{viewer.Port()};
        char digit = '0';
        for (const wchar_t* text : {L"alpha load printer", L"beta", L"charlie load", L"delta", L"echo"})
            sender.Line(text, digit++);
        const scOutcome outcome = viewer.Finish();
        std::string shown;
        for (std::size_t line = 0; line < outcome.out.size(); line = outcome.out.find('\n', line) + 1)
            shown += outcome.out[line + std::string_view{"12:34:56.789 KX32UTIL 00001234/01 0 "}.size()];
        EXPECT_EQ(shown, at.shown) << at.arguments << "\n" << outcome.err;
    }
}

TEST(Console, EndsWithCtrlC) {
    const clsOwnConsole console;
    clsViewer viewer{"--console"};
    const clsSender sender{viewer.Port()};
    sender.Line(L"last words", '0');
    viewer.WaitForOutput("\n");
    console.PressCtrlC();
    EXPECT_EQ(viewer.Expect("received 1, shown 1, lost 0, refused 0, skipped 0").out,
              "12:34:56.789 KX32UTIL 00001234/01 0 last words\n");
}

TEST(Console, EndsWhenNobodyReadsItsPipe) {
    clsViewer viewer{"--console", LOGPAN_CONSOLE, false};
    const clsSender sender{viewer.Port()};
    sender.Line(L"into the void", '0');
    viewer.Expect("received 1, shown 1, lost 0, refused 0, skipped 0");
}

// What is written as JSON is read again with nothing missing; other kinds of files are read as the core reads
// them.
TEST(Console, PrintsFiles) {
    const std::string json =
        R"({"time":"2024-01-31T12:34:56.789","module":"A","thread":"00000001","processor":)"
        R"("02","sequence":3,"port":4,"process":"x.exe","pid":5,"level":1,"severity":)"
        "\"error\",\"text\":\"ERR: \xc3\xa4\"}\n";
    const std::string plain = "12:34:56.789 A        00000001/02 3  ERR: \xc3\xa4\n";
    const testing_prof::clsTempFolder folder;
    const std::filesystem::path path{folder / L"lines.json"};
    testing_prof::WriteBytes(path, json + json + "{}");
    const std::string word = " \"" + path.string() + "\"";
    const scOutcome enough = clsViewer{"--json --max-lines 2" + word + " missing"}.Finish();
    EXPECT_EQ(enough.out, json + json);
    EXPECT_EQ(enough.code, 0u) << "what is not read need not be there";
    EXPECT_EQ(clsViewer{"--console --only process=5" + word}.Finish().out, plain + plain);
}

// Neither a line in a code page nor the end of a piece spoils what is UTF-8.
TEST(Console, PrintsFilesOfMixedEncodings) {
    const testing_prof::clsTempFolder folder;
    const std::filesystem::path path{folder / L"mixed.log"};
    std::string longLine = "x";
    for (int at = 0; at < 700'000; ++at)
        longLine += "\xc3\xa4";
    for (const std::string& bytes : {std::string{"\xe4\n"}, longLine + "\n"}) {
        testing_prof::WriteBytes(path, bytes + "\xc3\xa4\n");
        const scOutcome outcome = clsViewer{"--console \"" + path.string() + "\""}.Finish();
        EXPECT_TRUE(outcome.out.ends_with("\xc3\xa4\n"));
        EXPECT_EQ(outcome.out.find("\xc3\x83"), std::string::npos) << "a character that was cut in two";
    }
}

TEST(Console, RefusesWrongUsage) {
    for (const tvut::scCaseRow& row : tvut::CaseRows("logpan/usage", 2)) {
        const scOutcome outcome = clsViewer{tvut::NarrowCase(row[0])}.Finish();
        EXPECT_EQ(outcome.code, 2u) << row.where;
        EXPECT_NE(outcome.err.find(tvut::NarrowCase(row[1])), std::string::npos) << row.where << outcome.err;
    }
}

} // namespace logpan_test
