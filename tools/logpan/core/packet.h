// One datagram, decoded: a line or a piece of one.
#pragma once

#include "line.h"

#include <string_view>

namespace tool::logpan {

struct scPacket {
    scStamp time;
    std::wstring_view module;
    std::uint32_t thread = 0;
    std::uint32_t processor = 0;
    std::uint32_t sequence = 0;
    std::wstring_view text;
    ProcessPtr process;
    bool full = false; // no character more fits into a datagram: the line may go on in the next one
};

} // namespace tool::logpan
