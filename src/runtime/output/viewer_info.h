// What the viewer publishes: its port, and whether it wants lines.
//
// The memory belongs to another process that may write anything at any time, or take it away: it is copied
// under a guard, and every field of the copy is brought into its limits.
#pragma once

#include "platform/mapping.h"

#include <cstdint>

namespace tvut {

struct scViewerAddress {
    std::uint16_t port = 0;          // 0: none
    std::size_t longestDatagram = 0; // bytes
};

// What it publishes at the moment.
struct scViewerWish {
    bool lines = false; // whether it wants any
    scViewerAddress address;
};

class clsViewerInfo {
  public:
    // Looks for a viewer; what is not found or not readable is none.
    static clsViewerInfo Find() noexcept;

    explicit operator bool() const noexcept { return mapping_.HasView(); }

    // Nothing when there is no viewer. One whose memory has gone away is none from now on.
    scViewerWish Wish() noexcept;

  private:
    clsMapping mapping_;
};

} // namespace tvut
