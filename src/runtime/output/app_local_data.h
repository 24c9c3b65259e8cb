// What all copies of the diagnostic writer in one process share: nesting level, line counter, the
// number of client modules, and the datagram socket.
//
// It is a small named mapping. All words are changed atomically; a kernel mutex, which costs microseconds,
// is taken for the number of modules only, because other copies may change that in other ways.
#pragma once

#include "platform/mapping.h"
#include "runtime/output/app_local_words.h"

#include <atomic>

namespace tvut {

class clsAppLocalData {
  public:
    // Opens or makes the shared memory. False, with a word to the debugger, when that fails.
    bool Open() noexcept;
    void Close() noexcept;
    bool IsOpen() const noexcept { return mapping_.HasView(); }

    // Whether any copy has the memory open.
    static bool Exists() noexcept;

    // The memory itself, once it is open.
    scAppLocalData& Words() const noexcept { return *mapping_.As<scAppLocalData>(); }

    std::int32_t Socket() const noexcept { return SocketWord(); }
    // False when there is one already.
    bool OfferSocket(std::int32_t made) noexcept {
        std::int32_t none = 0;
        return SocketWord().compare_exchange_strong(none, made);
    }
    std::int32_t ExchangeSocket(std::int32_t other) noexcept { return SocketWord().exchange(other); }

    std::int32_t Modules() const noexcept { return ModulesWord(); }

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

    std::atomic_ref<std::int32_t> SocketWord() const noexcept { return std::atomic_ref(Words().socket); }
    std::atomic_ref<std::int32_t> ModulesWord() const noexcept { return std::atomic_ref(Words().modules); }

    clsMapping mapping_;
    clsHandle mutex_;
    std::atomic<DWORD> patience_{longestWait};
};

} // namespace tvut
