// The system's calls themselves, for a process that nothing else can be trusted in.
//
// When a process has crashed, its heap may be overwritten or locked for good, and so may the loader and the
// compiler's runtime be. Below them are the calls into the system, which depend on none of that: what stands
// here uses no heap, no lock and nothing that is shared with the rest of the process, and any thread may call
// it in any state. Each gives the system's own status: 0 and above for success.
//
// The calls are found once, by platform/bare_start; nothing here may be used before. For ordinary times
// there are platform/file, platform/mapping and the like.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <windows.h>

namespace tvut {

using BareStatus = std::int32_t;

namespace bareStatus {
constexpr BareStatus nameCollision = static_cast<BareStatus>(0xC0000035);
constexpr BareStatus diskFull = static_cast<BareStatus>(0xC000007F);
constexpr BareStatus nameTooLong = static_cast<BareStatus>(0xC0000106);
constexpr BareStatus insufficientResources = static_cast<BareStatus>(0xC000009A);
} // namespace bareStatus

// ---- Files ----------------------------------------------------------------------------------------

// A file by system calls. Paths are the system's own: "\??\C:\folder\name".
class clsBareFile {
  public:
    clsBareFile() noexcept = default;
    ~clsBareFile() { Close(); }
    clsBareFile(const clsBareFile&) = delete;
    clsBareFile& operator=(const clsBareFile&) = delete;

    BareStatus MakeNew(std::u16string_view path) noexcept; // nameCollision when there is one
    BareStatus OpenToRead(std::u16string_view path) noexcept;
    BareStatus Write(std::span<const std::byte> bytes) noexcept; // after what was written before
    BareStatus Flush() noexcept;
    BareStatus Rename(std::u16string_view path) noexcept; // the path of a new file, at most 1,000 characters
    BareStatus Remove() noexcept;                         // goes when it is closed
    void Close() noexcept;

    bool IsOpen() const noexcept { return file_ != nullptr; }
    HANDLE Handle() const noexcept { return file_; }

  private:
    BareStatus Open(std::u16string_view path, ULONG access, ULONG share, ULONG disposition) noexcept;

    HANDLE file_ = nullptr;
};

// For a file that was opened otherwise.
BareStatus PlatformBareWrite(HANDLE file, std::span<const std::byte> bytes) noexcept;

// The bytes of a file, as long as the object is there. A disk that goes away shows when they are read.
class clsBareView {
  public:
    clsBareView() noexcept = default;
    ~clsBareView() { Unmap(); }
    clsBareView(const clsBareView&) = delete;
    clsBareView& operator=(const clsBareView&) = delete;

    BareStatus Map(std::u16string_view path) noexcept;
    void Unmap() noexcept;
    std::span<const std::byte> Bytes() const noexcept {
        return {static_cast<const std::byte*>(view_), size_};
    }

  private:
    void* view_ = nullptr;
    std::size_t size_ = 0;
};

// ---- Memory ---------------------------------------------------------------------------------------

// The stretch of equal pages that an address lies in. False beyond the end of the address space.
bool PlatformBareRegion(HANDLE process, const void* address, MEMORY_BASIC_INFORMATION& region) noexcept;

// The file that is mapped at an address, in the system's form; empty when there is none. The buffer is the
// text's.
std::u16string_view PlatformBareMappedFile(HANDLE process, const void* address,
                                           std::span<std::byte> buffer) noexcept;

// Copies what can be read from the address on; the count of bytes. Of the own process without a system call.
std::size_t PlatformBareRead(HANDLE process, const void* address, std::span<std::byte> bytes) noexcept;

// ---- The system, threads --------------------------------------------------------------------------

BareStatus PlatformBareSystemInformation(ULONG kind, std::span<std::byte> buffer) noexcept;

// 100 nanoseconds since 1601, UTC.
std::uint64_t PlatformBareTime() noexcept;

// Identifiers of a process's threads, at most as many as there is room for; their count. The buffer is
// scratch for the system's list of all processes: a megabyte.
std::size_t PlatformBareThreads(DWORD process, std::span<std::uint32_t> threads,
                                std::span<std::byte> buffer) noexcept;

// A thread that was opened to be looked at, and stands still from Suspend to Resume.
class clsBareThread {
  public:
    clsBareThread() noexcept = default;
    ~clsBareThread() { Close(); }
    clsBareThread(const clsBareThread&) = delete;
    clsBareThread& operator=(const clsBareThread&) = delete;

    BareStatus Open(DWORD process, DWORD thread) noexcept;
    bool Suspend() noexcept;
    void Resume() noexcept;
    bool Context(CONTEXT& context) const noexcept; // integer, control and segment registers
    const void* Block() const noexcept;            // the thread's environment block; null when unknown
    void Close() noexcept;                         // resumes it, too

  private:
    HANDLE thread_ = nullptr;
    bool stands_ = false;
};

// ---- Waiting, ending ------------------------------------------------------------------------------

void PlatformBareSet(HANDLE event) noexcept;
void PlatformBareReset(HANDLE event) noexcept;
bool PlatformBareWait(HANDLE object, unsigned milliseconds) noexcept; // false: the time is over
void PlatformBareWaitForever(HANDLE object) noexcept;
[[noreturn]] void PlatformBareEndProcess(std::uint32_t exitCode) noexcept;
std::uint32_t PlatformBareThreadId() noexcept;
bool PlatformBareShutsDown() noexcept; // the process: all threads but the calling one are gone

} // namespace tvut
