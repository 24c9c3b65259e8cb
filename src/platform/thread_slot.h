// A pointer for each thread, made for static storage. The thread's last error stays as it is.
#pragma once

#include <atomic>
#include <windows.h>

namespace tvut {

class clsThreadSlot {
  public:
    constexpr clsThreadSlot() noexcept = default;
    clsThreadSlot(const clsThreadSlot&) = delete;
    clsThreadSlot& operator=(const clsThreadSlot&) = delete;

    // The calling thread's; null as long as none was set.
    void* Get() const noexcept {
        const DWORD index = index_.load(std::memory_order_acquire);
        if (index == TLS_OUT_OF_INDEXES)
            return nullptr;
        const DWORD error = GetLastError(); // which looking changes
        void* const value = TlsGetValue(index);
        SetLastError(error);
        return value;
    }

    // False: the system has no slot or no memory left.
    bool Set(void* value) noexcept {
        return Make() && TlsSetValue(index_.load(std::memory_order_acquire), value);
    }

    // When the library is unloaded.
    void Free() noexcept {
        const DWORD index = index_.exchange(TLS_OUT_OF_INDEXES);
        if (index != TLS_OUT_OF_INDEXES)
            TlsFree(index);
    }

  private:
    // Of two slots that are made at once one goes again.
    bool Make() noexcept {
        DWORD none = TLS_OUT_OF_INDEXES;
        if (index_.load(std::memory_order_acquire) != none)
            return true;
        const DWORD made = TlsAlloc();
        if (made != none && !index_.compare_exchange_strong(none, made))
            TlsFree(made);
        return index_.load(std::memory_order_acquire) != TLS_OUT_OF_INDEXES;
    }

    std::atomic<DWORD> index_{TLS_OUT_OF_INDEXES};
};

} // namespace tvut
