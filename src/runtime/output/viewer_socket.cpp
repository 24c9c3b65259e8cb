// The socket library's header has to come before the one that all others include.
#include <winsock2.h>

#include "runtime/output/viewer_socket.h"

#include "platform/loader.h"
#include "platform/system_error.h"
#include "runtime/output/debugger.h"

#include <ws2tcpip.h>

namespace tvut {

namespace {

void Report(std::u16string_view what, int error, std::u16string_view end) noexcept {
    UtilpWriteToDebugger(clsDiagnosticLine()
                             .Put(what)
                             .Put(clsSystemErrorText(static_cast<unsigned long>(error)).View())
                             .Put(end));
}

constexpr DWORD retryInterval = 1000; // milliseconds between attempts to open the socket

// Milliseconds; never 0, which stands for none.
DWORD OddTicks() noexcept {
    return GetTickCount() | 1;
}

// Known before it is asked for: another copy of the writer may have opened the socket.
in_addr g_loopback = {{{127, 0, 0, 1}}};

// The system's set-up may have moved the name, but lines never leave the machine.
bool IsLoopback(const in_addr& address) noexcept {
    return (ntohl(address.s_addr) >> 24) == 127;
}

void ResolveLoopback() noexcept {
    ADDRINFOW wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_DGRAM;
    ADDRINFOW* found = nullptr;
    if (const int error = GetAddrInfoW(L"localhost", nullptr, &wanted, &found); error != 0) {
        Report(u"GetAddrInfo() returned ", error, u"\n");
        return;
    }
    if (found && found->ai_addrlen == sizeof(sockaddr_in)) {
        const in_addr& address = reinterpret_cast<const sockaddr_in*>(found->ai_addr)->sin_addr;
        if (IsLoopback(address))
            g_loopback = address;
    }
    FreeAddrInfoW(found);
}

std::int32_t MakeSocket() noexcept {
    const SOCKET made = socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    if (made == INVALID_SOCKET) {
        Report(u"clsViewerSocket::Open: socket() returned ", WSAGetLastError(), u"\n");
        return 0;
    }
    u_long doNotWait = 1;
    ioctlsocket(made, FIONBIO, &doNotWait);
    return static_cast<std::int32_t>(made);
}

SOCKET SocketOf(std::int32_t kept) noexcept {
    return static_cast<SOCKET>(static_cast<std::uint32_t>(kept));
}

void EndLibrary() noexcept {
    if (WSACleanup() != 0)
        Report(u"clsViewerSocket::Close: WSACleanup() returned '", WSAGetLastError(), u"'\n");
}

void ReportSend(int result, DWORD sent, DWORD wanted) noexcept {
    if (!UtilpIsDeveloper())
        return;
    if (result != 0)
        Report(u"clsViewerSocket::Send: sendto() returned '", WSAGetLastError(), u"'\n");
    else
        UtilpWriteToDebugger(clsDiagnosticLine()
                                 .Put(u"clsViewerSocket::Send: sendto() did only send ")
                                 .Put(static_cast<std::int32_t>(sent))
                                 .Put(u" out of ")
                                 .Put(static_cast<std::int32_t>(wanted))
                                 .Put(u" bytes\n"));
}

} // namespace

void scTakenSocketPolicy::Close(Value value) noexcept {
    closesocket(SocketOf(value));
    EndLibrary();
}

// Lines are sent under the writer's lock, where nothing may be bound any more: a socket that another copy of
// the library has opened finds this one's calls not bound yet, and any of them binds all.
void clsViewerSocket::Open() noexcept {
    if (IsOpen()) {
        htons(0);
        return;
    }
    failedAt_ = !PlatformProcessEnds() && StartAndMake() ? 0 : OddTicks();
}

bool clsViewerSocket::StartAndMake() noexcept {
    WSADATA data;
    if (const int error = WSAStartup(MAKEWORD(2, 2), &data); error != 0) {
        Report(u"clsViewerSocket::Open: WSAStartup() returned '", error, u"'\n");
        return false;
    }
    const std::int32_t made = MakeSocket();
    if (made == 0) {
        EndLibrary();
        return false;
    }
    ResolveLoopback();
    clsTakenSocket unneeded(made);
    if (shared_.OfferSocket(made)) // otherwise another thread was faster
        unneeded.Take();
    return true;
}

void clsViewerSocket::Reopen() noexcept {
    const DWORD failedAt = failedAt_;
    if (failedAt == 0 || OddTicks() - failedAt >= retryInterval)
        Open();
}

void clsViewerSocket::Renew() noexcept {
    const std::int32_t made = IsOpen() ? MakeSocket() : 0;
    if (made == 0)
        return;
    if (const std::int32_t old = shared_.ExchangeSocket(made); old != 0)
        closesocket(SocketOf(old));
}

void clsViewerSocket::Leave() noexcept {
    if (!shared_.IsOpen())
        return;
    const std::int32_t socket = shared_.Socket();
    shared_.Close();
    if (socket != 0 && !clsAppLocalData::Exists())
        closesocket(SocketOf(socket));
}

void clsViewerSocket::Send(std::uint16_t port, const void* header, std::size_t headerBytes, const void* text,
                           std::size_t textBytes) noexcept {
    WSABUF pieces[2];
    pieces[0].buf = static_cast<char*>(const_cast<void*>(header));
    pieces[0].len = static_cast<ULONG>(headerBytes);
    pieces[1].buf = static_cast<char*>(const_cast<void*>(text));
    pieces[1].len = static_cast<ULONG>(textBytes);
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(port);
    to.sin_addr = g_loopback;
    DWORD sent = 0;
    const int result = WSASendTo(SocketOf(shared_.Socket()), pieces, 2, &sent, 0,
                                 reinterpret_cast<const sockaddr*>(&to), sizeof to, nullptr, nullptr);
    if (result != 0 || sent != headerBytes + textBytes)
        ReportSend(result, sent, pieces[0].len + pieces[1].len);
}

} // namespace tvut
