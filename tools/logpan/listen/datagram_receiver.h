// Takes datagrams off a loopback socket as fast as they come, in a thread of its own.
#pragma once

#include "process_cache.h"
#include "store.h"

#include <winsock2.h>

#include <atomic>
#include <thread>

namespace tool::logpan {

class clsDatagramReceiver {
  public:
    // Throws Failure when there is no socket to be had.
    clsDatagramReceiver(clsStore& store, std::uint32_t largestDatagram);
    ~clsDatagramReceiver();
    clsDatagramReceiver(const clsDatagramReceiver&) = delete;
    clsDatagramReceiver& operator=(const clsDatagramReceiver&) = delete;

    std::uint16_t Port() const { return ntohs(address_.sin_port); }

  private:
    class clsLibrary {
      public:
        clsLibrary();
        ~clsLibrary() { WSACleanup(); }
        clsLibrary(const clsLibrary&) = delete;
        clsLibrary& operator=(const clsLibrary&) = delete;
    };
    class clsSocket {
      public:
        clsSocket();
        ~clsSocket() { closesocket(socket_); }
        clsSocket(const clsSocket&) = delete;
        clsSocket& operator=(const clsSocket&) = delete;
        SOCKET Get() const { return socket_; }

      private:
        SOCKET socket_;
    };

    void Receive();

    clsStore& store_;
    std::uint32_t largestDatagram_;
    clsLibrary library_;
    clsSocket socket_;
    sockaddr_in address_{};
    clsProcessCache processes_;
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

} // namespace tool::logpan
