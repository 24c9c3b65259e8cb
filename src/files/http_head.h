// What the head of a server's answer says of the length of its body (RFC 9112, 6).
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tvut {

struct scHttpHead {
    // Of Content-Length: the largest where there are several, the largest number of 64 bits for a larger one,
    // none where one is no number.
    std::optional<std::uint64_t> length;
    bool isEncoded = false; // packed by the server: the length is that of other bytes than those that come
    bool isChunked = false; // its end is told in the body, which makes Content-Length void
};

// Takes the head's lines, of which the first is the status. A line that begins with "HTTP/" begins a head
// anew: what came before belongs to an answer before.
scHttpHead UtilpReadHttpHead(std::u16string_view head) noexcept;

} // namespace tvut
