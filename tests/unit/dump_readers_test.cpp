// A dump as a reader of the machine takes it apart: llvm's obj2yaml. Only natively: it is a program of
// Debian's.
#include "runtime/crash/dump_writer.h"
#include "support/dump_reader.h"
#include "support/process_picture.h"
#include "unit/whole_file.h"

#include <gtest/gtest.h>

using namespace tvut;

namespace {

// A process of two threads and one module.
struct scSmallProcess {
    scSmallProcess() {
        memory.Add(0x200000, 0x1000, MemoryKind::data, std::string(0x1000, 's'));
        memory.Add(0x400000, 0x1000, MemoryKind::code, std::string(0x1000, 'c'));
        threads[0].id = 0x111;
        threads[0].context.esp = 0x200FF8;
        threads[1].id = 0x222;
        threads[1].context.esp = 0x200FF0;
        module.range = {0x400000, 0x1000};
        module.checksum = 0x5555;
        module.timeStamp = 0x6666;
        module.path = u"C:\\x\\designer.exe";
        module.codeView = {0x400200, 8};
        module.hasVersion = true;
        module.fileVersionHigh = 0x40002;
        picture.system = {.processors = 2, .major = 6, .minor = 1, .build = 7601};
        picture.misc = {.flags = 1, .processId = 1234};
        picture.servicePack = u"Service Pack 1";
        picture.threads = threads;
        picture.modules = {&module, 1};
        picture.exception = &exception;
        picture.comment = u"a=\u00E4\nb=2";
        picture.extra = extra;
    }
    clsProcessPicture memory;
    std::array<scDumpThread, 2> threads;
    std::array<scMemoryRange, 1> extra{{{0x400800, 4}}};
    scModule module;
    scException exception{0x222, 0xC0000005, 0, 0x400100, 2, {1, 8}};
    scDumpPicture picture;
    std::array<std::byte, clsDumpWriter::leastRoom> room;
};

// Goes wherever a dump leads; throws where that is beyond its end.
void ReadAll(std::string_view file) {
    const clsDumpReader dump(file);
    for (const scDumpDirectory& entry : dump.Directory())
        dump.Bytes(entry.location);
    for (const auto& thread : dump.All<scDumpThreadEntry>(DumpStream::threadList)) {
        dump.Bytes(thread.context);
        dump.Bytes(thread.stack.location);
    }
    for (const auto& module : dump.All<scDumpModuleEntry>(DumpStream::moduleList)) {
        dump.TextAt(module.namePosition);
        dump.Bytes(module.codeView);
    }
    for (const auto& memory : dump.All<scDumpMemory>(DumpStream::memoryList))
        dump.Bytes(memory.location);
}

// Wherever the disk is full, the writer says so, and no reader takes what is there for a dump.
TEST(Dump, IsWholeOrRefused) {
    scSmallProcess process;
    clsDumpWriter writer(process.picture, process.memory, process.room);
    clsMemorySink whole;
    ASSERT_EQ(writer.Measure() != 0 && writer.Write(whole), true);
    ReadAll(whole.written);
    for (std::size_t size = 0; size < whole.written.size(); ++size) {
        clsMemorySink full(size);
        EXPECT_FALSE(writer.Write(full)) << size;
        EXPECT_TRUE(whole.written.starts_with(full.written)) << size;
        EXPECT_THROW(ReadAll(std::string(whole.written, 0, size)), std::runtime_error) << size;
    }
}

TEST(Dump, IsReadAlikeByAnotherReader) {
    scSmallProcess process;
    clsDumpWriter writer(process.picture, process.memory, process.room);
    clsMemorySink sink;
    ASSERT_EQ(writer.Measure() != 0 && writer.Write(sink), true);

    const auto folder = std::filesystem::temp_directory_path() / "tvut22_dump_readers_test";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "dump", std::ios::binary) << sink.written;
    // Long runs of one byte tell as much when they are short.
    const std::string shorten = "sed 's/0\\{99,\\}/(zeros)/g; s/\\(73\\)\\{99,\\}/(stack)/'";
    const std::string command = "obj2yaml '" + (folder / "dump").string() + "' | " + shorten + " >'" +
                                (folder / "yaml").string() + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    const std::filesystem::path expected(TVUT22_TEST_DATA "/dumps/crash.yaml");
    if (std::getenv("TVUT22_REWRITE_GOLDENS"))
        std::filesystem::copy_file(folder / "yaml", expected,
                                   std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(ReadFile(folder / "yaml"), ReadFile(expected));
    std::filesystem::remove_all(folder);
}

} // namespace
