// Takes datagrams off a loopback socket as fast as they come, in a thread of its own.
#ifndef LOGPAN_DATAGRAM_RECEIVER_H
#define LOGPAN_DATAGRAM_RECEIVER_H

#include "store.h"

#include <winsock2.h>

#include <atomic>
#include <thread>

namespace tool::logpan {

class DatagramReceiver {
  public:
    // Throws Failure when there is no socket to be had.
    DatagramReceiver(Store& store, std::uint32_t largestDatagram);
    ~DatagramReceiver();
    DatagramReceiver(const DatagramReceiver&) = delete;
    DatagramReceiver& operator=(const DatagramReceiver&) = delete;

    std::uint16_t port() const { return ntohs(address_.sin_port); }

  private:
    class Library {
      public:
        Library();
        ~Library() { WSACleanup(); }
        Library(const Library&) = delete;
        Library& operator=(const Library&) = delete;
    };
    class Socket {
      public:
        Socket();
        ~Socket() { closesocket(socket_); }
        Socket(const Socket&) = delete;
        Socket& operator=(const Socket&) = delete;
        SOCKET get() const { return socket_; }

      private:
        SOCKET socket_;
    };

    void receive();

    Store& store_;
    std::uint32_t largestDatagram_;
    Library library_;
    Socket socket_;
    sockaddr_in address_{};
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

} // namespace tool::logpan

#endif
