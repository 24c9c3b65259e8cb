// Contents of files that are packed.
#pragma once

#include <cstddef>
#include <vector>

namespace bench {

// Words of a small vocabulary with numbers between them: compresses about as well as documents do.
std::vector<std::byte> MakeDocument(std::size_t size);

// Compresses not at all.
std::vector<std::byte> MakeNoise(std::size_t size);

} // namespace bench
