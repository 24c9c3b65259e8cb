// A viewer made of its parts: what it publishes, and the socket that it reads.
#pragma once

#include "loopback_socket.h"
#include "shared_view.h"

#include <gtest/gtest.h>
#include <tvut22/viewer.h>

#include <cstring>
#include <vector>

namespace testing_prof {

struct scPacket {
    LogpanPacketHeader header;
    std::wstring text;
    UINT16 senderPort;
};

class clsReceiver : public clsLoopbackSocket {
  public:
    clsReceiver() {
        const DWORD patience = 20000; // milliseconds: long before a test hangs
        const int room = 8 << 20;
        setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&patience),
                   sizeof patience);
        setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, reinterpret_cast<const char*>(&room), sizeof room);
    }

    // Waits for the next packet, and holds it against what every packet is.
    scPacket Next() const {
        std::vector<char> bytes(65536);
        sockaddr_in from{};
        int size = sizeof from;
        const int length = recvfrom(socket_, bytes.data(), static_cast<int>(bytes.size()), 0,
                                    reinterpret_cast<sockaddr*>(&from), &size);
        scPacket packet{};
        packet.senderPort = ntohs(from.sin_port);
        if (length < static_cast<int>(sizeof packet.header)) {
            ADD_FAILURE() << "no packet: " << length;
            return packet;
        }
        std::memcpy(&packet.header, bytes.data(), sizeof packet.header);
        EXPECT_EQ(packet.header.headerSize, 112u);
        EXPECT_EQ(packet.header.textBytes, static_cast<UINT32>(length) - 112);
        packet.text.resize(packet.header.textBytes / sizeof(wchar_t));
        std::memcpy(packet.text.data(), bytes.data() + 112, packet.header.textBytes);
        return packet;
    }
};

// The shared info under one of its names.
class clsPublishedInfo : public clsSharedView<LogpanSharedInfo> {
  public:
    explicit clsPublishedInfo(const wchar_t* name, const LogpanSharedInfo& info) : clsSharedView(name, 64) {
        **this = info;
    }
    ~clsPublishedInfo() { (*this)->mask = 0; } // somebody may still have it mapped
};

} // namespace testing_prof
