// The file is a header, a directory of streams, the streams, then what they point at: contexts, names, the
// records that name PDBs, and last the memory itself, by far the most. Measure gives each part its place;
// Write goes through the parts in the same order, and before each fills up to, or stops at, the place that
// was measured. So a process that changes between the two gives some zeros, and no stream points at what is
// another's.
//
// A full dump does not keep its ranges: it walks the address space once to count them, once to list them and
// once to copy them.
#include "runtime/crash/dump_writer.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace tvut {

namespace {

constexpr std::size_t blockBytes = 16 * 1024;
constexpr std::uint64_t alignment = 8;
constexpr std::uint64_t fullMemory = 0x2;              // a flag of the header
constexpr std::uint32_t versionSignature = 0xFEEF04BD; // of VS_FIXEDFILEINFO
constexpr std::uint32_t versionStructure = 0x00010000;

constexpr std::uint64_t Aligned(std::uint64_t bytes) noexcept {
    return (bytes + alignment - 1) / alignment * alignment;
}

// A text in the file: its length in bytes, its units, a zero.
std::uint64_t TextBytes(std::u16string_view text) noexcept {
    return Aligned(sizeof(std::uint32_t) + (text.size() + 1) * sizeof(char16_t));
}

template <class Item>
std::uint64_t ListBytes(std::uint64_t count) noexcept {
    return sizeof(std::uint32_t) + count * sizeof(Item);
}

std::span<scMemoryRange> RangesIn(std::span<std::byte> room) noexcept {
    if (room.size() < clsDumpWriter::leastRoom)
        return {};
    void* const first = room.data() + blockBytes;
    const std::size_t misplaced = reinterpret_cast<std::uintptr_t>(first) % alignof(scMemoryRange);
    const std::size_t skipped = misplaced == 0 ? 0 : alignof(scMemoryRange) - misplaced;
    return {reinterpret_cast<scMemoryRange*>(room.data() + blockBytes + skipped),
            (room.size() - blockBytes - skipped) / sizeof(scMemoryRange)};
}

} // namespace

// The file so far: gathers small pieces, and knows where it stands.
class clsDumpWriter::clsOutput {
  public:
    clsOutput(IclsBareSink& sink, std::span<std::byte> block) noexcept : sink_(sink), block_(block) {}

    bool IsFine() const noexcept { return isFine_; }

    void Put(const void* bytes, std::size_t count) noexcept {
        const auto* from = static_cast<const std::byte*>(bytes);
        while (count != 0) {
            const std::size_t piece = std::min(count, block_.size() - used_);
            std::memcpy(block_.data() + used_, from, piece);
            Advance(piece);
            from += piece;
            count -= piece;
        }
    }

    template <class Object>
    void Put(const Object& object) noexcept {
        Put(&object, sizeof object);
    }

    // Zeros up to a position.
    void FillTo(std::uint64_t position) noexcept {
        while (position_ < position) {
            const std::size_t piece = static_cast<std::size_t>(
                std::min<std::uint64_t>(position - position_, block_.size() - used_));
            std::memset(block_.data() + used_, 0, piece);
            Advance(piece);
        }
    }

    // Bytes of a process, zeros where there are none.
    void PutMemory(IclsProcessMemory& memory, scMemoryRange range) noexcept {
        while (range.bytes != 0) {
            const std::size_t room = std::min<std::size_t>(range.bytes, block_.size() - used_);
            std::size_t piece = memory.Read(range.address, block_.data() + used_, room);
            if (piece == 0) { // this page is gone; the next may be there
                piece = std::min(room, pageSize - range.address % pageSize);
                std::memset(block_.data() + used_, 0, piece);
            }
            Advance(piece);
            range.address += static_cast<std::uint32_t>(piece);
            range.bytes -= static_cast<std::uint32_t>(piece);
        }
    }

    void Flush() noexcept {
        isFine_ = isFine_ && (used_ == 0 || sink_.Write(block_.data(), used_));
        used_ = 0;
    }

  private:
    void Advance(std::size_t bytes) noexcept {
        used_ += bytes;
        position_ += bytes;
        if (used_ == block_.size())
            Flush();
    }

    static constexpr std::size_t pageSize = 4096;

