// What the figures of a run depend on besides the library: the processor, and how much else runs on it.
#pragma once

#include <cstddef>
#include <string>

namespace bench {

std::string ProcessorName();

// The mean time of the same short work over half a second, against its least: 1 on a machine that does
// nothing else, 2 where another program has half of the processor.
double Noise();

// From here on goals are not judged.
constexpr double mostNoise = 1.2;

// Bytes of this process's own that are backed by memory or page file.
std::size_t CommittedPrivateBytes();

// Bytes of this process's own that it has touched, those of images that it has written to included.
std::size_t ResidentPrivateBytes();

} // namespace bench
