// The viewer that publishes itself: its memory, the process's socket to it, and the port where it listens.
#pragma once

#include "runtime/output/line_sink.h"
#include "runtime/output/viewer_info.h"
#include "runtime/output/viewer_socket.h"

#include <utility>

namespace tvut {

class clsViewer final : public IclsLineSink {
  public:
    explicit clsViewer(clsAppLocalData& shared) noexcept : socket_(shared) {}

    bool IsThere() const noexcept { return static_cast<bool>(info_); }

    // Takes what a look has found, and hands over what was there.
    void Swap(clsViewerInfo& found) noexcept { std::swap(info_, found); }

    // Reads what the viewer publishes at the moment: whether it wants lines, and where to.
    bool Wants() noexcept override;

    // Sends a line as packets, as Wants has found the viewer.
    void Take(const scOutputLine& line) noexcept override;

    // The socket, which outlives the viewer: another copy of the library may send through it. It is opened
    // without a lock held, because that may need the loader; what is given up is closed so, too.
    bool HasSocket() const noexcept { return socket_.IsOpen(); }
    void OpenSocket() noexcept { socket_.Open(); }
    void ReopenSocket() noexcept { socket_.Reopen(); } // unless that has failed within the last second
    clsTakenSocket GiveUpSocket() noexcept { return socket_.Take(); }

    // For when the library is unloaded.
    void Leave() noexcept;

  private:
    void FollowPort(std::uint16_t port) noexcept;

    clsViewerInfo info_;
    scViewerAddress address_;
    std::uint16_t lastPort_ = 0;
    clsViewerSocket socket_;
};

} // namespace tvut
