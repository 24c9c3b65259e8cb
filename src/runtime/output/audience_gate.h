// What is known of the audience, so that a line that nobody wants costs a few nanoseconds: two flags and the
// tick count are looked at, no lock is taken and no sink asked.
#pragma once

#include <atomic>
#include <cstdint>

namespace tvut {

// Asked by any thread; what is noted is noted under the writer's lock.
class clsAudienceGate {
  public:
    using Ticks = std::uint32_t (*)() noexcept; // milliseconds; comes round

    explicit constexpr clsAudienceGate(Ticks ticks) noexcept : ticks_(ticks) {}

    // Nobody listened when last asked, and a viewer may have come since only if a look for one is due.
    bool IsShut() const noexcept {
        return ended_.load(std::memory_order_relaxed) ||
               (quiet_.load(std::memory_order_acquire) && !IntervalIsOver());
    }
    void Open() noexcept { quiet_ = false; }
    void End() noexcept { ended_ = true; }

    // Where a viewer or a log file is there, none is looked for.
    bool IsSettled() const noexcept { return settled_.load(std::memory_order_relaxed); }
    bool HasViewer() const noexcept { return viewer_.load(std::memory_order_relaxed); }
    void NoteSinks(bool viewer, bool logFile) noexcept {
        viewer_.store(viewer, std::memory_order_relaxed);
        settled_.store(viewer || logFile, std::memory_order_relaxed);
    }

    // A viewer that is there but wants nothing may change its mind at any moment: no rest for that.
    void NoteAudience(bool any) noexcept { quiet_.store(!any && !HasViewer(), std::memory_order_release); }

    // Looks for a viewer: the first one, and one each second after.
    bool EverLooked() const noexcept { return everLooked_; }
    bool LookIsDue() const noexcept { return !everLooked_ || IntervalIsOver(); }
    void NoteLookBegins() noexcept { lastLook_ = ticks_(); }
    void NoteLookEnds() noexcept { everLooked_ = true; }

  private:
    static constexpr std::uint32_t interval = 1000; // milliseconds between looks for a viewer

    bool IntervalIsOver() const noexcept {
        return ticks_() - lastLook_.load(std::memory_order_relaxed) >= interval;
    }

    Ticks ticks_;
    std::atomic<bool> ended_{false};
    std::atomic<bool> quiet_{false};
    std::atomic<bool> settled_{false};
    std::atomic<bool> viewer_{false};
    std::atomic<bool> everLooked_{false};
    std::atomic<std::uint32_t> lastLook_{0};
};

} // namespace tvut
