// A fuzzer's bytes as a sequence of choices.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tvut {

class clsChoices {
  public:
    clsChoices(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

    bool AtEnd() const { return next_ == end_; }

    // A number below a bound, of up to 256 or 65,536; 0 when there are no more bytes.
    unsigned Below(unsigned bound) {
        const unsigned first = Byte();
        return (bound > 256 ? first | Byte() << 8 : first) % bound;
    }

  private:
    unsigned Byte() { return next_ == end_ ? 0 : *next_++; }

    const std::uint8_t* next_;
    const std::uint8_t* end_;
};

} // namespace tvut
