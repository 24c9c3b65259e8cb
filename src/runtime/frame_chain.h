// The calls that a stack holds, by the chain of its frames.
//
// Each frame leads to the next, so a plain walk takes a load for each of them, and every load waits for the
// one before it. But walks that follow each other meet mostly the same frames. Where a walk comes to a frame
// that the last one has met, what was found from there on is compared with what is there now, which the
// processor does for many at once: the same answer in a fraction of the time.
#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace tvut {

// As a call leaves it on the stack.
struct scFrameLink {
    const scFrameLink* next; // the caller's frame
    const void* returnsTo;
};

// Remembers what the last walk has met. For one thread at a time, but each on its own stack.
class clsFrameChain {
  public:
    static constexpr std::size_t most = 41;

    // What stands in a frame, which is on the stack, and in those above it. The walk ends at one that is not
    // aligned, not above the one before it, or not on the stack. The result is good until the next walk.
    std::span<const scFrameLink> Walk(const scFrameLink* frame, const void* stackEnd) noexcept;

  private:
    // The frame that a link was read from; for the count, what the last one leads to.
    const scFrameLink* FrameAt(std::size_t at) const noexcept {
        return at == 0 ? first_ : links_[at - 1].next;
    }
    bool AreSame(std::size_t from) const noexcept;
    std::size_t SameFrom(std::size_t at, const void* stackEnd) const noexcept;
    void GoOn(const void* stackEnd) noexcept;

    const scFrameLink* first_ = nullptr;
    std::size_t count_ = 0;
    std::array<scFrameLink, most> links_{}; // of frames that lie above each other
};

} // namespace tvut
