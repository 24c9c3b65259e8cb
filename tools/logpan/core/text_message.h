// A line of the older transport: everything is in its text.
#ifndef LOGPAN_TEXT_MESSAGE_H
#define LOGPAN_TEXT_MESSAGE_H

#include "line.h"

#include <optional>
#include <string_view>

namespace tool::logpan {

// A message of this length may go on in the next one.
inline constexpr std::size_t longestTextMessage = 510;

// Takes a message apart that begins like "[KX32UTIL: ]12:34:56.789 0000abcd/01 7   text", or with
// "34:56.789" from a sender that counts from its start. Nothing for any other message.
std::optional<Line> parseTextMessage(std::wstring_view message);

} // namespace tool::logpan

#endif
