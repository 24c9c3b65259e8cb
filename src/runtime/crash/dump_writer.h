// Writes a minidump: all is measured first, then written from front to back, so that the sink need not seek.
//
// Uses no memory but what it is given. Threads should stand still meanwhile; what changes all the same, or
// can no longer be read, gives zeros in its place and never another layout.
#pragma once

#include "runtime/crash/bare_sink.h"
#include "runtime/crash/dump_layout.h"
#include "runtime/crash/dump_memory.h"
#include "runtime/crash/module_walk.h"
#include "runtime/crash/process_memory.h"
#include "runtime/crash/thread_context.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace tvut {

struct scDumpThread {
    std::uint32_t id = 0;
    std::uint32_t suspendCount = 0;
    std::uint32_t priorityClass = 0, priority = 0;
    std::uint32_t environment = 0; // the address of its TEB
    std::uint32_t stackEnd = 0;    // the address after its stack; 0: where the region of esp ends
    scThreadContext context;
};

// What a dump tells of a process.
struct scDumpPicture {
    std::uint32_t time = 0;  // seconds since 1970
    scDumpSystemInfo system; // the writer places the service pack
    std::u16string_view servicePack{};
    scDumpMiscInfo misc;
    std::span<const scDumpThread> threads;
    std::span<const scModule> modules;      // sorted by address, paths set
    const scException* exception = nullptr; // may be null
    // Registers of the exception's thread where it happened; null: those of the thread. The thread's entry
    // tells where it stands now.
    const scThreadContext* exceptionContext = nullptr;
    std::u16string_view comment{};
    std::span<const scMemoryRange> extra{}; // memory that is wanted besides stacks and code: the notes
    bool isFull = false;                    // all readable memory
};

class clsDumpWriter {
  public:
    // What a room of some bytes serves for: ranges of memory, and a block that is read at a time.
    static constexpr std::size_t leastRoom = 64 * 1024; // bytes

    // All that is given must stay as it is while the object is used. Of more memory ranges than the room
    // holds the later ones are left out.
    clsDumpWriter(const scDumpPicture& picture, IclsProcessMemory& memory,
                  std::span<std::byte> room) noexcept;
    clsDumpWriter(const clsDumpWriter&) = delete;
    clsDumpWriter& operator=(const clsDumpWriter&) = delete;

    // The size of the file, in bytes; 0 when the room is less than the least, or when it cannot be: contents
    // before the memory that reach beyond 4 GB.
    std::uint64_t Measure() noexcept;

    // Writes what was measured. False when the sink failed.
    bool Write(IclsBareSink& sink) noexcept;

  private:
    struct scPart { // of the file
        std::uint64_t position = 0;
        std::uint64_t bytes = 0;
    };
    // Where everything is, in the order of the file.
    struct scLayout {
        scPart directory, system, misc, threads, modules, exception, memory, comment, contexts, names,
            codeViews, data;
        std::uint32_t streams = 0;
        std::uint64_t ranges = 0; // of memory
    };
    class clsOutput;

    void ChooseMemory() noexcept;
    void MeasureMemory() noexcept;
    template <class Use>
    void EachRange(Use use) noexcept;
    scMemoryRange StackOf(const scDumpThread& thread) noexcept;
    bool HasCrashed(const scDumpThread& thread) const noexcept;
    scDumpLocation ContextAt(std::size_t number) const noexcept;
    scDumpMemory PlaceOf(scMemoryRange stack) const noexcept;
    static scDumpLocation LocationOf(const scPart& part) noexcept;

    void WriteDirectory(clsOutput& output) const noexcept;
    void WriteThreads(clsOutput& output) noexcept;
    void WriteModules(clsOutput& output) const noexcept;
    void WriteException(clsOutput& output) const noexcept;
    void WriteMemoryList(clsOutput& output) noexcept;
    void WriteContexts(clsOutput& output) const noexcept;
    void WriteNames(clsOutput& output) const noexcept;
    void WriteCodeViews(clsOutput& output) noexcept;

    const scDumpPicture& picture_;
    IclsProcessMemory& memory_;
    std::span<std::byte> block_;
    clsMemoryRanges chosen_;
    scLayout layout_;
};

} // namespace tvut
