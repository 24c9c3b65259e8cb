// The time between two lines.
#pragma once

#include "line.h"

namespace tool::logpan {

// "+0.012", in seconds; nothing where one of the lines has no time. Lines without a date are taken for lines
// of one night where the clock went back by more than half a day.
std::wstring ElapsedText(const scLine& before, const scLine& line);

} // namespace tool::logpan
