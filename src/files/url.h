// Addresses that a file may be fetched from: http and https of RFC 3986, as strictly as it takes for all who
// read one to see the same host in it.
#pragma once

#include "runtime/diagnostics.h"

#include <cstddef>
#include <string_view>

namespace tvut {

constexpr std::size_t longestUrl = 2083; // characters

enum class UrlScheme { none, http, https };

// The scheme of an address, in any case; none for whatever is not to be asked for: no http or https, no host,
// a user's name or password, a control character, a blank, a backslash before the query, half a surrogate
// pair, a port that is no number, too many characters.
UrlScheme UtilpUrlScheme(std::u16string_view url) noexcept;

// Puts an address, or what should be one, into a line: without what may be secret, which is a user's name and
// password and all from the first ? or # on, and without what would end the line.
void UtilpPutUrl(clsDiagnosticLine& line, std::u16string_view url) noexcept;

} // namespace tvut