    IclsBareSink& sink_;
    std::span<std::byte> block_;
    std::size_t used_ = 0;
    std::uint64_t position_ = 0;
    bool isFine_ = true;
};

clsDumpWriter::clsDumpWriter(const scDumpPicture& picture, IclsProcessMemory& memory,
                             std::span<std::byte> room) noexcept
    : picture_(picture), memory_(memory), block_(room.first(std::min(room.size(), blockBytes))),
      chosen_(RangesIn(room)) {}

std::uint64_t clsDumpWriter::Measure() noexcept {
    if (block_.size() < blockBytes)
        return 0;
    ChooseMemory();
    MeasureMemory();
    layout_.streams = 5 + (picture_.exception ? 1 : 0) + (picture_.comment.empty() ? 0 : 1);
    const std::uint64_t contexts = picture_.threads.size() + (picture_.exception ? 1 : 0);
    std::uint64_t names = TextBytes(picture_.servicePack), codeViews = 0;
    for (const scModule& module : picture_.modules) {
        names += TextBytes(module.path);
        codeViews += Aligned(module.codeView.bytes);
    }
    std::uint64_t position = sizeof(scDumpHeader);
    const auto place = [&](scPart& part, std::uint64_t bytes) {
        part = {position, bytes};
        position += Aligned(bytes);
    };
    place(layout_.directory, layout_.streams * sizeof(scDumpDirectory));
    place(layout_.system, sizeof(scDumpSystemInfo));
    place(layout_.misc, sizeof(scDumpMiscInfo));
    place(layout_.threads, ListBytes<scDumpThreadEntry>(picture_.threads.size()));
    place(layout_.modules, ListBytes<scDumpModuleEntry>(picture_.modules.size()));
    place(layout_.exception, picture_.exception ? sizeof(scDumpException) : 0);
    place(layout_.memory, picture_.isFull
                              ? 2 * sizeof(std::uint64_t) + layout_.ranges * sizeof(scDumpMemory64)
                              : ListBytes<scDumpMemory>(layout_.ranges));
    place(layout_.comment, picture_.comment.empty() ? 0 : (picture_.comment.size() + 1) * sizeof(char16_t));
    place(layout_.contexts, contexts * sizeof(scThreadContext));
    place(layout_.names, names);
    place(layout_.codeViews, codeViews);
    layout_.data.position = position;
    const std::uint64_t end = position + layout_.data.bytes;
    return (picture_.isFull ? position : end) <= UINT32_MAX ? end : 0;
}

void clsDumpWriter::ChooseMemory() noexcept {
    if (picture_.isFull)
        return;
    for (const scMemoryRange& range : picture_.extra)
        chosen_.Add(range);
    for (const scDumpThread& thread : picture_.threads) {
        chosen_.Add(StackOf(thread));
        UtilpAddCode(chosen_, memory_, thread.context.eip);
        if (!HasCrashed(thread))
            continue;
        const scThreadContext& context =
            picture_.exceptionContext ? *picture_.exceptionContext : thread.context;
        const scMemoryRange stack =
            UtilpStackRange(memory_, context.esp, thread.stackEnd, mostOfCrashedStack);
        chosen_.Add(stack);
        UtilpAddCode(chosen_, memory_, context.eip);
        UtilpAddNamedMemory(chosen_, memory_, context, stack);
    }
    chosen_.Settle();
}

bool clsDumpWriter::HasCrashed(const scDumpThread& thread) const noexcept {
    return picture_.exception && picture_.exception->threadId == thread.id;
}

scMemoryRange clsDumpWriter::StackOf(const scDumpThread& thread) noexcept {
    return UtilpStackRange(memory_, thread.context.esp, thread.stackEnd,
                           HasCrashed(thread) ? mostOfCrashedStack : mostOfStack);
}

// Calls back with each range of memory that goes into the dump, by address, as much of them as was measured.
template <class Use>
void clsDumpWriter::EachRange(Use use) noexcept {
    std::uint64_t ranges = layout_.ranges, bytes = layout_.data.bytes;
    const auto offer = [&](scMemoryRange range) {
        if (ranges == 0 || bytes == 0)
            return false;
        range.bytes = static_cast<std::uint32_t>(std::min<std::uint64_t>(range.bytes, bytes));
        --ranges;
        bytes -= range.bytes;
        use(range);
        return true;
    };
    if (!picture_.isFull) {
        for (const scMemoryRange& range : chosen_.Ranges())
            offer(range);
        return;
    }
    scMemoryRegion region;
    std::uint64_t address = 0;
    for (; address <= UINT32_MAX; address = region.range.End()) {
        if (!memory_.RegionAt(static_cast<std::uint32_t>(address), region) || region.range.End() <= address ||
            (region.isReadable && !offer(region.range)))
            return;
    }
}

