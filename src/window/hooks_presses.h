// The presses of a key that a thread sees in two ways: as messages that it takes from its queue, which may be
// late, and by looking at the keyboard. Each press counts once.
//
// A press that was counted by looking is still to come as a message, if the queue is this thread's: that
// message is older than the look, a new press's is younger.
#pragma once

#include <cstdint>
#include <utility>

namespace tvut {

class clsKeyPresses {
  public:
    // A look: whether the key is down, and whether it has gone down since the look before. True: since then
    // it was pressed. One that is held down gives no more, whatever its repeats do.
    bool Look(bool isDown, bool wentDown) noexcept {
        const bool wasDown = std::exchange(isDown_, isDown);
        return !wasDown && (isDown || wentDown);
    }

    // The press that a look has shown counts. Times are the system's, in milliseconds.
    void CountLook(std::uint32_t now) noexcept {
        ++ahead_;
        lookedAt_ = now;
    }

    // The message of a press, and whether the key is down now. True: it counts.
    bool Arrive(std::uint32_t time, bool isDown) noexcept {
        isDown_ = isDown;
        const bool isOld = static_cast<std::int32_t>(time - lookedAt_) <= clocksDiffer;
        if (ahead_ > 0 && isOld) {
            --ahead_;
            return false;
        }
        ahead_ = 0; // their messages went to other threads
        return true;
    }

    void Release() noexcept { isDown_ = false; }

  private:
    static constexpr std::int32_t clocksDiffer = 100; // of messages and looks, at most

    bool isDown_ = false;
    unsigned ahead_ = 0; // counted, and not arrived yet
    std::uint32_t lookedAt_ = 0;
};

} // namespace tvut
