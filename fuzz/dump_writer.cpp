// Dumps of processes of any shape, read back: what is in the picture is in the file, where its streams say,
// and memory that is not there is zeros.
#include "runtime/crash/dump_writer.h"

#include "choices.h"
#include "require.h"
#include "support/dump_reader.h"
#include "support/process_picture.h"

using namespace tvut;

namespace {

constexpr std::uint32_t pageSize = 4096;

class clsDumpCase {
  public:
    explicit clsDumpCase(clsChoices choices) : choices_(choices) {
        for (unsigned i = choices_.Below(12); i != 0; --i)
            AddMemory();
        for (unsigned i = choices_.Below(6); i != 0; --i)
            AddThread();
        for (unsigned i = choices_.Below(6); i != 0; --i)
            AddModule();
        for (unsigned i = 0; i < modules_.size(); ++i)
            modules_[i].path = paths_[i];
        exception_.threadId = choices_.Below(8);
        exception_.code = Number();
        exception_.parameterCount = choices_.Below(20);
        context_.esp = Address();
        context_.eax = Address();
        for (unsigned i = choices_.Below(4); i != 0; --i)
            comment_ += static_cast<char16_t>(choices_.Below(65536));
        const scMemoryRange extra[] = {{Address(), 40}};
        std::copy(std::begin(extra), std::end(extra), extra_.begin());
        const unsigned flags = choices_.Below(8);
        picture_.threads = threads_;
        picture_.modules = modules_;
        picture_.exception = flags & 1 ? &exception_ : nullptr;
        picture_.exceptionContext = flags & 2 ? &context_ : nullptr;
        picture_.isFull = flags & 4;
        picture_.comment = comment_;
        picture_.servicePack = comment_;
        picture_.extra = extra_;
    }

    const char* Fault() {
        alignas(8) static std::array<std::byte, clsDumpWriter::leastRoom> room;
        clsDumpWriter writer(picture_, memory_, room);
        const std::uint64_t size = writer.Measure();
        clsMemorySink sink;
        if (!writer.Write(sink) || sink.written.size() != size)
            return "the dump has another size than it was measured";
        clsMemorySink small(static_cast<std::size_t>(choices_.Below(65536) % size));
        if (writer.Write(small) || small.written != sink.written.substr(0, small.written.size()))
            return "a sink without room was not seen";
        const clsDumpReader dump(sink.written);
        const auto system = dump.One<scDumpSystemInfo>(DumpStream::systemInfo);
        if (dump.TextAt(system.servicePackPosition) != comment_)
            return "the system is another";
        if (const char* const fault = FaultOfThreads(dump))
            return fault;
        if (const char* const fault = FaultOfModules(dump))
            return fault;
        if (const char* const fault = FaultOfException(dump))
            return fault;
        if (const char* const fault = picture_.isFull ? FaultOfAll(dump) : FaultOfChosen(dump))
            return fault;
        const std::u16string text = clsDumpReader::Text(dump.Bytes(DumpStream::commentW));
        return text == (comment_.empty() ? u"" : comment_ + u'\0') ? nullptr : "the comment is another";
    }

  private:
    std::uint32_t Number() { return choices_.Below(65536) << 16 | choices_.Below(65536); }

    // One in the memory that there is, more often than not.
    std::uint32_t Address() {
        const unsigned place = choices_.Below(16);
        return place < regions_.size() ? regions_[place] + choices_.Below(65536) : Number();
    }

    void AddMemory() {
        const std::uint32_t address = choices_.Below(2) == 0 && !regions_.empty()
                                          ? regions_.back() + pageSize
                                          : 0x10000 * (1 + choices_.Below(65500));
        const std::uint32_t bytes = pageSize * (1 + choices_.Below(20));
        scMemoryRegion region;
        if (!memory_.RegionAt(address, region) || region.allocation != 0 ||
            region.range.End() < address + bytes)
            return;
        std::string contents(choices_.Below(4) == 0 ? choices_.Below(65536) : bytes, '\0');
        for (std::size_t at = 0; at < contents.size(); ++at)
            contents[at] = static_cast<char>(at * 7 + address / pageSize);
        memory_.Add(address, bytes, static_cast<MemoryKind>(choices_.Below(5)), std::move(contents),
                    choices_.Below(64));
        regions_.push_back(address);
    }

    void AddThread() {
        scDumpThread& thread = threads_.emplace_back();
        thread.id = choices_.Below(8);
        thread.environment = Number();
        thread.stackEnd = choices_.Below(2) == 0 ? 0 : Address();
        thread.context.esp = Address();
        thread.context.eip = Address();
    }

    void AddModule() {
        scModule& module = modules_.emplace_back();
        module.range = {Address(), Number()};
        module.codeView = {Address(), choices_.Below(40)};
        module.hasVersion = choices_.Below(2) == 0;
        module.fileVersionLow = Number();
        paths_.emplace_back(choices_.Below(30), u'x');
    }

