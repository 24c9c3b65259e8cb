#include "prof/formats/compression.h"

#include "prof/formats/load_error.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <zlib.h>

namespace tvut {

namespace {

constexpr std::string_view magic = "ZZmQ";
constexpr std::size_t stepBytes = 64 * 1024;

struct scInflater : z_stream {
    scInflater() : z_stream{} {
        if (inflateInit(this) != Z_OK)
            throw std::bad_alloc();
    }
    scInflater(const scInflater&) = delete;
    scInflater& operator=(const scInflater&) = delete;
    ~scInflater() { inflateEnd(this); }
};

Bytef* Input(const void* data) {
    return static_cast<Bytef*>(const_cast<void*>(data));
}

} // namespace

bool ProfpIsCompressed(std::string_view bytes) {
    return bytes.starts_with(magic);
}

clsInputText ProfpInflate(std::string_view wrapped, std::size_t limit) {
    wrapped.remove_prefix(magic.size());
    scInflater inflater;
    inflater.next_in = Input(wrapped.data());
    inflater.avail_in = static_cast<uInt>(wrapped.size());
    std::size_t capacity = std::min(limit, std::max(stepBytes, wrapped.size() * 4)) + 1;
    auto unfolded = clsInputText::Allocate(capacity);
    for (;;) {
        const std::size_t filled = inflater.total_out;
        inflater.next_out = reinterpret_cast<Bytef*>(unfolded.get()) + filled;
        inflater.avail_out = static_cast<uInt>(capacity - filled);
        const int result = inflate(&inflater, Z_NO_FLUSH);
        if (result == Z_MEM_ERROR)
            throw std::bad_alloc();
        if (inflater.total_out > limit)
            throw clsLoadException(0, u"prof::compressed: unfolds to more than 256 MiB");
        if (result == Z_STREAM_END)
            return {std::move(unfolded), inflater.total_out};
        if (result != Z_OK || inflater.avail_out != 0)
            throw clsLoadException(0, u"prof::compressed: data damaged or cut off");
        const std::size_t larger = std::min(limit + 1, capacity * 2);
        auto copy = clsInputText::Allocate(larger);
        std::memcpy(copy.get(), unfolded.get(), capacity);
        unfolded = std::move(copy);
        capacity = larger;
    }
}

struct clsCompressingSink::scState : z_stream {
    scState() : z_stream{} {
        if (deflateInit(this, Z_DEFAULT_COMPRESSION) != Z_OK)
            throw std::bad_alloc();
    }
    scState(const scState&) = delete;
    scState& operator=(const scState&) = delete;
    ~scState() { deflateEnd(this); }

    std::array<unsigned char, stepBytes> block;
};

clsCompressingSink::clsCompressingSink(clsByteSink& target)
    : target_(target), state_(std::make_unique<scState>()) {
    target_.Write(magic.data(), magic.size());
}

clsCompressingSink::~clsCompressingSink() = default;

void clsCompressingSink::Write(const void* data, std::size_t bytes) {
    state_->next_in = Input(data);
    state_->avail_in = static_cast<uInt>(bytes);
    Deflate(Z_NO_FLUSH);
}

void clsCompressingSink::Finish() {
    Deflate(Z_FINISH);
    target_.Finish();
}

void clsCompressingSink::Deflate(int flush) {
    do {
        state_->next_out = state_->block.data();
        state_->avail_out = static_cast<uInt>(state_->block.size());
        deflate(state_.get(), flush); // fails for a misused state only
        target_.Write(state_->block.data(), state_->block.size() - state_->avail_out);
    } while (state_->avail_out == 0);
}

} // namespace tvut
