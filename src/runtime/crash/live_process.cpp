// Bare calls throughout: a stopped thread may hold any lock of the system's libraries. A thread stands still
// from before its registers are read until the object ends, so that they and the stack in a dump belong
// together.
#include "runtime/crash/live_process.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::size_t longestPath = 1024; // characters

const void* Pointer(std::uint32_t address) noexcept {
    return reinterpret_cast<const void*>(static_cast<std::uintptr_t>(address));
}

std::uint32_t Address(const void* pointer) noexcept {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(pointer));
}

// Copied into the room; empty when it is full.
std::u16string_view Keep(std::u16string_view text, clsRoom& room) noexcept {
    const auto copy = room.Take<char16_t>(text.size());
    if (copy.size() < text.size())
        return {};
    std::copy(text.begin(), text.end(), copy.begin());
    return {copy.data(), copy.size()};
}

} // namespace

// ---- Memory and files -----------------------------------------------------------------------------

std::size_t clsLiveMemory::Read(std::uint32_t address, void* to, std::size_t bytes) noexcept {
    return PlatformBareRead(process_, Pointer(address), {static_cast<std::byte*>(to), bytes});
}

bool clsLiveMemory::RegionAt(std::uint32_t address, scMemoryRegion& region) noexcept {
    constexpr DWORD writable =
        PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    constexpr DWORD executable =
        PAGE_EXECUTE | PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    MEMORY_BASIC_INFORMATION found{};
    if (!PlatformBareRegion(process_, Pointer(address), found) || found.RegionSize == 0)
        return false;
    const bool there = found.State == MEM_COMMIT && (found.Protect & (PAGE_GUARD | PAGE_NOACCESS)) == 0 &&
                       found.Protect != 0;
    region.range = {Address(found.BaseAddress), static_cast<std::uint32_t>(found.RegionSize)};
    region.allocation = Address(found.AllocationBase);
    region.isImage = found.State == MEM_COMMIT && found.Type == MEM_IMAGE;
    region.isReadable = there && found.Protect != PAGE_EXECUTE;
    region.isWritable = there && (found.Protect & writable) != 0;
    region.isExecutable = there && (found.Protect & executable) != 0;
    return true;
}

bool clsBareFileSink::Write(const void* bytes, std::size_t count) noexcept {
    if (status_ >= 0)
        status_ = file_.Write({static_cast<const std::byte*>(bytes), count});
    return status_ >= 0;
}

// ---- What happened --------------------------------------------------------------------------------

scException UtilpExceptionOf(const EXCEPTION_RECORD& record, std::uint32_t thread) noexcept {
    scException exception{.threadId = thread,
                          .code = record.ExceptionCode,
                          .flags = record.ExceptionFlags,
                          .address = Address(record.ExceptionAddress)};
    for (; exception.parameterCount < record.NumberParameters &&
           exception.parameterCount < exception.parameters.size();
         ++exception.parameterCount)
        exception.parameters[exception.parameterCount] =
            static_cast<std::uint32_t>(record.ExceptionInformation[exception.parameterCount]);
    return exception;
}

std::uint32_t UtilpDumpTime(std::uint64_t time) noexcept {
    constexpr std::uint64_t perSecond = 10000000, from1601To1970 = 11644473600; // seconds
    return static_cast<std::uint32_t>(time / perSecond - from1601To1970);
}

// ---- Modules --------------------------------------------------------------------------------------

std::span<const scModule> UtilpModulesOf(HANDLE process, const clsDrivePaths& drives,
                                         clsRoom& room) noexcept {
    clsLiveMemory memory(process);
    const std::span<scModule> all = room.Take<scModule>(mostModules);
    const std::span<scModule> modules = all.first(UtilpFindModules(memory, all));
    for (scModule& module : modules) {
        alignas(8) std::byte name[longestPath * sizeof(char16_t)];
        char16_t plain[longestPath];
        const std::u16string_view path = PlatformBareMappedFile(process, Pointer(module.range.address), name);
        module.path = Keep(drives.Plain(path, plain, longestPath), room);
    }
    return modules;
}

// ---- Threads --------------------------------------------------------------------------------------

std::uint32_t UtilpStackEnd(IclsProcessMemory& memory, std::uint32_t threadBlock) noexcept {
    constexpr std::uint32_t stackEndAt = 4;
    std::uint32_t end = 0;
    return threadBlock != 0 && UtilpReadObject(memory, threadBlock + stackEndAt, end) ? end : 0;
}

// The system's list of processes needs a room of its own for a moment, so it comes first, in what is given
// out later.
clsStoppedThreads::clsStoppedThreads(HANDLE process, DWORD processId, DWORD leftOut, DWORD alsoLeftOut,
                                     clsRoom& room) noexcept
    : memory_(process), processId_(processId) {
    const std::span<std::uint32_t> ids = room.Take<std::uint32_t>(most);
    const std::size_t found = PlatformBareThreads(processId, ids, room.Rest());
    const auto isLeftOut = [=](std::uint32_t id) { return id == leftOut || id == alsoLeftOut; };
    const auto end = std::remove_if(ids.begin(), ids.begin() + static_cast<std::ptrdiff_t>(found), isLeftOut);
    const auto wanted = static_cast<std::size_t>(end - ids.begin());
    opened_ = room.Take<clsBareThread>(wanted);
    threads_ = room.Take<scDumpThread>(wanted + 1);
    for (std::size_t i = 0; i < opened_.size() && count_ < threads_.size(); ++i) {
        clsBareThread& thread = opened_[i];
        CONTEXT context{};
        if (thread.Open(processId, ids[i]) < 0 || !thread.Suspend() || !thread.Context(context))
            continue;
        scDumpThread& entry = threads_[count_++];
        entry.id = ids[i];
        entry.environment = Address(thread.Block());
        entry.stackEnd = UtilpStackEnd(memory_, entry.environment);
        entry.context = UtilpContextOf(context);
    }
}

clsStoppedThreads::~clsStoppedThreads() {
    for (clsBareThread& thread : opened_)
        thread.Close();
}

void clsStoppedThreads::Add(DWORD thread, const scThreadContext& context) noexcept {
    clsBareThread opened;
    if (count_ == threads_.size())
        return;
    scDumpThread& entry = threads_[count_++];
    entry.id = thread;
    if (opened.Open(processId_, thread) >= 0)
        entry.environment = Address(opened.Block());
    entry.stackEnd = UtilpStackEnd(memory_, entry.environment);
    entry.context = context;
}

} // namespace tvut
