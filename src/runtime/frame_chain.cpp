// A walk collects what is not as it was until it comes to a frame from which all is. That part moves to its
// new place among the links; where the chain is longer than there was room for before, the walk goes on.
#include "runtime/frame_chain.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace tvut {

namespace {

// Stacks grow downwards.
bool IsFrame(const scFrameLink* frame, const scFrameLink* below, const void* stackEnd) noexcept {
    const auto place = reinterpret_cast<std::uintptr_t>(frame);
    return place > reinterpret_cast<std::uintptr_t>(below) && place % alignof(scFrameLink) == 0 &&
           place <= reinterpret_cast<std::uintptr_t>(stackEnd) - sizeof(scFrameLink);
}

std::uintptr_t Difference(const void* a, const void* b) noexcept {
    return reinterpret_cast<std::uintptr_t>(a) ^ reinterpret_cast<std::uintptr_t>(b);
}

} // namespace

std::span<const scFrameLink> clsFrameChain::Walk(const scFrameLink* const first,
                                                 const void* stackEnd) noexcept {
    std::array<scFrameLink, most> others; // than those of the last walk
    std::size_t count = 0;
    std::size_t known = 0; // where the frame would be among those
    std::size_t sameFrom = most + 1;
    const scFrameLink* frame = first;
    for (const scFrameLink* below = nullptr; count != most && IsFrame(frame, below, stackEnd); ++count) {
        while (known != count_ && FrameAt(known) < frame)
            ++known;
        if (known != count_ && FrameAt(known) == frame) {
            if (sameFrom > most)
                sameFrom = SameFrom(known, stackEnd);
            if (known >= sameFrom)
                break;
        }
        others[count] = *frame;
        below = frame;
        frame = frame->next;
    }
    const bool isSame = known < count_ && known >= sameFrom && FrameAt(known) == frame;
    const std::size_t kept = isSame ? std::min(count_ - known, most - count) : 0;
    if (count != known && kept != 0)
        std::memmove(&links_[count], &links_[known], kept * sizeof links_[0]);
    std::copy_n(others.begin(), count, links_.begin());
    first_ = first;
    count_ = count + kept;
    GoOn(stackEnd);
    return std::span(links_).first(count_);
}

// Without a branch for each: what is loaded does not depend on what was found.
bool clsFrameChain::AreSame(std::size_t from) const noexcept {
    const scFrameLink* frame = FrameAt(from);
    std::uintptr_t difference = 0;
    for (const scFrameLink& link : std::span(links_).subspan(from, count_ - from)) {
        difference |= Difference(frame->next, link.next) | Difference(frame->returnsTo, link.returnsTo);
        frame = link.next;
    }
    return difference == 0;
}

// The first one, from one of this stack on, from which all are as they were; the count when none is. They
// lie above each other, so they are on this stack if the last of them is.
std::size_t clsFrameChain::SameFrom(std::size_t at, const void* stackEnd) const noexcept {
    std::size_t same = count_;
    if (!IsFrame(FrameAt(count_ - 1), nullptr, stackEnd))
        return same;
    if (AreSame(at))
        return at;
    const auto isSame = [this](std::size_t place) {
        const scFrameLink& frame = *FrameAt(place);
        return frame.next == links_[place].next && frame.returnsTo == links_[place].returnsTo;
    };
    while (same != at && isSame(same - 1))
        --same;
    return same;
}

// From where the last walk had no more room although the stack goes on.
void clsFrameChain::GoOn(const void* stackEnd) noexcept {
    while (count_ != 0 && count_ != most && IsFrame(FrameAt(count_), FrameAt(count_ - 1), stackEnd)) {
        links_[count_] = *FrameAt(count_);
        ++count_;
    }
}

} // namespace tvut
