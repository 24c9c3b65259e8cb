// The bytes of many names, in blocks: no name is moved, and growing copies nothing.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace tvut {

class clsNameArena {
  public:
    using Place = std::uint32_t;

    // Keeps the pieces side by side. Throws std::bad_alloc.
    template <class... Pieces>
    Place Add(const Pieces&... pieces) {
        const std::size_t bytes = (std::string_view(pieces).size() + ...);
        if (blocks_.empty() || used_ + bytes > blockBytes)
            AddBlock(bytes);
        const auto place = static_cast<Place>((blocks_.size() - 1) * blockBytes + used_);
        char* to = blocks_.back().get() + used_;
        ((to = std::ranges::copy(std::string_view(pieces), to).out), ...);
        used_ += bytes;
        return place;
    }

    std::string_view View(Place place, std::size_t bytes) const {
        return {blocks_[place / blockBytes].get() + place % blockBytes, bytes};
    }

    // Gives up what was added since a mark was made.
    struct scMark {
        std::size_t blocks, used;
    };
    scMark Mark() const { return {blocks_.size(), used_}; }
    void Cut(const scMark& mark) {
        blocks_.resize(mark.blocks);
        used_ = mark.used;
    }

  private:
    static constexpr std::size_t blockBytes = 16 * 1024;

    // A name longer than a block has one of its own.
    void AddBlock(std::size_t bytes) {
        blocks_.push_back(std::make_unique_for_overwrite<char[]>(std::max(bytes, blockBytes)));
        used_ = 0;
    }

    std::vector<std::unique_ptr<char[]>> blocks_;
    std::size_t used_ = 0; // of the last block
};

} // namespace tvut
