// The text form: what is written, byte for byte, and what every kind of line is read as.
#include "support/piece_stream.h"

namespace testing_prof {
namespace {

TEST(TextForm, TreesAreWrittenByteForByte) {
    const std::pair<const wchar_t*, const wchar_t*> golden[] = {
        {L"", L"[/]\r\n{\r\n}\r\n"},
        {L"a=1;L{b=2;}c=;", L"[/]\r\n{\r\n a=1\r\n [L]\r\n {\r\n  b=2\r\n }\r\n c=\r\n}\r\n"},
        {L"=x;{}", L"[/]\r\n{\r\n =x\r\n []\r\n {\r\n }\r\n}\r\n"},
        {L"a= b ;K{}K{}", L"[/]\r\n{\r\n a= b \r\n [K]\r\n {\r\n }\r\n [K]\r\n {\r\n }\r\n}\r\n"},
    };
    for (const auto& [tree, text] : golden)
        EXPECT_EQ(saved(Job(tree)), utf16(L"\xFEFF" + std::wstring(text))) << tree;
}

TEST(TextForm, SpecialCharactersAreReplacedInItemsAndKeptInListNames) {
    const Job job;
    ProfSetStringW(job, 0, L"a=b[c]", L"x=y[z]\r\n\t\x01\x1F\x2400");
    ProfSetStringW(job, 0, L"n\r\n\t", L"");
    ProfAppendListW(job, 0, L"l=[m]\x2409");
    EXPECT_EQ(saved(job),
              utf16(L"\xFEFF[/]\r\n{\r\n a\x2338"
                    L"b\x301A"
                    L"c\x301B=x=y[z]\x240D\x240A\x2409"
                    L"\x2401\x241F\x2400\r\n n\x240D\x240A\x2409=\r\n [l=[m]\x2409]\r\n {\r\n }\r\n"
                    L"}\r\n"));
    EXPECT_EQ(describe(opened(saved(job))), describe(job));
}

TEST(TextForm, IndentationIsATabForFourLevelsAndBlanksForTheRest) {
    const Job job;
    std::wstring head = L"\xFEFF[/]\r\n{\r\n", tail = L"}\r\n";
    ProfList list = 0;
    for (const wchar_t* level : {L" ", L"  ", L"   ", L"\t", L"\t ", L"\t  ", L"\t   ", L"\t\t", L"\t\t "}) {
        const std::wstring indent = level;
        ProfSetStringW(job, list, L"i", L"");
        list = ProfAppendListW(job, list, L"L");
        head += indent + L"i=\r\n" + indent + L"[L]\r\n" + indent + L"{\r\n";
        tail = indent + L"}\r\n" + tail;
    }
    EXPECT_EQ(saved(job), utf16(head + tail));
}

TEST(TextForm, LinesOfEveryLengthAreWrittenWhole) {
    for (const size_t length : {0u, 1u, 255u, 256u, 257u, 4095u, 4096u, 4097u, 70000u}) {
        const Job job;
        const std::wstring text(length, L'\x263A');
        ProfSetStringW(job, 0, (L"n" + text).c_str(), text.c_str());
        ProfAppendListW(job, 0, text.c_str());
        EXPECT_EQ(saved(job), utf16(L"\xFEFF[/]\r\n{\r\n n" + text + L"=" + text + L"\r\n [" + text +
                                    L"]\r\n {\r\n }\r\n}\r\n"));
    }
}

struct Reading {
    const wchar_t* text;
    const wchar_t* tree;
};

const Reading kReadings[] = {
    {L"", L""},
    {L"\n\r\n \t \n", L""},
    {L"[/]\n{\na=1\n}\n", L"a=1;"},
    {L"[/]\r\n{\r\n\ta=1\r\n}\r\n", L"a=1;"},
    {L"[/]\r{\ra=1\r}", L"a=1;"},
    {L" \t[/]\n\n\n  {\n \t  a=1", L"a=1;"},
    {L"[/]\na=1\n[L]\nb=2\n}\nc=3", L"a=1;L{b=2;}c=3;"},
    {L"[/]\n{\n[L]\n{\na=1", L"L{a=1;}"},
    {L"[/]\n{\n a = 1 \n}", L"a = 1 ;"},
    {L"[/]\n{\nname\n=v\na=b=c\n}", L"name=;=v;a=b=c;"},
    {L"[/]\n{\n#c=1\n;d=2\n # e\n{ignored=1\na=#1\n}", L"a=#1;"},
    {L"[/]\n{\n[a]b]\n{\n}\n[c] behind=1\n{\n}\n[]\n{\n}\n}", L"a]b{}c{}{}"},
    {L"[/]\n{\n[L]\n{\n}\n[L]\n{\n}\na=1\na=2\n}", L"L{}L{}a=1;a=2;"},
    {L"[/]\n{\n[/]\n{\nx=1\n}\n}", L"/{x=1;}"},
    {L"[/]\n{\na=1\n}\n}\n}\n", L"a=1;"},
    {L"[/]\n{\na=1\n}\nlost=1\n", L"a=1;"},
    {L"[/]\n{\na=1\n}\n[/]\n{\nb=2\n}\n", L"a=1;b=2;"},
    {L"[/]\n{\n} behind\n[/]\na=1", L"a=1;"},
    {L"[/]\n{\na=\x240D\x240A\x2401\x241F\x2400\x2420\x2421\x2338\x301A\x301B\n}",
     L"a=\r\n\x01\x1F\x2400\x2420\x2421\x2338\x301A\x301B;"},
    {L"[/]\n{\n\x2338\x301A\x301B\x2409\x2400=1\n[\x2409\x2338]\n}", L"=[]\t\x2400=1;\x2409\x2338{}"},
    // Anything before the first header is skipped; a first header that is not [/] starts sections.
    {L"junk\nx=1\n[/]\n{\na=1\n}", L"a=1;"},
    {L"; note\n# note\n[/]\n{\na=1\n}", L"a=1;"},
    {L"[Settings]\na=1\n[More]\nb=2", L"a=1;More{b=2;}"},
    {L"[A]\na=1\n[B]\nb=2\n[C]\nc=3", L"a=1;B{b=2;C{c=3;}}"},
    {L"; note\nx=1\n[A]\na=1\n[B]\nb=2", L"a=1;B{b=2;}"},
    {L"[A]\n[B]\nb=2\n}\na=1", L"B{b=2;}a=1;"},
    {L"[/\na=1", L"a=1;"},
    {L"[/]x\na=1", L"a=1;"},
    {L"x=1\ny=2\n", L""},
    {L"[Only]", L""},
};

TEST(TextForm, LinesAreReadByTheirFirstCharacter) {
    for (const Reading& reading : kReadings) {
        const Job job = opened(utf16(L"\xFEFF" + std::wstring(reading.text)));
        EXPECT_EQ(job.error(), PROF_OK);
        EXPECT_EQ(describe(job), reading.tree) << reading.text;
    }
}

TEST(TextForm, PlainIniFilesAreReadFlat) {
    const Reading readings[] = {
        {L"x=0\n[S]\na=1\n[T]\nb=2\n", L"x=0;S{a=1;}T{b=2;}"},
        {L"[S]\n  key  =  some value  \n", L"S{key=some value;}"},
        {L"[S]\na=\"q \" ; no comment\nb=1 # 2\n", L"S{a=\"q \" ; no comment;b=1 # 2;}"},
        {L"; c\n#d\n[S]\n;e=1\n #f=1\n\na=\n", L"S{a=;}"},
        {L"[S]\n{\n}\na=1\n[T]\n", L"S{{=;}=;a=1;}T{}"},
        {L"[/]\na=1\n", L"/{a=1;}"},
        {L"[a]b] c\nx=y=z\n", L"a]b{x=y=z;}"},
        {L"", L""},
    };
    for (const Reading& reading : readings)
        for (const UINT flags : {PROF_READ_PLAIN_INI, PROF_READ_PLAIN_INI | 0xFFFF0000u})
            EXPECT_EQ(describe(opened(utf16(L"\xFEFF" + std::wstring(reading.text)), flags)), reading.tree)
                << reading.text;
    EXPECT_EQ(describe(opened(utf16(L"\xFEFF[A]\n[B]\n"), 0xFFFFFFF0u)), L"B{}")
        << "reserved bits are ignored";
}

TEST(Forms, AreChosenByTheLowFourBits) {
    const Job job(L"a=1;l{b=<\">;}");
    const Bytes xml = saved(job, PROF_FORM_XML);
    const Bytes xfdf = saved(job, PROF_FORM_XFDF);
    EXPECT_TRUE(xml.starts_with(utf16(L"\xFEFF<?xml version=\"1.0\" encoding=\"UTF-16\"")));
    EXPECT_TRUE(xfdf.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<xfdf xmlns="));
    for (const UINT flags : {3u, 0xFu, 0x11u, 0x81u, 0xFFFFFF0Fu})
        EXPECT_EQ(saved(job, flags), flags & PROF_SAVE_COMPRESSED ? saved(job, 0x41) : xml) << flags;
    for (const UINT flags : {0x12u, 0x82u})
        EXPECT_EQ(saved(job, flags), xfdf) << flags;
    EXPECT_EQ(saved(job, 0x10), saved(job)) << "bits above the form do not choose it";
    for (const UINT flags : {0x00u, 0x01u, 0x41u})
        EXPECT_EQ(describe(opened(saved(job, flags))), describe(job)) << flags;
    EXPECT_EQ(describe(opened(xfdf)), L"=1;=<\">;");
    EXPECT_EQ(describe(opened(xfdf, PROF_READ_FOREIGN_XFDF)), describe(job));
}

TEST(Forms, OtherXmlIsAnEmptyProfileUnlessXfdfIsAskedFor) {
    const Bytes other = "<?xml version=\"1.0\"?><profile><item name=\"a\">1</item></profile>";
    EXPECT_EQ(opened(other).error(), PROF_OK);
    EXPECT_EQ(describe(opened(other)), L"");
    EXPECT_EQ(opened(other, PROF_READ_FOREIGN_XFDF).error(), PROF_LOAD_FAILED);
}

} // namespace
} // namespace testing_prof