void clsDumpWriter::MeasureMemory() noexcept {
    std::uint64_t ranges = 0, bytes = 0;
    layout_.ranges = layout_.data.bytes = UINT64_MAX;
    EachRange([&](scMemoryRange range) {
        ++ranges;
        bytes += range.bytes;
    });
    layout_.ranges = ranges;
    layout_.data.bytes = bytes;
}

bool clsDumpWriter::Write(IclsBareSink& sink) noexcept {
    clsOutput output(sink, block_);
    scDumpHeader header;
    header.streamCount = layout_.streams;
    header.directoryPosition = static_cast<std::uint32_t>(layout_.directory.position);
    header.time = picture_.time;
    header.flags = picture_.isFull ? fullMemory : 0;
    output.Put(header);
    output.FillTo(layout_.directory.position);
    WriteDirectory(output);
    output.FillTo(layout_.system.position);
    scDumpSystemInfo system = picture_.system;
    system.servicePackPosition = static_cast<std::uint32_t>(layout_.names.position);
    output.Put(system);
    output.FillTo(layout_.misc.position);
    output.Put(picture_.misc);
    output.FillTo(layout_.threads.position);
    WriteThreads(output);
    output.FillTo(layout_.modules.position);
    WriteModules(output);
    output.FillTo(layout_.exception.position);
    WriteException(output);
    output.FillTo(layout_.memory.position);
    WriteMemoryList(output);
    output.FillTo(layout_.comment.position);
    output.Put(picture_.comment.data(), picture_.comment.size() * sizeof(char16_t));
    output.FillTo(layout_.contexts.position);
    WriteContexts(output);
    output.FillTo(layout_.names.position);
    WriteNames(output);
    WriteCodeViews(output);
    EachRange([&](scMemoryRange range) { output.PutMemory(memory_, range); });
    output.FillTo(layout_.data.position + layout_.data.bytes);
    output.Flush();
    return output.IsFine();
}

scDumpLocation clsDumpWriter::LocationOf(const scPart& part) noexcept {
    return {static_cast<std::uint32_t>(part.bytes), static_cast<std::uint32_t>(part.position)};
}

void clsDumpWriter::WriteDirectory(clsOutput& output) const noexcept {
    const auto put = [&](DumpStream stream, const scPart& part) {
        if (part.bytes != 0)
            output.Put(scDumpDirectory{stream, LocationOf(part)});
    };
    put(DumpStream::systemInfo, layout_.system);
    put(DumpStream::miscInfo, layout_.misc);
    put(DumpStream::threadList, layout_.threads);
    put(DumpStream::moduleList, layout_.modules);
    put(DumpStream::exception, layout_.exception);
    put(picture_.isFull ? DumpStream::memory64List : DumpStream::memoryList, layout_.memory);
    put(DumpStream::commentW, layout_.comment);
}

void clsDumpWriter::WriteThreads(clsOutput& output) noexcept {
    output.Put(static_cast<std::uint32_t>(picture_.threads.size()));
    std::size_t number = 0;
    for (const scDumpThread& thread : picture_.threads) {
        scDumpThreadEntry entry;
        entry.id = thread.id;
        entry.suspendCount = thread.suspendCount;
        entry.priorityClass = thread.priorityClass;
        entry.priority = thread.priority;
        entry.environment = thread.environment;
        entry.stack = PlaceOf(StackOf(thread));
        entry.context = ContextAt(number++);
        output.Put(entry);
    }
}

scDumpLocation clsDumpWriter::ContextAt(std::size_t number) const noexcept {
    const std::uint64_t position = layout_.contexts.position + number * sizeof(scThreadContext);
    return {sizeof(scThreadContext), static_cast<std::uint32_t>(position)};
}

