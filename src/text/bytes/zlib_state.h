// zlib's states, owned, for the files that deflate and inflate.
#pragma once

#include "text/bytes/deflate.h"

#include <new>
#include <zlib.h>

namespace tvut {

constexpr int defaultMemoryLevel = 8; // zlib's own; it has no name there

// The negative sign asks for a stream without header and check value.
constexpr int WindowBits(Wrapping wrapping) {
    return wrapping == Wrapping::zlib ? MAX_WBITS : -MAX_WBITS;
}

inline void SetInput(z_stream& stream, const void* data, std::size_t bytes) {
    stream.next_in = static_cast<Bytef*>(const_cast<void*>(data)); // zlib only reads it
    stream.avail_in = static_cast<uInt>(bytes);
}

inline void SetOutput(z_stream& stream, void* room, std::size_t bytes) {
    stream.next_out = static_cast<Bytef*>(room);
    stream.avail_out = static_cast<uInt>(bytes);
}

struct scDeflateState : z_stream {
    explicit scDeflateState(Wrapping wrapping) : z_stream{} {
        if (deflateInit2(this, Z_DEFAULT_COMPRESSION, Z_DEFLATED, WindowBits(wrapping), defaultMemoryLevel,
                         Z_DEFAULT_STRATEGY) != Z_OK)
            throw std::bad_alloc();
    }
    scDeflateState(const scDeflateState&) = delete;
    scDeflateState& operator=(const scDeflateState&) = delete;
    ~scDeflateState() { deflateEnd(this); }
};

struct scInflateState : z_stream {
    explicit scInflateState(Wrapping wrapping) : z_stream{} {
        if (inflateInit2(this, WindowBits(wrapping)) != Z_OK)
            throw std::bad_alloc();
    }
    scInflateState(const scInflateState&) = delete;
    scInflateState& operator=(const scInflateState&) = delete;
    ~scInflateState() { inflateEnd(this); }
};

} // namespace tvut
