// The datagram socket to the viewer. It belongs to the process: all copies of the writer share it.
#pragma once

#include "runtime/output/app_local_data.h"

namespace tvut {

class clsViewerSocket {
  public:
    explicit clsViewerSocket(clsAppLocalData& shared) noexcept : shared_(shared) {}

    // Starts the socket library and makes the socket, unless the process has one already. Loads system
    // libraries: not to be called while a lock is held that is asked for within the loader.
    void Open() noexcept;

    // Makes another socket in place of the open one; the socket library stays as it is.
    void Renew() noexcept;

    // Takes the socket, 0 for none, so that nobody sends through it any more. The owner closes it by
    // UtilpCloseSocket, for which the same holds as for opening.
    LONG Take() noexcept { return shared_.ExchangeSocket(0); }

    // Closes the socket alone: the socket library must not be ended from within the loader.
    void Abandon() noexcept;

    bool IsOpen() const noexcept { return shared_.Socket() != 0; }

    // Sends one datagram of two pieces to a port of the loopback address. Never waits.
    void Send(std::uint16_t port, const void* header, std::size_t headerBytes, const void* text,
              std::size_t textBytes) noexcept;

  private:
    clsAppLocalData& shared_;
};

void UtilpCloseSocket(LONG taken) noexcept;

// A client module comes, or goes: then true when it was the last one, without which no socket is needed.
void UtilpCountModule(clsAppLocalData& shared) noexcept;
bool UtilpDiscountModule(clsAppLocalData& shared) noexcept;

} // namespace tvut
