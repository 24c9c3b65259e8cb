// What a crash is described with: the report's text, lines of frames, walks over stacks, modules in memory.
#include "runtime/crash/crash_report.h"
#include "runtime/crash/frame_tables.h"
#include "runtime/crash/frame_walk.h"
#include "runtime/frame_line.h"
#include "support/cases.h"
#include "support/frame_table_image.h"
#include "support/process_picture.h"
#include "unit/whole_file.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

using namespace tvut;

namespace {

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
    EXPECT_EQ(sink.written, ReadFile(TVUT22_TEST_DATA "/crash/report.txt"));
}

TEST(CrashReport, IsWrittenAsFarAsThereIsRoom) {
    clsMemorySink sink(6000);
    clsCrashReport report(sink);
    const std::string expected = ReadFile(TVUT22_TEST_DATA "/crash/report.txt");
    while (sink.written.size() < 6000)
        PutReport(report);
    EXPECT_FALSE(report.Flush());
    for (std::size_t at = 0; at < sink.written.size(); ++at)
        ASSERT_EQ(sink.written[at], expected[at % expected.size()]) << at;
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

std::uint32_t Hex(const std::u16string& digits) {
    return static_cast<std::uint32_t>(std::stoul(NarrowCase(digits), nullptr, 16));
}

// A stack's words, such as "44=400111", from its beginning; what is left out is zero.
std::vector<scFrame> Walk(const std::u16string& words, std::uint32_t eip, std::uint32_t ebp) {
    clsProcessPicture memory;
    std::string stack(pageSize, '\0');
    std::istringstream pairs(NarrowCase(words));
    for (std::uint32_t at, word; pairs >> std::hex >> at && pairs.ignore() >> word;)
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
    for (const scCaseRow& row : CaseRows("crash/frame_walks", 4))
        EXPECT_EQ(Text(Walk(row[0], Hex(row[1]), Hex(row[2]))), NarrowCase(row[3]) + " ") << row.where;
    // A stack that is none.
    clsProcessPicture nothing;
    std::array<scFrame, 4> frames;
    EXPECT_EQ(UtilpWalkFrames(nothing, {1, 0xFFFFFFFF, 0xFFFFFFFF, 0}, frames), 1u);
}

// ---- Tables of frames -----------------------------------------------------------------------------

constexpr std::uint32_t esp = stackBegin + 0x400, ebp = stackBegin + 0x600;

// A stack where each word is the address 0x100 above its own, and an image.
clsProcessPicture TablePicture(std::string image) {
    clsProcessPicture memory;
    std::string stack;
    for (std::uint32_t word = stackBegin + 0x100; word < stackBegin + 0x100 + pageSize; word += sizeof word)
        stack.append(reinterpret_cast<const char*>(&word), sizeof word);
    memory.Add(stackBegin, pageSize, MemoryKind::data, stack);
    image.resize(3 * pageSize, '\x90');
    memory.Add(codeBegin, 3 * pageSize, MemoryKind::code, image);
    return memory;
}

// Where the function at the image's code, of 32 bytes, has its caller.
bool Leave(const std::string& image, std::uint32_t at, scFrameRegisters& registers) {
    clsProcessPicture memory = TablePicture(image);
    clsFrameTables tables(memory);
    registers = {codeBegin + imageCodeAt + at, esp, ebp};
    return tables.Leave(registers);
}

#define PROGRAM(text) std::string(text, sizeof text - 1)

TEST(FrameTables, TellWhereCallersAre) {
    for (const scCaseRow& row : CaseRows("crash/frame_tables", 4)) {
        std::string program;
        std::istringstream bytes(NarrowCase(row[0]));
        for (unsigned byte; bytes >> std::hex >> byte;)
            program += static_cast<char>(byte);
        const std::vector<scTableFunction> functions{{imageCodeAt + 64, 32, "\x3F"},
                                                     {imageCodeAt, 32, program}};
        const std::uint32_t frame = Hex(row[2]);
        scFrameRegisters registers;
        ASSERT_EQ(Leave(FrameTableImage(functions), Hex(row[1]), registers), frame != 0) << row.where;
        if (frame == 0)
            continue;
        EXPECT_EQ(registers.esp, frame) << row.where;
        EXPECT_EQ(registers.eip, frame - 4 + 0x100) << row.where;
        EXPECT_EQ(registers.ebp, Hex(row[3])) << row.where;
    }
}

TEST(FrameTables, ReadWhatCompilersBeginThemWith) {
    const std::string program = "\x0C\4\4\x88\1";
    const std::vector<scTableFunction> functions{{imageCodeAt, 32, "\x0E\x08"}};
    const std::string head(4, '\0');
    const std::pair<std::string, bool> cases[] = {
        {head + PROGRAM("\1zPLR\0\1\x7C\x08\7\x9B\0\0\0\0\x1B\x1B") + program, true},
        {head + PROGRAM("\3zR\0\1\x7C\x88\0\1\x1B") + program, true},
        {head + PROGRAM("\1zR\0\1\x7C\x08\1\0") + program, false},    // other addresses,
        {head + PROGRAM("\1zR\0\1\x7C\x08\1\x1A") + program, false},  // of two bytes,
        {head + PROGRAM("\1zXR\0\1\x7C\x08\1\x1B") + program, false}, // something new,
        {head + PROGRAM("\1zR\0\1\x7C\x07\1\x1B") + program, false},  // another processor
        {head + PROGRAM("\2zR\0\1\x7C\x08\1\x1B") + program, false},
    };
    for (const auto& [common, isRead] : cases) {
        scFrameRegisters registers;
        EXPECT_EQ(Leave(FrameTableImage(functions, common), 0, registers), isRead)
            << testing::PrintToString(common);
        EXPECT_EQ(registers.esp, isRead ? esp + 8 : esp);
    }
}

TEST(FrameTables, BelieveNothingDamaged) {
    const std::string image =
        FrameTableImage({{imageCodeAt, 32, "\x41\x0E\x08\x85\x02\x0F\x03\x75\x70\x06"}});
    scFrameRegisters registers;
    for (std::size_t at = 0; at < tableAt + 80; at = at == 0x200 ? tableAt : at + 1) {
        for (const char byte : {'\x00', '\x01', '\x7F', '\x80', '\xFF'})
            Leave(std::string(image).replace(at, 1, 1, byte), 1, registers);
        Leave(image.substr(0, at), 1, registers);
    }
}

// A function without a frame pointer calls another one; who called it has one.
TEST(FrameWalk, LeavesFramelessFunctionsByTheirTable) {
    std::string image = FrameTableImage({{imageCodeAt, 0x100, "\x0E\x20"}});
    image.resize(3 * pageSize, '\x90');
    for (const unsigned at : {0x80u, 0x200u, 0x300u})
        image.replace(imageCodeAt + at - 2, 2, "\xFF\xD0");
    clsProcessPicture memory;
    memory.Add(codeBegin, 3 * pageSize, MemoryKind::code, image);
    std::string stack(pageSize, '\0');
    const std::uint32_t code = codeBegin + imageCodeAt;
    for (const auto& [at, word] : {std::pair(0x1Cu, code + 0x80), std::pair(0x3Cu, code + 0x200),
                                   std::pair(0xF00u, stackBegin + 0xF80), std::pair(0xF04u, code + 0x300)})
        std::memcpy(&stack[at], &word, sizeof word);
    memory.Add(stackBegin, pageSize, MemoryKind::data, stack);
    std::vector<scFrame> frames(8);
    frames.resize(UtilpWalkFrames(memory, {code + 0x10, stackBegin, stackBegin + 0xF00, 0}, frames));
    EXPECT_EQ(Text(frames), "402010 402080 402200 402300 ");
}

// An image of one page with a version and a debug record.
std::string Image() {
    std::string image(pageSize, '\0');
    PutWords(image, 0, {0x5A4D});
    PutWords(image, 0x3C, {0x80});
    PutWords(image, 0x80, {0x4550, 0x14C, 0x11223344});
    PutWords(image, 0x98, {0x10B});
    PutWords(image, 0x80 + 80, {pageSize, 0, 0x55667788});
    PutWords(image, 0x80 + 116, {16, 0, 0, 0, 0, 0x200, 0x100}); // directories; the third: resources
    PutWords(image, 0x80 + 168, {0x300, 0x38});                  // the seventh: debug
    PutWords(image, 0x20C, {0x00020000, 3, 0, 16, 0x80000040});  // icons, and versions
    PutWords(image, 0x24C, {0x00010000, 1, 0x80000080});
    PutWords(image, 0x28C, {0x00010000, 1033, 0xC0});
    PutWords(image, 0x2C0, {0x400, 92});
    PutWords(image, 0x428, {0xFEEF04BD, 0x10000, 0x40002, 0x10005, 0x60007, 0x80009});
    PutWords(image, 0x300 + 12, {1, 8, 0x500});
    PutWords(image, 0x31C + 12, {2, 24, 0x600});
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
