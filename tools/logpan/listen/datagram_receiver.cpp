// The socket and its loop.
#include "datagram_receiver.h"

#include "datagram.h"
#include "exit_code.h"
#include "system_reason.h"

#include <new>
#include <vector>

namespace tool::logpan {

namespace {

constexpr std::size_t largestUnits = 32 * 1024;
constexpr int receiveBuffer = 8 * 1024 * 1024; // the system may give less

void check(bool good, const char* what) {
    if (!good)
        throw Failure{ExitCode::cannotOpen, "",
                      std::string{what} + ": " + systemReason(static_cast<unsigned long>(WSAGetLastError()))};
}

} // namespace

DatagramReceiver::Library::Library() {
    WSADATA facts;
    WSASetLastError(WSAStartup(MAKEWORD(2, 2), &facts));
    check(WSAGetLastError() == 0, "no sockets on this machine");
}

DatagramReceiver::Socket::Socket() : socket_(socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP)) {
    check(socket_ != INVALID_SOCKET, "cannot make a socket");
}

DatagramReceiver::DatagramReceiver(Store& store, std::uint32_t largestDatagram)
    : store_(store), largestDatagram_(largestDatagram) {
    setsockopt(socket_.get(), SOL_SOCKET, SO_RCVBUF, reinterpret_cast<const char*>(&receiveBuffer),
               sizeof receiveBuffer);
    address_.sin_family = AF_INET;
    address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int size = sizeof address_;
    check(bind(socket_.get(), reinterpret_cast<sockaddr*>(&address_), size) == 0, "cannot use a socket");
    check(getsockname(socket_.get(), reinterpret_cast<sockaddr*>(&address_), &size) == 0,
          "cannot use a socket");
    thread_ = std::thread{[this] { receive(); }};
}

DatagramReceiver::~DatagramReceiver() {
    stopping_ = true;
    // Wakes the thread; where the buffer has no room for it, the thread is not asleep.
    sendto(socket_.get(), "", 0, 0, reinterpret_cast<const sockaddr*>(&address_), sizeof address_);
    thread_.join();
}

void DatagramReceiver::receive() {
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_ABOVE_NORMAL); // what is not taken in time is lost
    static wchar_t units[largestUnits];
    while (!stopping_) {
        sockaddr_in from{};
        int size = sizeof from;
        const int bytes = recvfrom(socket_.get(), reinterpret_cast<char*>(units), sizeof units, 0,
                                   reinterpret_cast<sockaddr*>(&from), &size);
        if (stopping_)
            return;
        try {
            const std::optional<Packet> packet =
                bytes < 0 ? std::nullopt
                          : parseDatagram(units, static_cast<std::size_t>(bytes), largestDatagram_);
            if (packet)
                store_.add(ntohs(from.sin_port), *packet);
            else
                store_.refuse();
        } catch (const std::bad_alloc&) {
            store_.refuse();
        }
    }
}

} // namespace tool::logpan
