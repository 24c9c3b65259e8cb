// The datagram socket to the viewer. It belongs to the process: all copies of the writer share it.
#pragma once

#include "runtime/output/app_local_data.h"

namespace tvut {

class clsViewerSocket {
  public:
    explicit clsViewerSocket(clsAppLocalData& shared) noexcept : shared_(shared) {}

    // Starts the socket library and makes the socket, unless the process has one already.
    void Open() noexcept;
    void Close() noexcept;

    // Closes the socket alone: the socket library must not be ended from within the loader.
    void Abandon() noexcept;

    bool IsOpen() const noexcept { return shared_.Socket() != 0; }

    // Sends one datagram of two pieces to a port of the loopback address. Never waits.
    void Send(std::uint16_t port, const void* header, std::size_t headerBytes, const void* text,
              std::size_t textBytes) noexcept;

  private:
    clsAppLocalData& shared_;
};

// A client module comes or goes. The last one that goes closes the socket.
void UtilpCountModule(clsAppLocalData& shared) noexcept;
void UtilpDiscountModule(clsAppLocalData& shared) noexcept;

} // namespace tvut
