// A fast 32-bit hash of UTF-16 text for the pools and indexes, seeded once a process.
//
// Names come from files that anybody may have written, so a fixed hash would let a file make every
// name collide. Each step folds a 32 x 32 -> 64 bit product whose two factors both depend on the
// state, which starts from a seed the file cannot know.
#pragma once

#include "text/units.h"

#include <cstdint>
#include <string_view>

namespace tvut {

// The seed of the running process. Set by the module start before any text is hashed.
inline std::uint32_t g_hashSeed = 0x9E3779B9u;

namespace detail {

inline void FoldProduct(std::uint32_t& low, std::uint32_t& high) {
    const std::uint64_t product =
        static_cast<std::uint64_t>(low ^ 0x53C5CA59u) * static_cast<std::uint64_t>(high ^ 0x74743C1Bu);
    low = static_cast<std::uint32_t>(product);
    high = static_cast<std::uint32_t>(product >> 32);
}

// Folds a text into a state of two words that differ. Cost: one multiplication for four characters and two
// more to finish. The length goes in between those two, where no character can undo it whatever the seed is:
// at the start "100" and "6000" would be one, since 3 ^ '1' is 4 ^ '6' and the rest are zeros.
inline void FoldText(std::u16string_view text, std::uint32_t& low, std::uint32_t& high) {
    const char16_t* next = text.data();
    std::size_t left = text.size();
    for (; left > 4; left -= 4, next += 4) {
        low ^= UtilpLoadPair(next);
        high ^= UtilpLoadPair(next + 2);
        FoldProduct(low, high);
    }
    if (left >= 2) {
        low ^= UtilpLoadPair(next);
        high ^= UtilpLoadPair(next + left - 2);
    } else if (left == 1) {
        low ^= *next;
    }
    FoldProduct(low, high);
    low ^= static_cast<std::uint32_t>(text.size());
    FoldProduct(low, high);
}

} // namespace detail

inline std::uint32_t UtilpHashText(std::u16string_view text) {
    std::uint32_t low = g_hashSeed;
    std::uint32_t high = g_hashSeed * 0x85EBCA6Bu + 1; // not what low starts from: the product commutes
    detail::FoldText(text, low, high);
    return low ^ high;
}

// The hash, of 64 bits, of a text that comes after what has a hash already.
inline std::uint64_t UtilpHashAfter(std::uint64_t before, std::u16string_view text) {
    std::uint32_t low = g_hashSeed ^ static_cast<std::uint32_t>(before);
    std::uint32_t high = (g_hashSeed * 0x85EBCA6Bu + 1) ^ static_cast<std::uint32_t>(before >> 32);
    detail::FoldText(text, low, high);
    return std::uint64_t{high} << 32 | low;
}

} // namespace tvut
