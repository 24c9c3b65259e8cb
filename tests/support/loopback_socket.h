// A datagram socket on the loopback address, at a port of its own.
#pragma once

#include <winsock2.h>

namespace testing_prof {

class clsLoopbackSocket {
  public:
    clsLoopbackSocket() {
        WSADATA facts;
        WSAStartup(MAKEWORD(2, 2), &facts);
        socket_ = socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
        sockaddr_in own = AddressOf(0);
        int size = sizeof own;
        (void)bind(socket_, reinterpret_cast<sockaddr*>(&own), size);
        getsockname(socket_, reinterpret_cast<sockaddr*>(&own), &size);
        port_ = ntohs(own.sin_port);
    }
    ~clsLoopbackSocket() {
        closesocket(socket_);
        WSACleanup();
    }
    clsLoopbackSocket(const clsLoopbackSocket&) = delete;
    clsLoopbackSocket& operator=(const clsLoopbackSocket&) = delete;

    UINT16 Port() const { return port_; }

    static sockaddr_in AddressOf(unsigned port) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<u_short>(port));
        return address;
    }

  protected:
    SOCKET socket_;

  private:
    UINT16 port_;
};

} // namespace testing_prof
