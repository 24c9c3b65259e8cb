// The subclasses of one window, and the calls of their procedures that are under way on its thread.
//
// Each is a subclass of the system's own, comctl32's, so that the order holds between all who subclass that
// way. It is taken off only when no procedure of ours is being called for the window: until then it is
// marked, and passes on what comes. The system's chain could lose its place otherwise (Wine's does, where a
// procedure that sends a message finds the next one gone afterwards).
#pragma once

#include "window/subclass_handles.h"

#include <list>
#include <unordered_map>

namespace tvut {

class clsSubclassThread;

class clsSubclassedWindow {
  public:
    clsSubclassedWindow(HWND window, clsSubclassThread& thread) noexcept : window_(window), thread_(thread) {}
    clsSubclassedWindow(const clsSubclassedWindow&) = delete;
    clsSubclassedWindow& operator=(const clsSubclassedWindow&) = delete;

    // Throws clsException, std::bad_alloc.
    std::uint32_t Add(UtilWindowProc proc, UINT_PTR user);

    void Enter(UINT message) noexcept;
    void Leave(UINT message) noexcept; // the object may be gone afterwards

    // All of them, at once. Their owners need not know.
    void ComeOff() noexcept;

    void Remove(scSubclass& subclass) noexcept; // the object may be gone afterwards

    // Takes off what was removed, if that can be.
    void Sweep() noexcept;

    HWND Handle() const noexcept { return window_; }
    bool IsOf(HWND window) const noexcept { return window == window_ && !isGone_; }
    bool IsIdle() const noexcept { return running_ == 0 && subclasses_.empty(); }
    clsSubclassThread& Thread() const noexcept { return thread_; }

  private:
    bool IsOnTop() const noexcept;
    void PutOn(const scSubclass& subclass);
    void TakeOff(const scSubclass& subclass) const noexcept;

    HWND window_;
    clsSubclassThread& thread_;
    LONG_PTR procedure_ = 0;  // the window's after our first subclass came
    unsigned running_ = 0;    // calls under way
    unsigned destroying_ = 0; // those among them for WM_NCDESTROY
    std::size_t removed_ = 0; // subclasses that only pass on
    bool isGone_ = false;
    std::list<std::shared_ptr<scSubclass>> subclasses_; // newest first
};

// A call of a procedure, on the stack of the thread.
class clsSubclassCall {
  public:
    clsSubclassCall(const scSubclass& subclass, UINT message) noexcept;
    ~clsSubclassCall();
    clsSubclassCall(const clsSubclassCall&) = delete;
    clsSubclassCall& operator=(const clsSubclassCall&) = delete;

    // The newest call of a subclass's procedure on this thread; null when there is none, or its window is
    // another one or gone.
    static const clsSubclassCall* Find(std::uint32_t subclass, HWND window) noexcept;

  private:
    std::uint32_t subclass_;
    UINT message_;
    clsSubclassedWindow& window_;
    const clsSubclassCall* before_;
};

// What a thread has of this: there as long as one of its windows is subclassed.
class clsSubclassThread {
  public:
    static clsSubclassThread* Find() noexcept; // the calling thread's; may be null
    static clsSubclassThread& Need();          // throws std::bad_alloc
    static void End() noexcept;                // the calling thread ends
    static void FreeSlot() noexcept;           // the library is unloaded

    clsSubclassedWindow& Window(HWND window); // throws std::bad_alloc

    // Sweeps a window, and forgets it when nothing is left of it. The object may be gone afterwards.
    void Settle(clsSubclassedWindow& window) noexcept;

    const clsSubclassCall* newest = nullptr;

  private:
    // Several of one handle: calls for a window that is gone may be under way when the handle is a new one's.
    std::unordered_multimap<HWND, clsSubclassedWindow> windows_;
};

// Passes a message on from the call that is under way.
LRESULT UtilpPassOn(HWND window, UINT message, WPARAM w, LPARAM l) noexcept;

} // namespace tvut
