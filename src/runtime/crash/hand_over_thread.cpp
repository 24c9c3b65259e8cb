// The part of the hand-over that belongs to ordinary times, and the notice, for which all is written.
#include "platform/bare_system.h"
#include "platform/guarded.h"
#include "platform/held_library.h"
#include "platform/wide.h"
#include "runtime/crash/hand_over.h"

#include <windows.h>

namespace tvut {

namespace {

constexpr SIZE_T stackSize = 64 * 1024;

} // namespace

// It returns to the system only after the library may be gone.
unsigned long __stdcall clsHandOver::Thread(void* self) {
    auto* const handOver = static_cast<clsHandOver*>(self);
    handOver->Serve();
    const auto library = static_cast<HMODULE>(handOver->library_);
    handOver->CloseHandles();
    handOver->release_.load()(handOver);
    FreeLibraryAndExitThread(library, 0);
}

bool clsHandOver::Open(const scPreparation& preparation) noexcept {
    prepared_ = &preparation;
    ready_ = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    crashed_ = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    written_ = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    finished_ = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    DWORD id = 0;
    if (ready_ && crashed_ && written_ && finished_)
        thread_ = CreateThread(nullptr, stackSize, Thread, this, 0, &id);
    threadId_ = id;
    if (thread_)
        state_ = State::idle;
    else
        CloseHandles();
    return thread_ != nullptr;
}

void* clsHandOver::Ready() const noexcept {
    HANDLE own = nullptr;
    DuplicateHandle(GetCurrentProcess(), ready_, GetCurrentProcess(), &own, SYNCHRONIZE, FALSE, 0);
    return own;
}

void clsHandOver::Dismiss(void (*release)(clsHandOver*)) noexcept {
    library_ = PlatformOwnLibrary().Take();
    release_ = release;
    SetEvent(crashed_);
}

void clsHandOver::Stop() noexcept {
    state_ = State::closed;
    TerminateThread(thread_, 0);
    WaitForSingleObject(thread_, INFINITE);
    CloseHandles();
}

void clsHandOver::CloseHandles() noexcept {
    for (void** handle : {&thread_, &ready_, &crashed_, &written_, &finished_}) {
        if (*handle)
            CloseHandle(*handle);
        *handle = nullptr;
    }
}

// A window needs all that a crash may have broken; the process ends in time even when it never shows.
void clsHandOver::ShowNotice(const scCrashFiles& files) const noexcept {
    auto show = [&] {
        const wchar_t* const report = files.report.IsEmpty() ? L"-" : ToWide(files.report.Terminated());
        MessageBoxW(nullptr, report, ToWide(prepared_->product.Terminated()),
                    MB_OK | MB_ICONERROR | MB_TASKMODAL | MB_SETFOREGROUND);
    };
    PlatformGuarded(show);
}

} // namespace tvut
