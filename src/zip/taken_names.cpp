// A table of open addressing in a power of two slots, at most three quarters full, so that every search ends
// at a free one. Nothing is ever removed. A path that is taken has a kind other than 0, so a slot of 0 is
// free.
#include "zip/taken_names.h"

#include "platform/letter_case.h"
#include "text/hash.h"

#include <utility>

namespace tvut {

namespace {

constexpr std::uint64_t kindBits = 3;
constexpr std::size_t firstCount = 64;

} // namespace

PathKey clsPathKeys::Below(PathKey folder, std::u16string_view name) {
    upper_.resize(name.size());
    PlatformToUpperCase(name, upper_.data());
    return UtilpHashAfter(folder, upper_) & ~kindBits;
}

clsTakenNames::Kind clsTakenNames::What(PathKey key) const noexcept {
    return count_ == 0 ? Kind::nothing : static_cast<Kind>(slots_[SlotOf(key)] & kindBits);
}

void clsTakenNames::Take(PathKey key, Kind kind) {
    if (taken_ * 4 >= count_ * 3)
        Grow();
    std::uint64_t& slot = slots_[SlotOf(key)];
    taken_ += slot == 0 ? 1 : 0;
    slot = key | static_cast<std::uint64_t>(kind);
}

// The slot that holds a key, or the free one where it belongs; some are free.
std::size_t clsTakenNames::SlotOf(PathKey key) const noexcept {
    std::size_t at = static_cast<std::size_t>(key >> 32) & (count_ - 1);
    while (slots_[at] != 0 && (slots_[at] & ~kindBits) != key)
        at = (at + 1) & (count_ - 1);
    return at;
}

void clsTakenNames::Grow() {
    clsTakenNames larger;
    larger.count_ = count_ == 0 ? firstCount : count_ * 2;
    larger.slots_ = std::make_unique<std::uint64_t[]>(larger.count_);
    for (std::size_t at = 0; at < count_; ++at) {
        if (slots_[at] != 0)
            larger.slots_[larger.SlotOf(slots_[at] & ~kindBits)] = slots_[at];
    }
    larger.taken_ = taken_;
    *this = std::move(larger);
}

} // namespace tvut
