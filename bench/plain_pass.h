// What every pass over a text is held against: the plainest one, which loads a unit, compares it and goes on.
//
// A copy would be the wrong measure. It moves sixteen or more bytes at a time, as fast as the cache allows
// that the text happens to fit in, so a ratio to it says more about a machine's caches than about the pass.
#pragma once

#include "harness.h"
#include "report.h"

#include <string>

namespace bench {

constexpr std::size_t megabyte = (1 << 20) / sizeof(wchar_t); // characters

// "1 MB" of a length in characters.
std::string MegabytesOf(std::size_t length);

// The runtime's wcslen of a text of that length.
Round PlainPass(std::size_t length);

// One row: the work, which is a pass over a text of that length.
void AgainstPlainPass(const std::string& work, const Round& round, std::size_t length,
                      std::optional<scGoal> goal, int rounds, clsReport& report);

// One row without a goal: what memcpy of a text of that length would be in such a row.
void ShowCopy(std::size_t length, int rounds, clsReport& report);

} // namespace bench
