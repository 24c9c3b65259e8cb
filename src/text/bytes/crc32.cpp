// A CRC is the remainder of a division in which nothing is carried, so that 16 bytes may be replaced by any
// others that have the same remainder. PCLMULQDQ multiplies that way: it moves 16 bytes onto those that stand
// 64 bytes later, four at a time, until 16 are left, which zlib's table divides. The method and the factors,
// which are powers of x modulo the polynomial, are those of V. Gopal et al., "Fast CRC Computation for
// Generic Polynomials Using PCLMULQDQ Instruction" (Intel, 2009), bits reflected. What is short, and
// processors without the instruction, leave all of it to the table.
#include "text/bytes/crc32.h"

#include "platform/processor.h"

#include <zlib.h>

#include <algorithm>
#include <limits>

#include <immintrin.h>

namespace tvut {

namespace {

// zlib counts in 32 bits.
std::uint32_t ByTable(std::uint32_t before, const unsigned char* data, std::size_t bytes) noexcept {
    uLong crc = before;
    while (bytes != 0) {
        const auto count = static_cast<uInt>(std::min<std::size_t>(bytes, std::numeric_limits<uInt>::max()));
        crc = crc32(crc, data, count);
        data += count;
        bytes -= count;
    }
    return static_cast<std::uint32_t>(crc);
}

constexpr std::size_t lane = sizeof(__m128i), stride = 4 * lane;

// Chosen once, when the library is loaded.
const bool hasClmul = PlatformHasClmul();

TVUT_FOR_CLMUL inline __m128i Load(const unsigned char* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

// Moves 16 bytes on, by as far as the factors say, onto others.
TVUT_FOR_CLMUL inline __m128i Fold(__m128i from, __m128i factors, __m128i onto) {
    const __m128i low = _mm_clmulepi64_si128(from, factors, 0x00);
    const __m128i high = _mm_clmulepi64_si128(from, factors, 0x11);
    return _mm_xor_si128(_mm_xor_si128(low, high), onto);
}

// Of a multiple of 16 bytes, at least 64. A division that goes on begins with the value before, inverted, in
// front of the bytes; it is in the sums then, so that the table begins with nothing, which is all ones
// inverted.
TVUT_FOR_CLMUL std::uint32_t ByFolding(std::uint32_t before, const unsigned char* data,
                                       std::size_t bytes) noexcept {
    const __m128i byStride = _mm_set_epi32(0x1, static_cast<int>(0xC6E41596), 0x1, 0x54442BD4);
    const __m128i byLane = _mm_set_epi32(0x0, static_cast<int>(0xCCAA009E), 0x1, 0x751997D0);
    __m128i sums[4];
    for (std::size_t at = 0; at < 4; ++at)
        sums[at] = Load(data + at * lane);
    sums[0] = _mm_xor_si128(sums[0], _mm_cvtsi32_si128(static_cast<int>(~before)));
    for (data += stride, bytes -= stride; bytes >= stride; data += stride, bytes -= stride) {
        for (std::size_t at = 0; at < 4; ++at)
            sums[at] = Fold(sums[at], byStride, Load(data + at * lane));
    }
    __m128i sum = sums[0];
    for (std::size_t at = 1; at < 4; ++at)
        sum = Fold(sum, byLane, sums[at]);
    for (; bytes != 0; data += lane, bytes -= lane)
        sum = Fold(sum, byLane, Load(data));
    unsigned char last[lane];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(last), sum);
    return ByTable(~std::uint32_t{0}, last, lane);
}

} // namespace

std::uint32_t UtilpCrc32(std::uint32_t before, const void* data, std::size_t bytes) noexcept {
    const auto* next = static_cast<const unsigned char*>(data);
    if (hasClmul && bytes >= stride) {
        const std::size_t folded = bytes - bytes % lane;
        before = ByFolding(before, next, folded);
        next += folded;
        bytes -= folded;
    }
    return ByTable(before, next, bytes);
}

} // namespace tvut
