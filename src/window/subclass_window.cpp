// A thread's record holds its windows, a window's record its subclasses, and every call of a procedure stands
// in a chain on the thread's stack. A procedure may remove any subclass, also the one whose call it is, so
// nothing is taken away while a call of the window is under way: it is marked, and the end of the outermost
// call sweeps. A window's record goes when it has neither a subclass nor a call, the thread's with its last
// window. Whoever settles looks at neither of them afterwards.
#include "window/subclass_window.h"

#include "platform/exception.h"
#include "platform/system_function.h"
#include "platform/thread_slot.h"

#include <algorithm>
#include <commctrl.h>
#include <functional>
#include <new>
#include <tuple>

namespace tvut {

namespace {

constexpr wchar_t library[] = L"comctl32.dll";

// Before Windows Vista, and in some versions since, they have numbers only.
constinit clsSystemFunction<BOOL WINAPI(HWND, SUBCLASSPROC, UINT_PTR, DWORD_PTR)> setSubclass{
    library, "SetWindowSubclass", 410};
constinit clsSystemFunction<BOOL WINAPI(HWND, SUBCLASSPROC, UINT_PTR)> removeSubclass{
    library, "RemoveWindowSubclass", 412};
constinit clsSystemFunction<LRESULT WINAPI(HWND, UINT, WPARAM, LPARAM)> defaultProc{library,
                                                                                    "DefSubclassProc", 413};

constinit clsThreadSlot slot;

UtilSubclass ToSubclass(std::uint32_t handle) noexcept {
    return reinterpret_cast<UtilSubclass>(static_cast<std::uintptr_t>(handle));
}

// What the system calls for each of our subclasses.
LRESULT CALLBACK Called(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                        DWORD_PTR reference) noexcept {
    const auto& subclass = *reinterpret_cast<const scSubclass*>(reference);
    const clsSubclassCall call(subclass, message);
    return subclass.isRemoved
               ? UtilpPassOn(window, message, w, l)
               : subclass.proc(ToSubclass(subclass.handle), window, message, w, l, subclass.user);
}

LONG_PTR ProcedureOf(HWND window) noexcept {
    return IsWindowUnicode(window) ? GetWindowLongPtrW(window, GWLP_WNDPROC)
                                   : GetWindowLongPtrA(window, GWLP_WNDPROC);
}

} // namespace

LRESULT UtilpPassOn(HWND window, UINT message, WPARAM w, LPARAM l) noexcept {
    const auto call = defaultProc.Get();
    return call ? call(window, message, w, l) : 0;
}

// ---- A window --------------------------------------------------------------------------------------

void clsSubclassedWindow::PutOn(const scSubclass& subclass) {
    const auto call = setSubclass.Get();
    if (!call || !removeSubclass.Get() || !defaultProc.Get())
        throw clsException("no subclasses in this system", ERROR_PROC_NOT_FOUND);
    SetLastError(ERROR_SUCCESS);
    if (!call(window_, Called, subclass.handle, reinterpret_cast<DWORD_PTR>(&subclass))) {
        const DWORD error = GetLastError();
        throw clsException("the system takes no subclass", error ? error : reason::noMemory);
    }
}

void clsSubclassedWindow::TakeOff(const scSubclass& subclass) const noexcept {
    removeSubclass.Get()(window_, Called, subclass.handle);
}

std::uint32_t clsSubclassedWindow::Add(UtilWindowProc proc, UINT_PTR user) {
    const bool isFirst = subclasses_.empty();
    const auto subclass = std::make_shared<scSubclass>(GetCurrentThreadId(), *this, proc, user);
    subclasses_.push_front(subclass);
    try {
        if (!UtilpGiveHandle(subclass))
            throw clsException("too many subclasses", ERROR_NO_MORE_USER_HANDLES);
        PutOn(*subclass);
    } catch (...) {
        UtilpCloseSubclass(subclass->handle);
        subclasses_.pop_front();
        throw;
    }
    if (isFirst)
        procedure_ = ProcedureOf(window_);
    return subclass->handle;
}

void clsSubclassedWindow::Enter(UINT message) noexcept {
    ++running_;
    if (message == WM_NCDESTROY)
        ++destroying_;
}

void clsSubclassedWindow::Leave(UINT message) noexcept {
    if (message == WM_NCDESTROY && --destroying_ == 0)
        ComeOff();
    --running_;
    thread_.Settle(*this);
}

void clsSubclassedWindow::ComeOff() noexcept {
    isGone_ = true;
    for (const auto& subclass : subclasses_) {
        TakeOff(*subclass);
        if (!subclass->isRemoved)
            UtilpCloseGoneSubclass(subclass->handle);
    }
    subclasses_.clear();
}

// Whether nobody has set a procedure of his own since. The system's chain, once it is empty, sets the one
// that it found in the beginning: that would cut off all who came later, or bring back one who has left.
bool clsSubclassedWindow::IsOnTop() const noexcept {
    const LONG_PTR procedure = ProcedureOf(window_);
    return procedure == procedure_ || procedure == 0; // it is gone, and its last message did not come here
}

void clsSubclassedWindow::Sweep() noexcept {
    if (running_ != 0 || removed_ == 0)
        return;
    for (auto at = subclasses_.begin(); at != subclasses_.end();) {
        const bool isLast = subclasses_.size() == 1;
        if ((*at)->isRemoved && !(isLast && !IsOnTop())) {
            TakeOff(**at);
            at = subclasses_.erase(at);
            --removed_;
        } else {
            ++at;
        }
    }
}

void clsSubclassedWindow::Remove(scSubclass& subclass) noexcept {
    subclass.isRemoved = true;
    ++removed_;
    thread_.Settle(*this);
}

// ---- A call ----------------------------------------------------------------------------------------

clsSubclassCall::clsSubclassCall(const scSubclass& subclass, UINT message) noexcept
    : subclass_(subclass.handle), message_(message), window_(subclass.window),
      before_(std::exchange(window_.Thread().newest, this)) {
    window_.Enter(message);
}

clsSubclassCall::~clsSubclassCall() {
    window_.Thread().newest = before_;
    window_.Leave(message_);
}

const clsSubclassCall* clsSubclassCall::Find(std::uint32_t subclass, HWND window) noexcept {
    const clsSubclassThread* const thread = clsSubclassThread::Find();
    const clsSubclassCall* call = thread ? thread->newest : nullptr;
    while (call && call->subclass_ != subclass)
        call = call->before_;
    return call && call->window_.IsOf(window) ? call : nullptr;
}

// ---- A thread --------------------------------------------------------------------------------------

clsSubclassThread* clsSubclassThread::Find() noexcept {
    return static_cast<clsSubclassThread*>(slot.Get());
}

clsSubclassThread& clsSubclassThread::Need() {
    if (clsSubclassThread* const found = Find())
        return *found;
    auto made = std::make_unique<clsSubclassThread>();
    if (!slot.Set(made.get()))
        throw std::bad_alloc();
    return *made.release();
}

clsSubclassedWindow& clsSubclassThread::Window(HWND window) {
    const auto [first, last] = windows_.equal_range(window);
    const auto found =
        std::find_if(first, last, [&](const auto& known) { return known.second.IsOf(window); });
    return found != last ? found->second
                         : windows_
                               .emplace(std::piecewise_construct, std::tuple(window),
                                        std::tuple(window, std::ref(*this)))
                               ->second;
}

void clsSubclassThread::Settle(clsSubclassedWindow& window) noexcept {
    window.Sweep();
    if (!window.IsIdle())
        return;
    const auto [first, last] = windows_.equal_range(window.Handle());
    windows_.erase(std::find_if(first, last, [&](const auto& other) { return &other.second == &window; }));
    if (!windows_.empty())
        return;
    slot.Set(nullptr);
    delete this;
}

// Its windows may still be there, and other libraries may yet send them messages.
void clsSubclassThread::End() noexcept {
    const std::unique_ptr<clsSubclassThread> ended(Find());
    if (!ended)
        return;
    for (auto& [handle, window] : ended->windows_)
        window.ComeOff();
    slot.Set(nullptr);
}

void clsSubclassThread::FreeSlot() noexcept {
    slot.Free();
}

} // namespace tvut
