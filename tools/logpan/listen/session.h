// Everything that makes a viewer heard of: receivers first, then the publication; ended the other way round.
#pragma once

#include "datagram_receiver.h"
#include "mailslot_receiver.h"
#include "publication.h"

namespace tool::logpan {

class clsSession {
  public:
    clsSession(clsStore& store, std::uint32_t largestDatagram, HWND window)
        : datagrams_(store, largestDatagram), mailslot_(store),
          publication_(datagrams_.Port(), largestDatagram, window) {}

    std::uint16_t Port() const { return datagrams_.Port(); }
    bool HasMailslot() const { return mailslot_.IsOpen(); }

  private:
    clsDatagramReceiver datagrams_;
    clsMailslotReceiver mailslot_;
    clsPublication publication_;
};

} // namespace tool::logpan
