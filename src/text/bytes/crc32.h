// The check value of ZIP, gzip and PNG: the CRC of 32 bits with the polynomial 0x04C11DB7, as RFC 1952 has
// it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tvut {

// Of bytes that follow others, whose value is given; 0 for the first ones.
std::uint32_t UtilpCrc32(std::uint32_t before, const void* data, std::size_t bytes) noexcept;

} // namespace tvut
