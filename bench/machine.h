// What the figures of a run depend on besides the library: the processor, and how much else runs on it.
#pragma once

#include <string>

namespace bench {

std::string ProcessorName();

// The mean time of the same short work over half a second, against its least: 1 on a machine that does
// nothing else, 2 where another program has half of the processor.
double Noise();

// From here on goals are not judged.
constexpr double mostNoise = 1.2;

} // namespace bench
