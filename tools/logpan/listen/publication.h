// Publishes where the viewer listens, while the object lives.
#pragma once

#include "owned.h"

#include <tvut22/viewer.h>

namespace tool::logpan {

// Only one viewer runs in a session: what is published has room for one. Throws Failure when there is one.
class clsOnlyViewer {
  public:
    clsOnlyViewer();
    ~clsOnlyViewer();
    clsOnlyViewer(const clsOnlyViewer&) = delete;
    clsOnlyViewer& operator=(const clsOnlyViewer&) = delete;

  private:
    clsHandle mutex_;
};

// Senders keep the mapping of a viewer that died, so it may be there already: its fields are then changed
// in an order that never shows a half-made state. Throws Failure when it cannot be written.
class clsPublication {
  public:
    clsPublication(UINT32 port, UINT32 largestDatagram, HWND window);
    ~clsPublication();
    clsPublication(const clsPublication&) = delete;
    clsPublication& operator=(const clsPublication&) = delete;

  private:
    void SetWanted(bool wanted);

    clsHandle infoMapping_;
    clsView<LogpanSharedInfo> info_;
    clsHandle windowMapping_;
    clsView<UINT32> window_;
};

} // namespace tool::logpan
