// Nothing is done under the lock but to look and to exchange pointers: two threads that miss the same block
// unfold it both, and one of them is kept.
#include "locale/kept_names.h"

#include "platform/spin_lock.h"

#include <algorithm>
#include <array>
#include <mutex>

namespace tvut {

namespace {

class clsKeptNames {
  public:
    using Names = std::shared_ptr<const clsTranslatedNames>;

    Names Find(std::uint8_t block) noexcept {
        const std::lock_guard lock(lock_);
        if (block == nativeNames)
            return native_;
        const auto found = std::ranges::find(last_, block, &scKept::block);
        if (found == last_.end())
            return nullptr;
        std::rotate(last_.begin(), found, found + 1);
        return last_.front().names;
    }

    // What it pushes out ends with the caller's text, after the lock.
    void Keep(std::uint8_t block, Names names) noexcept {
        const std::lock_guard lock(lock_);
        if (block == nativeNames)
            return native_.swap(names);
        const auto found = std::ranges::find(last_, block, &scKept::block);
        const auto place = found == last_.end() ? last_.end() - 1 : found;
        place->block = block;
        place->names.swap(names);
        std::rotate(last_.begin(), place, place + 1);
    }

  private:
    struct scKept {
        std::uint8_t block = nativeNames; // of none in this list
        Names names;
    };

    clsSpinLock lock_;
    std::array<scKept, 4> last_; // the one used last is the first
    Names native_;
};

constinit clsKeptNames keptNames;

} // namespace

std::shared_ptr<const clsTranslatedNames> UtilpNamesOf(std::uint8_t block) {
    if (auto kept = keptNames.Find(block))
        return kept;
    auto names = std::make_shared<const clsTranslatedNames>(block);
    keptNames.Keep(block, names);
    return names;
}

} // namespace tvut
