// Counts how many lines of a sender are missing by the last digits of its line counter.
#pragma once

#include <cstdint>
#include <optional>

namespace tool::logpan {

class clsSequenceCheck {
  public:
    // The lines that are missing before this one: at least that many, for ten more leave no trace.
    unsigned MissingBefore(std::uint32_t digit) {
        if (digit < '0' || digit > '9') {
            expected_.reset(); // nothing can be said about the next one either
            return 0;
        }
        const unsigned value = digit - '0';
        const unsigned missing = expected_ ? (value + 10 - *expected_) % 10 : 0;
        expected_ = (value + 1) % 10;
        return missing;
    }

  private:
    std::optional<unsigned> expected_;
};

} // namespace tool::logpan
