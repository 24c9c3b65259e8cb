// The socket and its loop.
//
// The system drops what does not fit into the socket's buffer, so that is large, the thread comes before the
// window's, and a datagram is parsed where it arrived. A blocking read has no end of its own: the destructor
// sends itself an empty datagram.
#include "datagram_receiver.h"

#include "datagram.h"
#include "exit_code.h"
#include "sender_process.h"
#include "system_reason.h"

#include <new>
#include <vector>

namespace tool::logpan {

namespace {

constexpr std::size_t largestUnits = 32 * 1024;
constexpr int receiveBuffer = 8 * 1024 * 1024; // the system may give less

void Check(bool good, const char* what) {
    if (!good)
        throw scFailure{ExitCode::cannotOpen, "",
                        std::string{what} + ": " +
                            SystemReason(static_cast<unsigned long>(WSAGetLastError()))};
}

} // namespace

clsDatagramReceiver::clsLibrary::clsLibrary() {
    WSADATA facts;
    WSASetLastError(WSAStartup(MAKEWORD(2, 2), &facts));
    Check(WSAGetLastError() == 0, "no sockets on this machine");
}

clsDatagramReceiver::clsSocket::clsSocket() : socket_(socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP)) {
    Check(socket_ != INVALID_SOCKET, "cannot make a socket");
}

clsDatagramReceiver::clsDatagramReceiver(clsStore& store, std::uint32_t largestDatagram)
    : store_(store), largestDatagram_(largestDatagram), processes_(ProcessOfPort) {
    setsockopt(socket_.Get(), SOL_SOCKET, SO_RCVBUF, reinterpret_cast<const char*>(&receiveBuffer),
               sizeof receiveBuffer);
    address_.sin_family = AF_INET;
    address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int size = sizeof address_;
    Check(bind(socket_.Get(), reinterpret_cast<sockaddr*>(&address_), size) == 0, "cannot use a socket");
    Check(getsockname(socket_.Get(), reinterpret_cast<sockaddr*>(&address_), &size) == 0,
          "cannot use a socket");
    thread_ = std::thread{[this] { Receive(); }};
}

clsDatagramReceiver::~clsDatagramReceiver() {
    stopping_ = true;
    // Wakes the thread; where the buffer has no room for it, the thread is not asleep.
    sendto(socket_.Get(), "", 0, 0, reinterpret_cast<const sockaddr*>(&address_), sizeof address_);
    thread_.join();
}

void clsDatagramReceiver::Receive() {
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_ABOVE_NORMAL); // what is not taken in time is lost
    static wchar_t units[largestUnits];
    while (!stopping_) {
        sockaddr_in from{};
        int size = sizeof from;
        const int bytes = recvfrom(socket_.Get(), reinterpret_cast<char*>(units), sizeof units, 0,
                                   reinterpret_cast<sockaddr*>(&from), &size);
        if (stopping_)
            return;
        try {
            std::optional<scPacket> packet =
                bytes < 0 ? std::nullopt
                          : ParseDatagram(units, static_cast<std::size_t>(bytes), largestDatagram_);
            if (packet) {
                const std::uint16_t port = ntohs(from.sin_port);
                packet->process = processes_.Of(port, clsStore::Clock::now());
                store_.Add(port, *packet);
            } else {
                store_.Refuse();
            }
        } catch (const std::bad_alloc&) {
            store_.Refuse();
        }
    }
}

} // namespace tool::logpan
