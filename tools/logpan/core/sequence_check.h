// Tells how many lines of a sender are missing by the last digits of its line counter.
#ifndef LOGPAN_SEQUENCE_CHECK_H
#define LOGPAN_SEQUENCE_CHECK_H

#include <cstdint>
#include <optional>

namespace tool::logpan {

class SequenceCheck {
  public:
    // The lines that are missing before this one: at least that many, for ten more leave no trace.
    unsigned missingBefore(std::uint32_t digit) {
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

#endif