// Where a stack is in the file. A full dump lists its memory elsewhere.
scDumpMemory clsDumpWriter::PlaceOf(scMemoryRange stack) const noexcept {
    scDumpMemory place{stack.address, {}};
    std::uint64_t position = layout_.data.position;
    for (const scMemoryRange& range : chosen_.Ranges()) {
        if (stack.bytes != 0 && stack.address >= range.address && stack.End() <= range.End())
            place.location = {stack.bytes,
                              static_cast<std::uint32_t>(position + (stack.address - range.address))};
        position += range.bytes;
    }
    return place;
}

void clsDumpWriter::WriteModules(clsOutput& output) const noexcept {
    output.Put(static_cast<std::uint32_t>(picture_.modules.size()));
    std::uint64_t name = layout_.names.position + TextBytes(picture_.servicePack);
    std::uint64_t codeView = layout_.codeViews.position;
    for (const scModule& module : picture_.modules) {
        scDumpModuleEntry entry;
        entry.address = module.range.address;
        entry.bytes = module.range.bytes;
        entry.checksum = module.checksum;
        entry.timeStamp = module.timeStamp;
        entry.namePosition = static_cast<std::uint32_t>(name);
        if (module.hasVersion)
            entry.version = {versionSignature,
                             versionStructure,
                             module.fileVersionHigh,
                             module.fileVersionLow,
                             module.productVersionHigh,
                             module.productVersionLow,
                             {}};
        if (module.codeView.bytes != 0)
            entry.codeView = {module.codeView.bytes, static_cast<std::uint32_t>(codeView)};
        output.Put(entry);
        name += TextBytes(module.path);
        codeView += Aligned(module.codeView.bytes);
    }
}

void clsDumpWriter::WriteException(clsOutput& output) const noexcept {
    if (!picture_.exception)
        return;
    const scException& exception = *picture_.exception;
    scDumpException entry;
    entry.threadId = exception.threadId;
    entry.code = exception.code;
    entry.flags = exception.flags;
    entry.address = exception.address;
    entry.parameterCount = std::min<std::uint32_t>(exception.parameterCount, entry.parameters.size());
    std::copy(exception.parameters.begin(), exception.parameters.end(), entry.parameters.begin());
    entry.context = ContextAt(picture_.threads.size());
    output.Put(entry);
}

void clsDumpWriter::WriteMemoryList(clsOutput& output) noexcept {
    if (picture_.isFull) {
        output.Put(layout_.ranges);
        output.Put(layout_.data.position);
        EachRange([&](scMemoryRange range) { output.Put(scDumpMemory64{range.address, range.bytes}); });
        return;
    }
    output.Put(static_cast<std::uint32_t>(layout_.ranges));
    std::uint64_t position = layout_.data.position;
    EachRange([&](scMemoryRange range) {
        output.Put(scDumpMemory{range.address, {range.bytes, static_cast<std::uint32_t>(position)}});
        position += range.bytes;
    });
}

void clsDumpWriter::WriteContexts(clsOutput& output) const noexcept {
    scThreadContext crashed;
    for (const scDumpThread& thread : picture_.threads) {
        output.Put(thread.context);
        if (HasCrashed(thread))
            crashed = thread.context;
    }
    if (picture_.exception)
        output.Put(picture_.exceptionContext ? *picture_.exceptionContext : crashed);
}

// The service pack's name is always there, if only as an empty text: readers ask for it.
void clsDumpWriter::WriteNames(clsOutput& output) const noexcept {
    std::uint64_t position = layout_.names.position;
    const auto put = [&](std::u16string_view text) {
        const auto bytes = static_cast<std::uint32_t>(text.size() * sizeof(char16_t));
        output.Put(bytes);
        output.Put(text.data(), bytes);
        position += TextBytes(text);
        output.FillTo(position);
    };
    put(picture_.servicePack);
    for (const scModule& module : picture_.modules)
        put(module.path);
}

void clsDumpWriter::WriteCodeViews(clsOutput& output) noexcept {
    std::uint64_t position = layout_.codeViews.position;
    output.FillTo(position);
    for (const scModule& module : picture_.modules) {
        output.PutMemory(memory_, module.codeView);
        position += Aligned(module.codeView.bytes);
        output.FillTo(position);
    }
}

} // namespace tvut
