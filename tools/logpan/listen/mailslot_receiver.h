// Reads the mailslot of the older transport, in a thread of its own.
#pragma once

#include "owned.h"
#include "store.h"

#include <atomic>
#include <thread>

namespace tool::logpan {

class clsMailslotReceiver {
  public:
    // Without a mailslot, because another program has it, nothing is received and isOpen is false.
    explicit clsMailslotReceiver(clsStore& store);
    ~clsMailslotReceiver();
    clsMailslotReceiver(const clsMailslotReceiver&) = delete;
    clsMailslotReceiver& operator=(const clsMailslotReceiver&) = delete;

    bool IsOpen() const { return mailslot_ != nullptr; }

  private:
    void Receive();

    clsStore& store_;
    clsHandle mailslot_;
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

} // namespace tool::logpan
