// A text read by one picture, with the leniency that docs/locale.md lists.
#pragma once

#include "locale/match_job.h"

namespace tvut {

// Looks at readings, one after the other.
class IclsReadings {
  public:
    virtual ~IclsReadings() = default;
    virtual void Found(const scReading& reading) = 0;
};

// Finds the readings that a text has by a picture: one, none, or several where numbers touch. Linear in both:
// false when a text has more ways to read it than are followed; then what was found says nothing.
bool UtilpMatch(const scMatchJob& job, IclsReadings& readings) noexcept;

} // namespace tvut
