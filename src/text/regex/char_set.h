// A set of units: what one place of a pattern matches.
#pragma once

#include "text/find.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace tvut {

class clsCharSet {
  public:
    void Add(char16_t first, char16_t last);
    void Add(char16_t unit) { Add(unit, unit); }
    void Add(const clsCharSet& other);
    void AddOtherCases();
    void Invert();

    // To be called once the set is complete, before it is asked.
    void Finish();

    bool Has(char16_t unit) const {
        return unit < lowUnits ? (low_[unit / 32] >> unit % 32 & 1) != 0 : HasHigh(unit);
    }
    bool HasAll() const { return all_; }
    // The first unit that is not in the set, or the end.
    const char16_t* RunEnd(const char16_t* text, const char16_t* end) const;

  private:
    struct scRange {
        char16_t first;
        char16_t last;
    };
    static constexpr unsigned lowUnits = 256;
    static constexpr std::size_t allUnits = 0x10000;
    static constexpr std::size_t mostSearchedRanges = 32;

    void FillBits();
    bool HasHigh(char16_t unit) const;
    void Merge();

    std::vector<scRange> ranges_; // sorted and apart once merged
    std::array<std::uint32_t, lowUnits / 32> low_{};
    std::vector<bool> bits_;             // by unit, when there are too many ranges to search them
    std::optional<clsFewUnits> missing_; // when the set lacks only a few units
    bool all_ = false;
};

} // namespace tvut
