// What runs on the prepared thread and on the one that crashed. Nothing here may come to call the heap, the
// loader, a lock or the compiler's runtime: the tests look at what this file's object refers to. Starting and
// ending the thread stands in hand_over_thread.cpp.
//
// One crash is written at a time: who finds another being written waits for it. With the process's end
// wanted, that ends with the first; else each goes on to what the system does next.
#include "runtime/crash/hand_over.h"

#include "platform/bare_system.h"
#include "platform/guarded.h"

namespace tvut {

namespace {

constexpr unsigned writingTime = 30000; // milliseconds
constexpr unsigned noticeTime = 60000;
constexpr std::uint32_t abortExitCode = 3;

const wchar_t* TextOrNull(const CrashPath& path) noexcept {
    return path.IsEmpty() ? nullptr : reinterpret_cast<const wchar_t*>(path.Terminated());
}

} // namespace

std::uint32_t clsHandOver::ExitCode() const noexcept {
    return event_.kind == CrashKind::exception ? event_.exception->ExceptionRecord->ExceptionCode
                                               : abortExitCode;
}

void clsHandOver::CallAfter(const scCrashFiles& files) const noexcept {
    auto call = [&] {
        if (prepared_->after)
            prepared_->after(TextOrNull(files.report), TextOrNull(files.dump), prepared_->user);
    };
    PlatformGuarded(call);
}

void clsHandOver::WriteAll() noexcept {
    scCrashFiles files;
    UtilpWriteCrashFiles(*prepared_, event_, files);
    CallAfter(files);
    PlatformBareSet(written_);
    if (prepared_->showsNotice)
        ShowNotice(files);
    if (prepared_->endsProcess)
        PlatformBareEndProcess(ExitCode());
    PlatformBareSet(finished_);
}

void clsHandOver::Serve() noexcept {
    PlatformBareSet(ready_);
    for (;;) {
        PlatformBareWaitForever(crashed_);
        if (release_.load())
            return;
        WriteAll();
    }
}

// Until that one is written, or long enough.
void clsHandOver::WaitForOther() noexcept {
    constexpr unsigned step = 100; // milliseconds
    bool written = false;
    for (unsigned waited = 0; !written && state_.load() == State::busy && waited < writingTime;
         waited += step)
        written = PlatformBareWait(written_, step);
    const bool isUnread = written && prepared_->showsNotice && state_.load() == State::busy &&
                          !PlatformBareWait(finished_, noticeTime);
    if (prepared_->endsProcess || isUnread)
        PlatformBareEndProcess(ExitCode());
}

void clsHandOver::Take(CrashKind kind, EXCEPTION_POINTERS* exception) noexcept {
    const std::uint32_t thread = PlatformBareThreadId();
    if (thread == threadId_) // nobody is left to write
        PlatformBareEndProcess(exception->ExceptionRecord->ExceptionCode);
    State idle = State::idle;
    if (!state_.compare_exchange_strong(idle, State::busy)) {
        if (idle == State::busy)
            WaitForOther();
        return;
    }
    event_ = {.kind = kind, .thread = thread, .exception = exception};
    if (PlatformBareShutsDown()) {
        WriteAll();
    } else {
        PlatformBareSet(crashed_);
        const bool written = PlatformBareWait(written_, writingTime);
        const bool finished = written && PlatformBareWait(finished_, noticeTime);
        if (prepared_->endsProcess || (written && !finished))
            PlatformBareEndProcess(ExitCode());
        if (!written)
            return; // and none after this one
    }
    PlatformBareReset(written_);
    PlatformBareReset(finished_);
    state_ = State::idle;
}

} // namespace tvut
