// Reads the mailslot of the older transport, in a thread of its own.
#ifndef LOGPAN_MAILSLOT_RECEIVER_H
#define LOGPAN_MAILSLOT_RECEIVER_H

#include "owned.h"
#include "store.h"

#include <atomic>
#include <thread>

namespace tool::logpan {

class MailslotReceiver {
  public:
    // Without a mailslot, because another program has it, nothing is received and isOpen is false.
    explicit MailslotReceiver(Store& store);
    ~MailslotReceiver();
    MailslotReceiver(const MailslotReceiver&) = delete;
    MailslotReceiver& operator=(const MailslotReceiver&) = delete;

    bool isOpen() const { return mailslot_ != nullptr; }

  private:
    void receive();

    Store& store_;
    Handle mailslot_;
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

} // namespace tool::logpan

#endif
