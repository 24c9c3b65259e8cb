// zlib works from one buffer into another. Its state stands apart from the classes, so that nobody else needs
// zlib's header. The sink hands on full blocks only: what is compressed is mostly small, and targets like few
// calls.
#include "text/bytes/deflate.h"

#include "text/bytes/zlib_state.h"

#include <array>

namespace tvut {

namespace {

constexpr std::size_t stepBytes = 64 * 1024;

} // namespace

struct clsDeflatingSink::scState : scDeflateState {
    scState() : scDeflateState(Wrapping::zlib) { SetOutput(*this, block.data(), block.size()); }

    std::array<unsigned char, stepBytes> block;
};

clsDeflatingSink::clsDeflatingSink(clsByteSink& target)
    : target_(target), state_(std::make_unique<scState>()) {}

clsDeflatingSink::~clsDeflatingSink() = default;

void clsDeflatingSink::Write(const void* data, std::size_t bytes) {
    SetInput(*state_, data, bytes);
    Deflate(Z_NO_FLUSH);
}

void clsDeflatingSink::Finish() {
    Deflate(Z_FINISH);
    target_.Write(state_->block.data(), state_->block.size() - state_->avail_out);
    target_.Finish();
}

void clsDeflatingSink::Deflate(int flush) {
    for (;;) {
        deflate(state_.get(), flush); // fails for a misused state only
        if (state_->avail_out != 0)
            return;
        target_.Write(state_->block.data(), state_->block.size());
        SetOutput(*state_, state_->block.data(), state_->block.size());
    }
}

clsInflater::clsInflater(Wrapping wrapping) : state_(std::make_unique<scInflateState>(wrapping)) {}

clsInflater::~clsInflater() = default;

void clsInflater::Restart() noexcept {
    inflateReset(state_.get());
    SetInput(*state_, nullptr, 0);
    now_ = State::running;
}

void clsInflater::Presume(const void* dictionary, std::size_t bytes) {
    if (inflateSetDictionary(state_.get(), static_cast<const Bytef*>(dictionary), static_cast<uInt>(bytes)) !=
        Z_OK)
        throw std::bad_alloc();
}

void clsInflater::Feed(const void* data, std::size_t bytes) {
    SetInput(*state_, data, bytes);
}

std::size_t clsInflater::Left() const {
    return state_->avail_in;
}

std::size_t clsInflater::Unfold(void* room, std::size_t bytes) {
    if (now_ != State::running)
        return 0;
    SetOutput(*state_, room, bytes);
    const int result = inflate(state_.get(), Z_NO_FLUSH);
    if (result == Z_MEM_ERROR)
        throw std::bad_alloc();
    if (result == Z_STREAM_END)
        now_ = State::ended;
    else if (result != Z_OK && result != Z_BUF_ERROR) // which means that more is wanted, of either
        now_ = State::damaged;
    return bytes - state_->avail_out;
}

} // namespace tvut
