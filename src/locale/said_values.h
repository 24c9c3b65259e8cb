// What the fields of a text have said so far, and the moment that it comes to.
#pragma once

#include "locale/match_job.h"

#include <array>
#include <cstdint>
#include <optional>

namespace tvut {

class clsSaidValues {
  public:
    enum class Value : std::uint8_t {
        day,
        weekday,
        month,
        year,
        yearDigits,
        era,
        hour12,
        hour24,
        minute,
        second,
        tenths,
        hundredths,
        thousandths,
        mark,
    };

    clsSaidValues() { values_.fill(unsaid); }

    // False when it was said otherwise before. Numbers are below 20,000.
    bool Say(Value value, std::int32_t said) {
        std::int16_t& place = values_[static_cast<std::size_t>(value)];
        if (place != unsaid)
            return place == said;
        place = static_cast<std::int16_t>(said);
        return true;
    }

    // A year of so many digits. In two pictures of one text it may be short and full.
    bool SayYear(std::int32_t year, unsigned digits, const scMatchJob& job);

    // The moment, if there is such a one.
    std::optional<scReading> Reading(const scMatchJob& job) const;

  private:
    static constexpr std::int16_t unsaid = -1;

    bool Has(Value value) const { return Get(value) != unsaid; }
    std::int32_t Get(Value value) const { return values_[static_cast<std::size_t>(value)]; }
    std::int32_t GregorianYear(const scMatchJob& job) const;
    bool SetDate(const scMatchJob& job, scReading& reading) const;
    bool SetHour(const scMatchJob& job, scDateTime& moment) const;
    bool SetTime(const scMatchJob& job, scReading& reading) const;

    std::array<std::int16_t, 14> values_;
};

} // namespace tvut