    const char* FaultOfThreads(const clsDumpReader& dump) {
        const auto entries = dump.All<scDumpThreadEntry>(DumpStream::threadList);
        if (entries.size() != threads_.size())
            return "threads are missing";
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const scDumpThreadEntry& entry = entries[i];
            const scThreadContext& context = threads_[i].context;
            const auto address = static_cast<std::uint32_t>(entry.stack.address);
            if (entry.id != threads_[i].id || entry.environment != threads_[i].environment)
                return "a thread is another";
            if (dump.Bytes(entry.context) !=
                std::string_view(reinterpret_cast<const char*>(&context), sizeof context))
                return "a thread has other registers";
            if (dump.Bytes(entry.stack.location) != memory_.Contents({address, entry.stack.location.bytes}))
                return "a stack is another";
            scMemoryRegion region;
            if (!picture_.isFull && memory_.RegionAt(context.esp, region) && region.isReadable &&
                (entry.stack.address != context.esp || entry.stack.location.bytes == 0))
                return "a stack is not there";
        }
        return nullptr;
    }

    const char* FaultOfModules(const clsDumpReader& dump) {
        const auto entries = dump.All<scDumpModuleEntry>(DumpStream::moduleList);
        if (entries.size() != modules_.size())
            return "modules are missing";
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const scModule& module = modules_[i];
            if (entries[i].address != module.range.address || entries[i].bytes != module.range.bytes ||
                dump.TextAt(entries[i].namePosition) != module.path ||
                entries[i].version.fileVersionLow != (module.hasVersion ? module.fileVersionLow : 0))
                return "a module is another";
            if (dump.Bytes(entries[i].codeView) != memory_.Contents(module.codeView))
                return "a module's debug record is another";
        }
        return nullptr;
    }

    const char* FaultOfException(const clsDumpReader& dump) {
        if (dump.Bytes(DumpStream::exception).empty() != !picture_.exception)
            return "there is an exception too few or too many";
        if (!picture_.exception)
            return nullptr;
        const auto entry = dump.One<scDumpException>(DumpStream::exception);
        scThreadContext context;
        for (const scDumpThread& thread : threads_) {
            if (thread.id == exception_.threadId)
                context = thread.context;
        }
        const scThreadContext& expected = picture_.exceptionContext ? context_ : context;
        return entry.code == exception_.code && entry.parameterCount <= entry.parameters.size() &&
                       dump.At<scThreadContext>(entry.context.position).esp == expected.esp
                   ? nullptr
                   : "the exception is another";
    }

    // Ranges in order and apart, each as the process has it.
    const char* FaultOfChosen(const clsDumpReader& dump) {
        std::uint64_t end = 0;
        bool hasExtra = false;
        for (const scDumpMemory& memory : dump.All<scDumpMemory>(DumpStream::memoryList)) {
            const scMemoryRange range{static_cast<std::uint32_t>(memory.address), memory.location.bytes};
            if (range.address < end || range.bytes == 0)
                return "ranges of memory overlap";
            end = range.End();
            hasExtra |= range.address <= extra_[0].address && end >= extra_[0].End();
            if (dump.Bytes(memory.location) != memory_.Contents(range))
                return "memory is another";
        }
        return hasExtra ? nullptr : "memory that was asked for is missing";
    }

    const char* FaultOfAll(const clsDumpReader& dump) {
        const std::string_view stream = dump.Bytes(DumpStream::memory64List);
        std::uint64_t head[2]; // how many there are, and where they lie
        std::memcpy(head, stream.data(), sizeof head);
        std::uint64_t readable = 0;
        for (const std::uint32_t address : regions_) {
            scMemoryRegion region;
            readable += memory_.RegionAt(address, region) && region.isReadable ? 1 : 0;
        }
        if (head[0] != readable || stream.size() != sizeof head + readable * sizeof(scDumpMemory64))
            return "not all memory is there";
        for (std::size_t i = 0; i < readable; ++i) {
            scDumpMemory64 memory;
            std::memcpy(&memory, stream.data() + sizeof head + i * sizeof memory, sizeof memory);
            const scMemoryRange range{static_cast<std::uint32_t>(memory.address),
                                      static_cast<std::uint32_t>(memory.bytes)};
            if (dump.Bytes(head[1], range.bytes) != memory_.Contents(range))
                return "memory is another";
            head[1] += range.bytes;
        }
        return nullptr;
    }

    clsChoices choices_;
    clsProcessPicture memory_;
    std::vector<std::uint32_t> regions_; // where they begin
    std::vector<scDumpThread> threads_;
    std::vector<scModule> modules_;
    std::vector<std::u16string> paths_;
    scException exception_;
    scThreadContext context_;
    std::u16string comment_;
    std::array<scMemoryRange, 1> extra_;
    scDumpPicture picture_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Require(clsDumpCase(clsChoices(data, size)).Fault());
    return 0;
}
