// What all copies of the diagnostic writer in one process share: nesting level, line counter, the
// number of client modules, and the datagram socket.
//
// It is a small named mapping. All words are changed atomically; a kernel mutex, which costs microseconds,
// is taken for the number of modules only, because other copies may change that in other ways.
#pragma once

#include "platform/mapping.h"

#include <atomic>
#include <cstdint>

namespace tvut {

struct scAppLocalData {
    LONG level;
    LONG lines;
    LONG modules;
    LONG socket; // 0: none
};

class clsAppLocalData {
  public:
    // Opens or makes the shared memory. False, with a word to the debugger, when that fails.
    bool Open() noexcept;
    void Close() noexcept;
    bool IsOpen() const noexcept { return mapping_.HasView(); }

    // Whether any copy has the memory open.
    static bool Exists() noexcept;

    LONG Level() const noexcept { return InterlockedCompareExchange(&Data()->level, 0, 0); }
    LONG LowerLevel() noexcept { return InterlockedDecrement(&Data()->level); }
    void RaiseLevel() noexcept { InterlockedIncrement(&Data()->level); }
    std::uint32_t CountLine() noexcept {
        return static_cast<std::uint32_t>(InterlockedIncrement(&Data()->lines));
    }

    LONG Socket() const noexcept { return InterlockedCompareExchange(&Data()->socket, 0, 0); }
    // False when there is one already.
    bool OfferSocket(LONG made) noexcept { return InterlockedCompareExchange(&Data()->socket, made, 0) == 0; }
    LONG ExchangeSocket(LONG other) noexcept { return InterlockedExchange(&Data()->socket, other); }

    LONG Modules() const noexcept { return InterlockedCompareExchange(&Data()->modules, 0, 0); }

    // A client module comes, or goes: then true when it was the last one. May wait for whoever has the mutex:
    // not to be called while a lock is held.
    void CountModule() noexcept;
    bool DiscountModule() noexcept;

  private:
    // The mutex, while the object lives, or after that time nothing: then the next one does not wait.
    class clsExclusive {
      public:
        explicit clsExclusive(clsAppLocalData& shared) noexcept;
        ~clsExclusive();
        clsExclusive(const clsExclusive&) = delete;
        clsExclusive& operator=(const clsExclusive&) = delete;

      private:
        HANDLE held_ = nullptr;
    };
    static constexpr DWORD longestWait = 1000; // milliseconds; the holder changes a number

    scAppLocalData* Data() const noexcept { return mapping_.As<scAppLocalData>(); }

    clsMapping mapping_;
    clsHandle mutex_;
    std::atomic<DWORD> patience_{longestWait};
};

} // namespace tvut
