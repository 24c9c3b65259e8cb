#include "text/bytes/raw_deflate.h"

#include "text/bytes/zlib_state.h"

namespace tvut {

namespace {

constexpr int FlushFor(clsRawDeflater::Wanted wanted) {
    switch (wanted) {
    case clsRawDeflater::Wanted::whatComes:
        return Z_NO_FLUSH;
    case clsRawDeflater::Wanted::allFed:
        return Z_BLOCK;
    default:
        return Z_FINISH;
    }
}

} // namespace

clsRawDeflater::clsRawDeflater() : state_(std::make_unique<scDeflateState>(Wrapping::none)) {}

clsRawDeflater::~clsRawDeflater() = default;

void clsRawDeflater::Restart() noexcept {
    deflateReset(state_.get());
}

void clsRawDeflater::Feed(const void* data, std::size_t bytes) noexcept {
    SetInput(*state_, data, bytes);
}

// All is out as soon as room is left, or, of a whole stream, when zlib says so.
std::size_t clsRawDeflater::Fold(void* room, std::size_t bytes, Wanted wanted) noexcept {
    SetOutput(*state_, room, bytes);
    const int result = deflate(state_.get(), FlushFor(wanted)); // fails for a misused state only
    isMore_ = wanted == Wanted::wholeStream ? result != Z_STREAM_END : state_->avail_out == 0;
    return bytes - state_->avail_out;
}

} // namespace tvut
