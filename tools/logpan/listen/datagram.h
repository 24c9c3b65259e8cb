// The bytes of a datagram as a packet.
#pragma once

#include "packet.h"

#include <optional>
#include <span>

namespace tool::logpan {

// The units hold the datagram, bytes says how long it is; the packet's texts lie in it. Nothing for what is
// no line: shorter than its header, a header size or kind of something else. A text length that lies is
// corrected to what is there. largest is the published limit, which shows whether the datagram is full.
std::optional<scPacket> ParseDatagram(std::span<const wchar_t> units, std::size_t bytes, std::size_t largest);

} // namespace tool::logpan
