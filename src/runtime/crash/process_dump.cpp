// The target is opened before the threads are stopped, and put in its place after: while they stand still,
// one of them may hold any lock, so only bare calls are made then.
#include "runtime/crash/process_dump.h"

#include "platform/bare_start.h"
#include "platform/exception.h"
#include "platform/owned.h"
#include "platform/patience.h"
#include "platform/replacement.h"
#include "runtime/crash/live_process.h"
#include "runtime/crash/system_facts.h"
#include "runtime/system_result.h"

#include <memory>

namespace tvut {

namespace {

constexpr std::size_t roomSize = 1024 * 1024;
constexpr ULONGLONG patience = 2000; // milliseconds, for others who have the target open

class clsHandleSink final : public IclsBareSink {
  public:
    explicit clsHandleSink(HANDLE file) noexcept : file_(file) {}
    bool Write(const void* bytes, std::size_t count) noexcept override {
        return PlatformBareWrite(file_, {static_cast<const std::byte*>(bytes), count}) >= 0;
    }

  private:
    HANDLE file_;
};

// A 32-bit process on a 64-bit system knows 64-bit ones.
bool Is64Bit(HANDLE process) noexcept {
    BOOL own = FALSE, other = FALSE;
    return IsWow64Process(GetCurrentProcess(), &own) && own && IsWow64Process(process, &other) && !other;
}

// The process that a dump is of.
class clsSubject {
  public:
    explicit clsSubject(DWORD id) noexcept : id_(id == 0 ? GetCurrentProcessId() : id) {
        if (!IsOwn())
            opened_ = clsHandle(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, id_));
        error_ = GetLastError();
    }

    bool IsOwn() const noexcept { return id_ == GetCurrentProcessId(); }
    bool IsThere() const noexcept { return IsOwn() || opened_; }
    HANDLE Handle() const noexcept { return IsOwn() ? UtilpOwnProcess() : opened_.Get(); }
    DWORD Id() const noexcept { return id_; }
    UtilResult WhyNot() const noexcept {
        return error_ == ERROR_ACCESS_DENIED ? UtilResult::noAccess : UtilResult::notFound;
    }

  private:
    DWORD id_;
    clsHandle opened_;
    DWORD error_ = 0;
};

bool WriteTo(HANDLE file, const scDumpWish& wish, const clsSubject& subject, const CONTEXT& caller) {
    const auto facts = std::make_unique<scPreparation>();
    const auto memoryOfRoom = std::make_unique_for_overwrite<std::byte[]>(roomSize);
    clsRoom room({memoryOfRoom.get(), roomSize});
    UtilpNoteSystem(*facts);
    clsLiveMemory memory(subject.Handle());
    const std::span<const scModule> modules = UtilpModulesOf(subject.Handle(), facts->drives, room);
    const DWORD self = GetCurrentThreadId();
    const DWORD thread = wish.thread == 0 ? self : wish.thread;
    scException exception;
    scThreadContext exceptionContext;
    if (wish.exception) {
        exception = UtilpExceptionOf(*wish.exception->ExceptionRecord, thread);
        exceptionContext = UtilpContextOf(*wish.exception->ContextRecord);
    }
    const std::span<char16_t> comment = room.Take<char16_t>(subject.IsOwn() ? clsNotes::longestText : 0);
    const std::size_t commentLength = comment.empty() ? 0 : UtilpNotes().ReadAll(comment);
    clsStoppedThreads threads(subject.Handle(), subject.Id(), subject.IsOwn() ? self : 0, 0, room);
    if (subject.IsOwn())
        threads.Add(self, UtilpContextOf(caller));
    const scDumpPicture picture{.time = UtilpDumpTime(PlatformBareTime()),
                                .system = facts->dumpSystem,
                                .misc = {.flags = 1, .processId = subject.Id()},
                                .threads = threads.Threads(),
                                .modules = modules,
                                .exception = wish.exception ? &exception : nullptr,
                                .exceptionContext = wish.exception ? &exceptionContext : nullptr,
                                .comment = {comment.data(), commentLength},
                                .extra = {},
                                .isFull = wish.isFull};
    clsDumpWriter writer(picture, memory, room.Rest());
    clsHandleSink sink(file);
    return writer.Measure() != 0 && writer.Write(sink);
}

} // namespace

UtilResult UtilpWriteProcessDump(const scDumpWish& wish, const CONTEXT& caller) {
    if (!PlatformFindBareSystem())
        return UtilResult::notSupported;
    const clsSubject subject(wish.process);
    if (!subject.IsThere())
        return subject.WhyNot();
    if (Is64Bit(subject.Handle()))
        return UtilResult::notSupported;
    clsReplacement replacement(wish.file);
    if (!WriteTo(replacement.File().Handle(), wish, subject, caller))
        return UtilResult::failed;
    replacement.File().Close();
    const DWORD error = replacement.PutInPlace(patience);
    return error == ERROR_SUCCESS ? UtilResult::ok : UtilpResultOfError(error);
}

} // namespace tvut
