// tvUT22 for C++: owners for its handles, and its heaps as what C++ allocates with.
//
//     const tvut22::profile settings(ProfJobOpenW(L"settings.prf"));
//     INT copies = 1;
//     ProfGetIntW(settings.get(), nullptr, L"Print/Copies", &copies, 1);
//
//     tvut22::thread_pool pool(L"Export");
//     pool.add([copies] { Print(copies); });
//     pool.finalize();
//
// Everything here is inline, over the C headers, for C++17 and later. Owners close what they hold when they
// go, and throw nothing. What allocates (thread_pool::add, heap_allocator, make_on) throws std::bad_alloc, or
// what the constructors of the caller's types throw. One thread at a time uses an owner.
#ifndef TVUT22_TVUT22_HPP
#define TVUT22_TVUT22_HPP

#include <tvut22/tvut22.h>

#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace tvut22 {

// ---- Handles --------------------------------------------------------------------------------------

// Owns one handle, or none; moves, and does not copy.
template <class Handle, INT(TVUT22_CALL* Close)(Handle)>
class unique_handle {
  public:
    unique_handle() noexcept = default;
    explicit unique_handle(Handle handle) noexcept : handle_(handle) {}
    unique_handle(unique_handle&& other) noexcept : handle_(other.release()) {}
    unique_handle& operator=(unique_handle&& other) noexcept {
        if (this != &other)
            reset(other.release());
        return *this;
    }
    ~unique_handle() { reset(); }

    explicit operator bool() const noexcept { return handle_ != nullptr; }
    Handle get() const noexcept { return handle_; }
    Handle release() noexcept { return std::exchange(handle_, nullptr); }

    // Closes the handle that is owned. Result: what its closing gave.
    INT reset(Handle handle = nullptr) noexcept {
        const Handle old = std::exchange(handle_, handle);
        return old ? Close(old) : UTIL_OK;
    }

  private:
    Handle handle_ = nullptr;
};

namespace detail {
inline INT TVUT22_CALL close_profile(ProfJob job) {
    ProfJobClose(job);
    return PROF_OK;
}
inline INT TVUT22_CALL close_job(UtilJob job) {
    return UtilJobClose(job);
}
inline INT TVUT22_CALL delete_heap(UtilHeap heap) {
    return UtilHeapDelete(heap);
}
} // namespace detail

// A profile that is open. Closing does not save.
using profile = unique_handle<ProfJob, detail::close_profile>;

// A reference to a job.
using job = unique_handle<UtilJob, detail::close_job>;

// A heap. It must go before its job does.
using heap = unique_handle<UtilHeap, detail::delete_heap>;

// The properties of a document.
using document_info = unique_handle<UtilDocInfo, UtilDocInfoClose>;

// A help file.
using help = unique_handle<UtilHelp, UtilHelpClose>;

// ---- Thread pools ---------------------------------------------------------------------------------

namespace detail {
// A callable that was moved into memory of its own, which goes with its one call.
template <class Function>
void TVUT22_CALL call_and_free(UINT reason, UINT_PTR user, const volatile LONG* abort) {
    const std::unique_ptr<Function> function(reinterpret_cast<Function*>(user));
    if (reason != UTIL_POOL_RUN)
        return;
    if constexpr (std::is_invocable_v<Function&, const volatile LONG&>)
        (*function)(*abort);
    else
        (*function)();
}
} // namespace detail

// A thread pool. Its end discards the jobs that wait, and waits for those that run.
class thread_pool : public unique_handle<UtilThreadPool, UtilThreadPoolClose> {
  public:
    thread_pool() noexcept = default;
    explicit thread_pool(const wchar_t* name, UINT threads = 0, UINT flags = 0) noexcept
        : unique_handle(UtilThreadPoolOpen(name, threads, flags)) {}

