// Streams are callers' code, and what they report is checked: a count that is larger than what was asked
// for would lead out of the buffer, and a count of nothing would never end.
#include "platform/stream.h"

#include "platform/exception.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::size_t largestTransfer = 16 * 1024 * 1024;

// The codes of storage, like those of Win32, are the system's error numbers within a facility.
void Require(HRESULT result, const char* what, unsigned long otherwise) {
    if (SUCCEEDED(result))
        return;
    const bool isSystems =
        HRESULT_FACILITY(result) == FACILITY_WIN32 || HRESULT_FACILITY(result) == FACILITY_STORAGE;
    throw clsException(what, isSystems ? HRESULT_CODE(result) : otherwise);
}

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
    Require(stream_->Read(buffer, wanted, &read), "stream cannot be read", reason::readFault);
    if (read > wanted)
        throw clsException("stream says it read more than it was asked for", reason::readFault);
    return read;
}

clsStreamSink::clsStreamSink(IStream* stream, Contents contents) : stream_(stream), contents_(contents) {}

void clsStreamSink::Extend(std::uint64_t bytes) {
    fromStart_ = contents_ == Contents::areReplaced && SeekToStart(stream_);
    if (!fromStart_ || bytes == unknownLength)
        return;
    const HRESULT result = stream_->SetSize(Size(bytes));
    if (result == STG_E_MEDIUMFULL) // a stream that cannot change its size says so in other words
        Require(result, "stream cannot be extended", reason::writeFault);
}

void clsStreamSink::Write(const void* data, std::size_t bytes) {
    const char* next = static_cast<const char*>(data);
    while (bytes != 0) {
        ULONG written = 0;
        const auto wanted = static_cast<ULONG>(std::min(bytes, largestTransfer));
        Require(stream_->Write(next, wanted, &written), "stream cannot be written", reason::writeFault);
        if (written == 0 || written > wanted)
            throw clsException("stream takes no bytes, or more than there are", reason::writeFault);
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
