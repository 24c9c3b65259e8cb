// A line of the older transport: everything is in its text.
#pragma once

#include "line.h"

#include <optional>
#include <string_view>

namespace tool::logpan {

// A message of this length may go on in the next one.
inline constexpr std::size_t longestTextMessage = 510;

// Takes a message apart that begins like "[KX32UTIL: ]12:34:56.789 0000abcd/01 7   text", or with
// "34:56.789" from a sender that counts from its start. Nothing for any other message.
std::optional<scLine> ParseTextMessage(std::wstring_view message);

} // namespace tool::logpan
