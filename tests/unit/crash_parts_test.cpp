// What a crash is described with: the report's text, lines of frames, walks over stacks, modules in memory.
#include "runtime/crash/crash_report.h"
#include "runtime/crash/frame_walk.h"
#include "runtime/frame_line.h"
#include "support/process_picture.h"

#include <gtest/gtest.h>

#include <vector>

using namespace tvut;

namespace {

constexpr std::string_view expectedReport =
    "tvUT22 report 1\r\n"
    "Product: Invoice  Designer\r\n"
    "Version: \r\n"
    "Program: C:\\\xC3\x9C\\\xEF\xBF\xBD\xF0\x9F\x98\x80.exe\r\n"
    "Time: 2026-11-01T02:10:05.023Z\r\n"
    "Process: 1234\r\n"
    "Thread: 5678\r\n"
    "Reason: access violation\r\n"
    "Code: 0xC0000005\r\n"
    "Address: 0x00401D44\r\n"
    "Access: execute 0x00000008\r\n"
    "Registers: eax=0000000a ebx=00000000 ecx=00000000 edx=00000000 "
    "esi=00000000 edi=00000000 ebp=0012ff00 esp=00000000 eip=00401d44 "
    "efl=00010246\r\n"
    "System: Windows 6.1.7601, 2 processors, memory 1234/4096 MB, "
    "address space 1890/2047 MB\r\n"
    "Note: Document=C:\\x\\march.rpt\r\n"
    "Stack:\r\n"
    "  designer.exe+0x1d44\r\n"
    "  0x0040abcd ?\r\n"
    "Modules:\r\n"
    "  00400000-0044ffff 4.2.1.65535 C:\\designer.exe\r\n"
    "  fffe0000-ffffffff 0.0.0.0 \r\n"
    "Dump: none (0xC0000005)\r\n";

void PutReport(clsCrashReport& report) {
    clsNotes notes;
    notes.Set(u"Document", u"C:\\x\\march.rpt");
    scException exception{5678, 0xC0000005, 0, 0x00401D44, 2, {8, 8}};
    scThreadContext context;
    context.eax = 10;
    context.ebp = 0x0012FF00;
    context.eip = 0x00401D44;
    context.eflags = 0x10246;
    std::array<scModule, 2> modules;
    modules[0].range = {0x400000, 0x50000};
    modules[0].fileVersionHigh = 0x40002;
    modules[0].fileVersionLow = 0x1FFFF;
    modules[0].path = u"C:\\designer.exe";
    modules[1].range = {0xFFFE0000, 0x20000};
    report.PutTitle();
    report.PutProgram({u"Invoice\r\nDesigner",
                       u"",
                       u"C:\\\u00DC\\\xD800\xD83D\xDE00.exe",
                       {2026, 11, 1, 2, 10, 5, 23},
                       1234});
    report.PutEvent(exception, UtilpReasonOf(exception.code), context);
    report.PutSystem({6, 1, 7601, 2, 1234, 4096, 1890, 2047});
    report.PutNotes(notes);
    report.PutStackHead();
    report.PutFrame(u"designer.exe+0x1d44", false);
    report.PutFrame(u"0x0040abcd", true);
    report.PutModules(modules);
    report.PutNoDump(u"0xC0000005");
}

TEST(CrashReport, ReadsAsItIsDocumented) {
    clsMemorySink sink;
    clsCrashReport report(sink);
    PutReport(report);
    EXPECT_TRUE(report.Flush());
    EXPECT_EQ(sink.written, expectedReport);
}

TEST(CrashReport, IsWrittenAsFarAsThereIsRoom) {
    clsMemorySink sink(6000);
    clsCrashReport report(sink);
    while (sink.written.size() < 6000)
        PutReport(report);
    EXPECT_FALSE(report.Flush());
    for (std::size_t at = 0; at < sink.written.size(); ++at)
        ASSERT_EQ(sink.written[at], expectedReport[at % expectedReport.size()]) << at;
}

TEST(FrameLine, NamesWhatIsKnown) {
    const std::string longName(2000, 'f');
    const struct {
        std::u16string_view module;
        std::string_view function, file;
        std::u16string expected;
    } cases[] = {
        {u"", "", "", u"0x00401d44"},
        {u"designer.exe", "", "", u"designer.exe+0x1d44"},
        {u"C:\\a/designer.exe", "_Z1fv", "", u"designer.exe+0x1d44 _Z1fv+0x12"},
        {u"\\", "\xC3\xA4\xFF", "/src\\page.cpp", u"+0x1d44 \u00E4\uFFFD+0x12 (page.cpp:41)"},
        {u"m", longName, "p.c", u"m+0x1d44 " + std::u16string(512, u'f') + u"+0x12 (p.c:41)"},
    };
    for (const auto& one : cases) {
        clsDiagnosticLine line;
        UtilpPutFramePlace(line, 0x401D44, one.module, 0x400000);
        UtilpPutFrameFunction(line, one.function, 0x12);
        UtilpPutFrameSource(line, one.file, 41);
        EXPECT_EQ(line.View(), one.expected);
    }
}

constexpr std::uint32_t stackBegin = 0x200000, codeBegin = 0x400000, dataBegin = 0x500000, pageSize = 4096;

// A stack's words from its beginning; what is left out is zero.
std::vector<scFrame> Walk(std::initializer_list<std::pair<std::uint32_t, std::uint32_t>> words,
                          std::uint32_t eip, std::uint32_t ebp) {
    clsProcessPicture memory;
    std::string stack(pageSize, '\0');
    for (const auto& [at, word] : words)
        std::memcpy(&stack[at], &word, sizeof word);
    memory.Add(stackBegin, pageSize, MemoryKind::data, stack);
    memory.Add(dataBegin, pageSize, MemoryKind::data, std::string(pageSize, '\xD0'));
    std::string code(pageSize, '\x90');
    for (std::size_t at = 0x100; at < 0x800; at += 0x100)
        code.replace(at - 2, 2, "\xFF\xD0");        // a call returns to each 0x400100
    code.replace(0x801, 3, "\x55\x89\xE5");         // a function begins here,
    code.replace(0x900, 5, "\x8B\xFF\x55\x8B\xEC"); // another one here,
    code[0xA00] = code[0x600] = '\xC3';             // one ends here, another one after a call,
    code.replace(0x700, 3, {'\xC2', 8, 0});         // and one that takes two words
    memory.Add(codeBegin, pageSize, MemoryKind::code, code);
    std::vector<scFrame> frames(64);
    frames.resize(UtilpWalkFrames(memory, {eip, stackBegin, ebp, 0}, frames));
    return frames;
}

std::string Text(const std::vector<scFrame>& frames) {
    std::string text;
    for (const scFrame& frame : frames) {
        std::array<char, 16> digits;
        text.append(digits.data(),
                    static_cast<std::size_t>(std::snprintf(digits.data(), digits.size(), "%x%s ",
                                                           frame.address, frame.isGuess ? "?" : "")));
    }
    return text;
}

TEST(FrameWalk, FollowsTheChainAndThenSearches) {
    const std::uint32_t s = stackBegin, outer = 0xF00, last = 0xF80;
    // A chain to the thread's beginning; words that look like callers lie between.
    EXPECT_EQ(
        Text(Walk(
            {{0x20, 0x400700}, {0x40, s + outer}, {0x44, 0x400111}, {outer, s + last}, {outer + 4, 0x400222}},
            0x400300, s + 0x40)),
        "400300 400111 400222 ");
    // A zero far from the stack's end is no beginning.
    EXPECT_EQ(Text(Walk({{0x40, 0}, {0x44, 0x400111}, {0x80, 0x400200}}, 0x400300, s + 0x40)),
              "400300 400111 400200? ");
    // A call through null has left where it came from.
    EXPECT_EQ(Text(Walk({{0, 0x400100}, {outer, s + last}, {outer + 4, 0x400222}}, 0, s + outer)),
              "0 400100 400222 ");
    // Functions without a frame yet, or any more, whose caller has one.
    const auto frameless = [&](std::uint32_t eip) {
        return Text(
            Walk({{0, 0x400100}, {4, 0x400200}, {outer, s + last}, {outer + 4, 0x400222}}, eip, s + outer));
    };
    EXPECT_EQ(frameless(0x400801), "400801 400100 400222 ");
    EXPECT_EQ(frameless(0x400802), "400802 400200 400222 ");
    EXPECT_EQ(frameless(0x400900), "400900 400100 400222 ");
    EXPECT_EQ(frameless(0x400902), "400902 400100 400222 ");
    EXPECT_EQ(frameless(0x400903), "400903 400200 400222 ");
    EXPECT_EQ(frameless(0x400A00), "400a00 400100 400222 ");
    EXPECT_EQ(frameless(0x400A01), "400a01 400222 ");
    EXPECT_EQ(Text(Walk({{0, 0x400700}, {4, 0x400600}, {16, 0x400300}}, 0x400A00, 0x12345)),
              "400a00 400700 400600 400300 ");
    // A frame pointer of frameless code: what stands after no call is passed over, a chain is found again.
    EXPECT_EQ(Text(Walk({{0x10, 0x400101},
                         {0x20, dataBegin + 2},
                         {0x3C, s + outer},
                         {0x40, 0x400200},
                         {0x50, 0x400300},
                         {outer, 0},
                         {outer + 4, 0x400400}},
                        0x400500, 0x12345)),
              "400500 400200? 400400? ");
    // One that points back ends there, and so does a stack that is none.
    EXPECT_EQ(Text(Walk({{0x40, s + 0x40}, {0x44, 0x400111}}, 0x400300, s + 0x40)), "400300 400111 ");
    clsProcessPicture nothing;
    std::array<scFrame, 4> frames;
    EXPECT_EQ(UtilpWalkFrames(nothing, {1, 0xFFFFFFFF, 0xFFFFFFFF, 0}, frames), 1u);
}

// An image of one page with a version and a debug record.
std::string Image() {
    std::string image(pageSize, '\0');
    const auto put = [&](std::size_t at, std::initializer_list<std::uint32_t> words) {
        for (const std::uint32_t word : words) {
            std::memcpy(&image[at], &word, sizeof word);
            at += sizeof word;
        }
    };
    put(0, {0x5A4D});
    put(0x3C, {0x80});
    put(0x80, {0x4550, 0x14C, 0x11223344});
    put(0x98, {0x10B});
    put(0x80 + 80, {pageSize, 0, 0x55667788});
    put(0x80 + 116, {16, 0, 0, 0, 0, 0x200, 0x100}); // directories; the third: resources
    put(0x80 + 168, {0x300, 0x38});                  // the seventh: debug
    put(0x20C, {0x00020000, 3, 0, 16, 0x80000040});  // icons, and versions
    put(0x24C, {0x00010000, 1, 0x80000080});
    put(0x28C, {0x00010000, 1033, 0xC0});
    put(0x2C0, {0x400, 92});
    put(0x428, {0xFEEF04BD, 0x10000, 0x40002, 0x10005, 0x60007, 0x80009});
    put(0x300 + 12, {1, 8, 0x500});
    put(0x31C + 12, {2, 24, 0x600});
    return image;
}

TEST(ModuleWalk, FindsImagesAndWhatTheySay) {
    clsProcessPicture memory;
    memory.Add(0x10000, pageSize, MemoryKind::mapped, Image()); // no image
    memory.Add(codeBegin, pageSize, MemoryKind::constants, Image());
    memory.Add(dataBegin, pageSize, MemoryKind::constants, "MZ");
    memory.Add(0xF0000000, pageSize, MemoryKind::code, Image().replace(0x428, 1, "?"));
    std::array<scModule, 3> modules;
    ASSERT_EQ(UtilpFindModules(memory, modules), 2u);
    const scModule& first = modules[0];
    EXPECT_EQ(first.range.address, codeBegin);
    EXPECT_EQ(first.range.bytes, pageSize);
    EXPECT_EQ(first.timeStamp, 0x11223344u);
    EXPECT_EQ(first.checksum, 0x55667788u);
    EXPECT_EQ(first.codeView.address, codeBegin + 0x600);
    EXPECT_EQ(first.codeView.bytes, 24u);
    EXPECT_EQ(first.hasVersion, true);
    const std::array words{first.fileVersionHigh, first.fileVersionLow, first.productVersionHigh,
                           first.productVersionLow};
    EXPECT_EQ(words, (std::array{0x40002u, 0x10005u, 0x60007u, 0x80009u}));
    EXPECT_FALSE(modules[1].hasVersion);
    const std::span found(modules.data(), 2);
    EXPECT_EQ(UtilpModuleAt(found, codeBegin + pageSize - 1), &modules[0]);
    EXPECT_EQ(UtilpModuleAt(found, 0xF0000000), &modules[1]);
    for (const std::uint32_t address : {0u, codeBegin - 1, codeBegin + pageSize, UINT32_MAX})
        EXPECT_EQ(UtilpModuleAt(found, address), nullptr) << address;
}

TEST(ModuleWalk, BelievesNoDamagedImage) {
    const std::string image = Image();
    for (std::size_t at = 0; at < 0x700; ++at) {
        for (const char byte : {'\x00', '\x01', '\x7F', '\x80', '\xFF'}) {
            clsProcessPicture memory;
            memory.Add(codeBegin, pageSize, MemoryKind::code, std::string(image).replace(at, 1, 1, byte));
            scModule module;
            if (UtilpReadModule(memory, codeBegin, module)) {
                ASSERT_GE(UINT32_MAX - module.range.address, module.range.bytes - 1) << at;
                ASSERT_LE(module.codeView.End(), module.range.End()) << at;
            }
        }
    }
}

} // namespace