    // Adds a callable, which is moved, called at most once, with the abort word if it takes one, and
    // destroyed in any case: after its call, when it is discarded, or here when the pool does not take it.
    // Throws std::bad_alloc, and what moving the callable throws.
    template <class Callable>
    INT add(Callable&& callable) const {
        using function = std::decay_t<Callable>;
        auto moved = std::make_unique<function>(std::forward<Callable>(callable));
        const auto user = reinterpret_cast<UINT_PTR>(moved.get());
        const INT result = UtilThreadPoolAdd(get(), detail::call_and_free<function>, user);
        if (result == UTIL_OK)
            (void)moved.release(); // the job's, which may be over by now
        return result;
    }

    INT abort() const noexcept { return UtilThreadPoolAbort(get()); }
    INT finalize(UINT milliseconds = UTIL_POOL_FOREVER) const noexcept {
        return UtilThreadPoolFinalize(get(), milliseconds);
    }
};

// ---- Lists of handles -----------------------------------------------------------------------------

// Notes a handle that was made, and returns it: `bitmap = track(CreateBitmap(...), UTIL_HANDLE_GDI)`. Null is
// not noted.
template <class Handle>
Handle track(Handle handle, UINT kind, const wchar_t* label = nullptr) noexcept {
    if (handle)
        UtilHandleListMgr(UTIL_HANDLES_ADD, handle, kind, label);
    return handle;
}

// Takes out a handle that is about to be freed, and returns it: `DeleteObject(untrack(bitmap))`.
template <class Handle>
Handle untrack(Handle handle) noexcept {
    if (handle)
        UtilHandleListMgr(UTIL_HANDLES_REMOVE, handle, 0, nullptr);
    return handle;
}

// ---- Crash protection -----------------------------------------------------------------------------

// Protection as long as the object is there.
class protection {
  public:
    explicit protection(const UtilProtection& options) noexcept
        : result_(UtilExHandlerStartProtection(&options)) {}
    protection(protection&& other) noexcept : result_(std::exchange(other.result_, UTIL_FAILED)) {}
    protection(const protection&) = delete;
    protection& operator=(const protection&) = delete;
    ~protection() {
        if (result_ >= 0)
            UtilExHandlerEndProtection();
    }

    explicit operator bool() const noexcept { return result_ >= 0; }
    // What starting gave: the number of reports that wait, or why there is no protection.
    INT result() const noexcept { return result_; }

  private:
    INT result_;
};

// ---- Windows --------------------------------------------------------------------------------------

// A subclass of a window, and a hook of a thread. They must go on their thread. A subclass whose window is
// gone may stay.
using subclass = unique_handle<UtilSubclass, UtilWindowUnsubclass>;
using hook = unique_handle<UtilHook, UtilHookClose>;

namespace detail {
// A member function as a callback: "user" is the object.
template <auto Method, class Object, class Handle, class Result, class... Arguments>
struct method_call {
    static Result TVUT22_CALL call(Handle handle, Arguments... arguments, UINT_PTR user) {
        return (reinterpret_cast<Object*>(user)->*Method)(handle, arguments...);
    }
};
} // namespace detail

// Subclasses a window by a member function, which gets what a UtilWindowProc does but for "user":
//
//     edit_ = tvut22::subclass_by<&Form::OnEditMessage>(edit, *this);
//
// The object must be there as long as the subclass is.
template <auto Method, class Object>
subclass subclass_by(HWND window, Object& object) noexcept {
    using method = detail::method_call<Method, Object, UtilSubclass, LRESULT, HWND, UINT, WPARAM, LPARAM>;
    return subclass(UtilWindowSubclass(window, method::call, reinterpret_cast<UINT_PTR>(&object)));
}

// The same for hooks.
template <auto Method, class Object>
hook hook_cbt_by(Object& object) noexcept {
    using method = detail::method_call<Method, Object, UtilHook, LRESULT, INT, WPARAM, LPARAM>;
    return hook(UtilHookCBT(method::call, reinterpret_cast<UINT_PTR>(&object)));
}
template <auto Method, class Object>
hook hook_ctrl_break_by(Object& object) noexcept {
    using method = detail::method_call<Method, Object, UtilHook, BOOL>;
    return hook(UtilHookCtrlBreak(method::call, reinterpret_cast<UINT_PTR>(&object)));
}

// ---- Impersonation --------------------------------------------------------------------------------

