// What all copies of the diagnostic writer in one process share: nesting level, line counter, the
// number of client modules, and the datagram socket.
//
// It is a small named mapping. Level and counter are changed atomically; a kernel mutex, which costs
// microseconds, guards only the number of modules.
#pragma once

#include "platform/mapping.h"

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

    // The number of modules, while the mutex is held.
    class clsExclusive {
      public:
        explicit clsExclusive(clsAppLocalData& shared) noexcept;
        ~clsExclusive();
        clsExclusive(const clsExclusive&) = delete;
        clsExclusive& operator=(const clsExclusive&) = delete;
        scAppLocalData* operator->() const noexcept { return shared_.Data(); }

      private:
        clsAppLocalData& shared_;
        bool held_;
    };

  private:
    scAppLocalData* Data() const noexcept { return mapping_.As<scAppLocalData>(); }

    clsMapping mapping_;
    clsHandle mutex_;
};

} // namespace tvut
