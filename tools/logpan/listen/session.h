// Everything that makes a viewer heard of: receivers first, then the publication; ended the other way round.
#ifndef LOGPAN_SESSION_H
#define LOGPAN_SESSION_H

#include "datagram_receiver.h"
#include "mailslot_receiver.h"
#include "publication.h"

namespace tool::logpan {

class Session {
  public:
    Session(Store& store, std::uint32_t largestDatagram, HWND window)
        : datagrams_(store, largestDatagram), mailslot_(store),
          publication_(datagrams_.port(), largestDatagram, window) {}

    std::uint16_t port() const { return datagrams_.port(); }
    bool hasMailslot() const { return mailslot_.isOpen(); }

  private:
    DatagramReceiver datagrams_;
    MailslotReceiver mailslot_;
    Publication publication_;
};

} // namespace tool::logpan

#endif