// The thread acts for another user as long as the object is there. It belongs to the thread that made it, and
// ends before older ones do, as local variables do.
class impersonation : public unique_handle<UtilImpersonation, UtilImpersonateEnd> {
  public:
    impersonation(const wchar_t* account, const wchar_t* password, UINT flags = 0) noexcept
        : unique_handle(UtilImpersonateUser(account, password, flags)) {}
    explicit impersonation(HANDLE token) noexcept : unique_handle(UtilImpersonateToken(token)) {}
    impersonation(impersonation&&) noexcept = default;
    impersonation& operator=(impersonation&&) = delete; // the old one would have to end first
};

// ---- Objects on a heap ----------------------------------------------------------------------------

// Heaps align to four bytes. For what needs more, an address is aligned within a larger block whose
// beginning is kept before it.
namespace detail {
constexpr std::size_t heap_alignment = 4;

inline void* allocate(UtilHeap from, std::size_t bytes, std::size_t alignment) {
    const bool aligned = alignment > heap_alignment;
    const std::size_t extra = aligned ? alignment + sizeof(void*) : 0;
    if (bytes > static_cast<std::size_t>((std::numeric_limits<INT>::max)()) - extra)
        throw std::bad_alloc();
    void* const block = UtilHeapObjectAlloc(from, static_cast<INT>(bytes + extra), 0);
    if (!block)
        throw std::bad_alloc();
    if (!aligned)
        return block;
    void* at = static_cast<char*>(block) + sizeof(void*);
    std::size_t room = bytes + alignment;
    std::align(alignment, bytes, at, room);
    static_cast<void**>(at)[-1] = block;
    return at;
}

inline void deallocate(UtilHeap from, void* at, std::size_t alignment) noexcept {
    UtilHeapObjectFree(from, at && alignment > heap_alignment ? static_cast<void**>(at)[-1] : at);
}
} // namespace detail

// An allocator for containers. It does not own the heap, which must outlive what is allocated.
template <class T>
class heap_allocator {
  public:
    using value_type = T;
    using propagate_on_container_move_assignment = std::true_type;
    using propagate_on_container_swap = std::true_type;

    explicit heap_allocator(UtilHeap from) noexcept : heap_(from) {}
    template <class U>
    heap_allocator(const heap_allocator<U>& other) noexcept : heap_(other.heap()) {}

    T* allocate(std::size_t count) {
        if (count > (std::numeric_limits<std::size_t>::max)() / sizeof(T))
            throw std::bad_alloc();
        return static_cast<T*>(detail::allocate(heap_, count * sizeof(T), alignof(T)));
    }
    void deallocate(T* at, std::size_t) noexcept { detail::deallocate(heap_, at, alignof(T)); }
    UtilHeap heap() const noexcept { return heap_; }

  private:
    UtilHeap heap_;
};

template <class T, class U>
bool operator==(const heap_allocator<T>& a, const heap_allocator<U>& b) noexcept {
    return a.heap() == b.heap();
}
template <class T, class U>
bool operator!=(const heap_allocator<T>& a, const heap_allocator<U>& b) noexcept {
    return !(a == b);
}

// Destroys and frees an object that make_on made.
template <class T>
class heap_delete {
  public:
    explicit heap_delete(UtilHeap from = nullptr) noexcept : heap_(from) {}
    void operator()(T* object) const noexcept {
        object->~T();
        detail::deallocate(heap_, object, alignof(T));
    }

  private:
    UtilHeap heap_;
};

template <class T>
using heap_ptr = std::unique_ptr<T, heap_delete<T>>;

// Makes an object on a heap: what `new` is to the program's own.
template <class T, class... Arguments>
heap_ptr<T> make_on(UtilHeap on, Arguments&&... arguments) {
    void* const at = detail::allocate(on, sizeof(T), alignof(T));
    try {
        return heap_ptr<T>(::new (at) T(std::forward<Arguments>(arguments)...), heap_delete<T>(on));
    } catch (...) {
        detail::deallocate(on, at, alignof(T));
        throw;
    }
}

} // namespace tvut22

#endif
