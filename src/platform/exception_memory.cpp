// Memory for exceptions that does not run out: a failed allocation must be reportable by throwing.
//
// The compiler's runtime allocates an exception, and once a thread the record of what it is handling. Its
// provision for a process without memory needs a lock that is itself allocated when first used, and
// whose failure throws: an endless recursion. These definitions take the place of the runtime's own;
// the interface is that of the Itanium C++ ABI (https://itanium-cxx-abi.github.io/cxx-abi/abi-eh.html).
// Other compilers keep exceptions on the stack and need none of this.
#include "platform/exception_memory.h"

#ifdef __MINGW32__

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <windows.h>

namespace {

// Blocks of one size that exist from the start, for when the heap has none.
template <std::size_t blockBytes, std::size_t blockCount>
class clsReserve {
  public:
    void* Take(std::size_t bytes) noexcept {
        for (std::size_t i = 0; bytes <= blockBytes && i < blockCount; ++i) {
            if (!taken_[i].exchange(true, std::memory_order_acquire))
                return blocks_[i].bytes;
        }
        return nullptr;
    }

    // False for a block that is not from here.
    bool GiveBack(const void* block) noexcept {
        const auto offset =
            reinterpret_cast<std::uintptr_t>(block) - reinterpret_cast<std::uintptr_t>(&blocks_);
        if (offset >= sizeof blocks_)
            return false;
        taken_[offset / sizeof(scBlock)].store(false, std::memory_order_release);
        return true;
    }

  private:
    struct alignas(16) scBlock {
        char bytes[blockBytes];
    };
    std::array<scBlock, blockCount> blocks_{};
    std::array<std::atomic<bool>, blockCount> taken_{};
};

// Zeroed memory from the heap or the reserve; without either there is nothing left to report with.
template <class Reserve>
void* Allocate(std::size_t bytes, Reserve& reserve) noexcept {
    void* block = std::malloc(bytes);
    if (!block)
        block = reserve.Take(bytes);
    if (!block)
        std::terminate();
    return std::memset(block, 0, bytes);
}

template <class Reserve>
void Free(void* block, Reserve& reserve) noexcept {
    if (!reserve.GiveBack(block))
        std::free(block);
}

// The runtime keeps a record of its own before each exception, and one alone for an exception that is
// thrown again elsewhere; no version had one larger than this. A thread holds them for a moment only.
constexpr std::size_t recordBytes = 128;
constinit clsReserve<256, 64> exceptionReserve;

void* AllocateException(std::size_t bytes) noexcept {
    return static_cast<char*>(Allocate(bytes + recordBytes, exceptionReserve)) + recordBytes;
}

void FreeException(void* exception) noexcept {
    Free(static_cast<char*>(exception) - recordBytes, exceptionReserve);
}

// What a thread has thrown and caught; kept from its first exception until the thread ends.
struct scGlobals {
    void* caughtExceptions;
    unsigned uncaughtExceptions;
};
constinit clsReserve<sizeof(scGlobals), 256> globalsReserve;
const DWORD globalsSlot = TlsAlloc();

} // namespace

// The names are the runtime's.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {

void* __cxa_allocate_exception(std::size_t bytes) noexcept {
    return AllocateException(bytes);
}
void __cxa_free_exception(void* exception) noexcept {
    FreeException(exception);
}
void* __cxa_allocate_dependent_exception() noexcept {
    return Allocate(recordBytes, exceptionReserve); // nothing but a record
}
void __cxa_free_dependent_exception(void* exception) noexcept {
    Free(exception, exceptionReserve);
}

scGlobals* __cxa_get_globals() noexcept {
    const DWORD lastError = GetLastError(); // TlsGetValue resets it
    auto* globals = static_cast<scGlobals*>(TlsGetValue(globalsSlot));
    if (!globals) {
        globals = static_cast<scGlobals*>(Allocate(sizeof(scGlobals), globalsReserve));
        if (!TlsSetValue(globalsSlot, globals))
            std::terminate();
    }
    SetLastError(lastError);
    return globals;
}

scGlobals* __cxa_get_globals_fast() noexcept {
    return __cxa_get_globals();
}

} // extern "C"

// The runtime's own prints the type of the exception, whose name it takes a twentieth of the library's size
// to spell out, where no program with windows would see it.
void __gnu_cxx::__verbose_terminate_handler() {
    std::abort();
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

namespace tvut {

// Nothing is made ready beyond that: the first throw sorts the tables that unwinding searches, which takes
// as long as all else of loading, and searches them as they are where it has no memory for that.
bool PlatformExceptionsBegin() noexcept {
    return globalsSlot != TLS_OUT_OF_INDEXES;
}

void PlatformThreadEnds() noexcept {
    if (void* const globals = TlsGetValue(globalsSlot)) {
        TlsSetValue(globalsSlot, nullptr);
        Free(globals, globalsReserve);
    }
}

void PlatformExceptionsEnd() noexcept {
    PlatformThreadEnds();
    TlsFree(globalsSlot);
}

} // namespace tvut

#else

bool tvut::PlatformExceptionsBegin() noexcept {
    return true;
}
void tvut::PlatformThreadEnds() noexcept {}
void tvut::PlatformExceptionsEnd() noexcept {}

#endif
