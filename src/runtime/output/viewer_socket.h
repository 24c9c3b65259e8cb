// The datagram socket to the viewer. It belongs to the process: all copies of the writer share it.
#pragma once

#include "platform/owned.h"
#include "runtime/output/app_local_data.h"

namespace tvut {

// A socket that nobody sends through any more. Closing it ends the socket library, which may need the loader:
// not to be done while a lock is held that is asked for within the loader.
struct scTakenSocketPolicy {
    using Value = std::int32_t;
    static Value None() noexcept { return 0; }
    static void Close(Value value) noexcept;
};
using clsTakenSocket = clsOwned<scTakenSocketPolicy>;

class clsViewerSocket {
  public:
    explicit clsViewerSocket(clsAppLocalData& shared) noexcept : shared_(shared) {}

    // Starts the socket library and makes the socket, unless the process has one already. Loads system
    // libraries: not to be called while a lock is held that is asked for within the loader.
    void Open() noexcept;

    // The same, unless it has failed within the last second.
    void Reopen() noexcept;

    // Makes another socket in place of the open one; the socket library stays as it is.
    void Renew() noexcept;

    // Takes the socket, if there is one, from the whole process.
    clsTakenSocket Take() noexcept { return clsTakenSocket(shared_.ExchangeSocket(0)); }

    // Leaves the shared data, for when the library is unloaded. The last copy closes the socket; that alone,
    // because the socket library must not be ended from within the loader.
    void Leave() noexcept;

    bool IsOpen() const noexcept { return shared_.Socket() != 0; }

    // Sends one datagram of two pieces to a port of the loopback address. Never waits.
    void Send(std::uint16_t port, const void* header, std::size_t headerBytes, const void* text,
              std::size_t textBytes) noexcept;

  private:
    bool StartAndMake() noexcept;

    clsAppLocalData& shared_;
    std::atomic<DWORD> failedAt_{0}; // milliseconds; 0: not, or long ago
};

} // namespace tvut
