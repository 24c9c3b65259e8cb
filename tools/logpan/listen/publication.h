// Tells senders where the viewer listens, while it lives.
#ifndef LOGPAN_PUBLICATION_H
#define LOGPAN_PUBLICATION_H

#include "owned.h"

#include <tvut22/viewer.h>

namespace tool::logpan {

// Only one viewer runs in a session: what is published has room for one. Throws Failure when there is one.
class OnlyViewer {
  public:
    OnlyViewer();
    ~OnlyViewer();
    OnlyViewer(const OnlyViewer&) = delete;
    OnlyViewer& operator=(const OnlyViewer&) = delete;

  private:
    Handle mutex_;
};

// Senders keep the mapping of a viewer that died, so it may be there already: its fields are then changed
// in an order that never shows a half-made state. Throws Failure when it cannot be written.
class Publication {
  public:
    Publication(UINT32 port, UINT32 largestDatagram, HWND window);
    ~Publication();
    Publication(const Publication&) = delete;
    Publication& operator=(const Publication&) = delete;

  private:
    void setWanted(bool wanted);

    Handle infoMapping_;
    View<LogpanSharedInfo> info_;
    Handle windowMapping_;
    View<UINT32> window_;
};

} // namespace tool::logpan

#endif
