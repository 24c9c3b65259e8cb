#include "platform/stream.h"

#include "platform/exception.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::size_t largestTransfer = 16 * 1024 * 1024;

bool SeekToStart(IStream* stream) {
    return SUCCEEDED(stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr));
}

ULARGE_INTEGER Size(std::uint64_t bytes) {
    ULARGE_INTEGER size;
    size.QuadPart = bytes;
    return size;
}

} // namespace

clsStreamSource::clsStreamSource(IStream* stream) : stream_(stream) {
    SeekToStart(stream_);
}

std::uint64_t clsStreamSource::SizeHint() {
    STATSTG status{};
    return SUCCEEDED(stream_->Stat(&status, STATFLAG_NONAME)) ? status.cbSize.QuadPart : 0;
}

// A stream may say S_FALSE or S_OK at its end, and may say S_FALSE with some bytes read.
std::size_t clsStreamSource::Read(void* buffer, std::size_t bytes) {
    ULONG read = 0;
    const auto wanted = static_cast<ULONG>(std::min(bytes, largestTransfer));
    if (FAILED(stream_->Read(buffer, wanted, &read)) || read > wanted)
        throw clsException("stream cannot be read");
    return read;
}

clsStreamSink::clsStreamSink(IStream* stream, Contents contents)
    : stream_(stream), fromStart_(contents == Contents::areReplaced && SeekToStart(stream)) {}

void clsStreamSink::Extend(std::uint64_t bytes) {
    if (fromStart_ && stream_->SetSize(Size(bytes)) == STG_E_MEDIUMFULL)
        throw clsException("stream cannot be extended");
}

void clsStreamSink::Write(const void* data, std::size_t bytes) {
    const char* next = static_cast<const char*>(data);
    while (bytes != 0) {
        ULONG written = 0;
        const auto wanted = static_cast<ULONG>(std::min(bytes, largestTransfer));
        if (FAILED(stream_->Write(next, wanted, &written)) || written == 0 || written > wanted)
            throw clsException("stream cannot be written");
        next += written;
        bytes -= written;
        written_ += written;
    }
}

void clsStreamSink::Finish() {
    if (fromStart_)
        stream_->SetSize(Size(written_));
}

} // namespace tvut
