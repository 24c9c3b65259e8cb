// What stands around a deflated stream.
#pragma once

namespace tvut {

enum class Wrapping {
    zlib, // RFC 1950: a header before the stream and a check value after it
    none, // RFC 1951: the bare stream
};

} // namespace tvut
