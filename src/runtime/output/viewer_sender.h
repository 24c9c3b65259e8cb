// Lines as packets to the viewer.
#pragma once

#include "runtime/line_stamp.h"
#include "runtime/output/viewer_info.h"
#include "runtime/output/viewer_socket.h"

namespace tvut {

class clsViewerSender {
  public:
    explicit clsViewerSender(clsViewerSocket& socket) noexcept : socket_(socket) {}

    // Sends one line to where the viewer listens now; the stamp's level is the line's indentation.
    void Send(const scViewerAddress& viewer, const SYSTEMTIME& time, std::u16string_view tag,
              const scLineStamp& stamp, std::u16string_view text) noexcept;

  private:
    void FollowPort(std::uint16_t port) noexcept;

    clsViewerSocket& socket_;
    std::uint16_t lastPort_ = 0;
};

} // namespace tvut
