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

    // Stands for itself, whether a viewer is there or not: it is opened and given up without the lock.
    clsViewerSocket& Socket() noexcept { return socket_; }

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
