// Nothing in a datagram is believed before it is compared with how much arrived.
#include "datagram.h"

#include <tvut22/viewer.h>

#include <algorithm>
#include <cstring>

namespace tool::logpan {

namespace {

constexpr std::uint32_t kindLine = 1;

scStamp StampOf(const SYSTEMTIME& time) {
    return {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond, time.wMilliseconds};
}

} // namespace

std::optional<scPacket> ParseDatagram(std::span<const wchar_t> units, std::size_t bytes,
                                      std::size_t largest) {
    static_assert(sizeof(LogpanPacketHeader) == 112 && sizeof(wchar_t) == 2);
    LogpanPacketHeader header;
    if (bytes < sizeof header)
        return std::nullopt;
    std::memcpy(&header, units.data(), sizeof header);
    // A header may have grown after its known fields.
    if (header.kind != kindLine || header.headerSize < sizeof header || header.headerSize > bytes ||
        header.headerSize % sizeof(wchar_t) != 0)
        return std::nullopt;

    const std::size_t there = std::min<std::size_t>(header.textBytes, bytes - header.headerSize);
    const auto* text = units.data() + header.headerSize / sizeof(wchar_t);
    const auto* tag = units.data() + offsetof(LogpanPacketHeader, tag) / sizeof(wchar_t);
    scPacket packet;
    packet.time = StampOf(header.time);
    packet.module = {tag, static_cast<std::size_t>(std::find(tag, tag + LOGPAN_TAG_LENGTH, L'\0') - tag)};
    packet.thread = header.thread;
    packet.processor = header.processor;
    packet.sequence = header.sequence;
    packet.text = {text, there / sizeof(wchar_t)};
    packet.full = bytes + sizeof(wchar_t) > largest;
    return packet;
}

} // namespace tool::logpan
