// Sends to a viewer what a program would, and what none should.
#pragma once

#include "support/loopback_socket.h"

#include <tvut22/viewer.h>

#include <string_view>

namespace logpan_test {

// What the viewer has published by now; all zeros when nothing is.
LogpanSharedInfo PublishedInfo();

// A header like the library's own writer makes: Wednesday 2024-01-31 12:34:56.789, thread 0x1234, CPU 1.
LogpanPacketHeader HeaderOf(const wchar_t* tag, char sequence);

// A socket, and with it a port that the viewer tells senders by.
class clsSender : public testing_prof::clsLoopbackSocket {
  public:
    explicit clsSender(UINT32 port) : viewer_(AddressOf(port)) {}

    void SendBytes(const void* bytes, std::size_t size) const;
    // The header with the text after it, and the text's length in the header.
    void Send(LogpanPacketHeader header, std::wstring_view text) const;
    // The same, with whatever length the header says.
    void SendAsIs(const LogpanPacketHeader& header, std::wstring_view text) const;
    // A whole line with that last digit of its number.
    void Line(std::wstring_view text, char sequence) const { Send(HeaderOf(L"KX32UTIL", sequence), text); }

  private:
    sockaddr_in viewer_;
};

bool SendToMailslot(std::string_view message);

} // namespace logpan_test
