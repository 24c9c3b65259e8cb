// The size is the position of the stream's end: what Stat says of a stream need not be so. A read may give
// fewer bytes than there are; only one that gives none has reached the end.
#include "platform/random_stream.h"

#include "platform/exception.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::size_t largestTransfer = 16 * 1024 * 1024;

// The codes of storage, like those of Win32, are the system's error numbers within a facility.
void Require(HRESULT result, const char* what) {
    if (SUCCEEDED(result))
        return;
    const bool isSystems =
        HRESULT_FACILITY(result) == FACILITY_WIN32 || HRESULT_FACILITY(result) == FACILITY_STORAGE;
    throw clsException(what, isSystems ? HRESULT_CODE(result) : reason::readFault);
}

} // namespace

clsRandomStream::clsRandomStream(IStream* stream)
    : stream_(stream), stood_(Seek(0, STREAM_SEEK_CUR)), size_(Seek(0, STREAM_SEEK_END)) {}

clsRandomStream::~clsRandomStream() {
    LARGE_INTEGER place;
    place.QuadPart = static_cast<LONGLONG>(stood_);
    stream_->Seek(place, STREAM_SEEK_SET, nullptr);
}

std::size_t clsRandomStream::ReadAt(std::uint64_t position, void* buffer, std::size_t bytes) {
    Seek(position, STREAM_SEEK_SET);
    std::size_t done = 0;
    while (done < bytes) {
        ULONG read = 0;
        const auto wanted = static_cast<ULONG>(std::min(bytes - done, largestTransfer));
        Require(stream_->Read(static_cast<char*>(buffer) + done, wanted, &read), "stream cannot be read");
        if (read > wanted)
            throw clsException("stream says it read more than it was asked for", reason::readFault);
        if (read == 0)
            break;
        done += read;
    }
    return done;
}

std::uint64_t clsRandomStream::Seek(std::uint64_t position, DWORD origin) {
    LARGE_INTEGER place;
    place.QuadPart = static_cast<LONGLONG>(position);
    ULARGE_INTEGER reached{};
    Require(stream_->Seek(place, origin, &reached), "stream cannot seek");
    return reached.QuadPart;
}

} // namespace tvut
