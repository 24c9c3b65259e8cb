// A process that runs, as crash code sees it: its memory, and a picture of its threads and modules, taken by
// bare system calls in memory that the caller gives.
#pragma once

#include "platform/bare_system.h"
#include "platform/drive_paths.h"
#include "runtime/crash/bare_sink.h"
#include "runtime/crash/dump_writer.h"
#include "runtime/crash/module_walk.h"
#include "runtime/crash/process_memory.h"

#include <bit>
#include <new>

namespace tvut {

// For the own process: without opening it.
inline HANDLE UtilpOwnProcess() noexcept {
    return reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1));
}

class clsLiveMemory final : public IclsProcessMemory {
  public:
    explicit clsLiveMemory(HANDLE process) noexcept : process_(process) {}
    std::size_t Read(std::uint32_t address, void* to, std::size_t bytes) noexcept override;
    bool RegionAt(std::uint32_t address, scMemoryRegion& region) noexcept override;

  private:
    HANDLE process_;
};

// A file that a report or a dump is written into; keeps the status of what failed first.
class clsBareFileSink final : public IclsBareSink {
  public:
    explicit clsBareFileSink(clsBareFile& file) noexcept : file_(file) {}
    bool Write(const void* bytes, std::size_t count) noexcept override;
    BareStatus Status() const noexcept { return status_; }

  private:
    clsBareFile& file_;
    BareStatus status_ = 0;
};

// Memory that is handed out from front to back.
class clsRoom {
  public:
    explicit clsRoom(std::span<std::byte> bytes) noexcept : bytes_(bytes) {}

    // Fewer objects where there is no room for all.
    template <class Object>
    std::span<Object> Take(std::size_t count) noexcept {
        const auto address = reinterpret_cast<std::uintptr_t>(bytes_.data());
        const std::size_t gap = (alignof(Object) - address % alignof(Object)) % alignof(Object);
        if (gap > bytes_.size())
            return {};
        bytes_ = bytes_.subspan(gap);
        const std::size_t most = bytes_.size() / sizeof(Object);
        count = count < most ? count : most;
        auto* const first = reinterpret_cast<Object*>(bytes_.data());
        for (std::size_t i = 0; i < count; ++i)
            new (first + i) Object;
        bytes_ = bytes_.subspan(count * sizeof(Object));
        return {first, count};
    }
    std::span<std::byte> Rest() const noexcept { return bytes_; }

  private:
    std::span<std::byte> bytes_;
};

constexpr std::size_t mostModules = 512;

// The modules of a process with their paths, in the order of their addresses.
std::span<const scModule> UtilpModulesOf(HANDLE process, const clsDrivePaths& drives, clsRoom& room) noexcept;

// Threads of a process, which stand still as long as the object is there.
class clsStoppedThreads {
  public:
    // All threads of the process but two, which may be 0, at most as many as there is room for.
    clsStoppedThreads(HANDLE process, DWORD processId, DWORD leftOut, DWORD alsoLeftOut,
                      clsRoom& room) noexcept;
    ~clsStoppedThreads();
    clsStoppedThreads(const clsStoppedThreads&) = delete;
    clsStoppedThreads& operator=(const clsStoppedThreads&) = delete;

    // Adds a thread whose registers are known: one that waits, or the caller. It is not stopped.
    void Add(DWORD thread, const scThreadContext& context) noexcept;

    std::span<const scDumpThread> Threads() const noexcept { return threads_.first(count_); }

  private:
    static constexpr std::size_t most = 400;
    std::span<clsBareThread> opened_; // as many as were asked for
    clsLiveMemory memory_;
    DWORD processId_;
    std::span<scDumpThread> threads_;
    std::size_t count_ = 0;
};

// From the block of a thread in a process: the address after its stack; 0 when it cannot be read.
std::uint32_t UtilpStackEnd(IclsProcessMemory& memory, std::uint32_t threadBlock) noexcept;

scException UtilpExceptionOf(const EXCEPTION_RECORD& record, std::uint32_t thread) noexcept;

// Of the system's time, in seconds since 1970.
std::uint32_t UtilpDumpTime(std::uint64_t time) noexcept;

inline scThreadContext UtilpContextOf(const CONTEXT& context) noexcept {
    return std::bit_cast<scThreadContext>(context);
}

} // namespace tvut
