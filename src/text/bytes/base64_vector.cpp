// Base64 in vector registers: 12 bytes and 16 characters at a time with SSSE3, twice that with AVX2.
//
// The method is that of W. Muła and D. Lemire, "Faster Base64 Encoding and Decoding using AVX2
// Instructions" (2018), with characters of 16 bits at the outer side. Packing those to 8 bits saturates,
// so that a character beyond Latin-1 becomes 0 or 255, neither of which is in the alphabet.
#include "platform/processor.h"
#include "text/bytes/base64_engine.h"

#include <array>

#include <immintrin.h>

namespace tvut {

namespace {

using Lane = std::array<std::int8_t, 16>;

// Encoding: each group of 3 bytes as bytes 1 0 2 1, so that two multiplications move the four values.
constexpr Lane spread{1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10};
// From a value to its character: a-z, each of 0-9, +, /, A-Z.
constexpr Lane distances{'a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                         '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A',      0,        0};
// Decoding: a character is outside the alphabet when its two nibbles' masks have a bit in common.
constexpr Lane lowMasks{0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11,
                        0x11, 0x11, 0x13, 0x1A, 0x1B, 0x1B, 0x1B, 0x1A};
constexpr Lane highMasks{0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08,
                         0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10};
// From a character to its value, by the high nibble; "/" is taken one place lower.
constexpr Lane shifts{0, 16, 19, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0};
// Of every four bytes the lower three, the highest first.
constexpr Lane gather{2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1};

TVUT_FOR_SSSE3 inline __m128i Load(const void* from) {
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
}
TVUT_FOR_SSSE3 inline void Store(void* to, __m128i value) {
    _mm_storeu_si128(static_cast<__m128i*>(to), value);
}

TVUT_FOR_SSSE3 inline __m128i Characters(__m128i bytes) {
    const __m128i spreadBytes = _mm_shuffle_epi8(bytes, Load(spread.data()));
    const __m128i oddValues =
        _mm_mulhi_epu16(_mm_and_si128(spreadBytes, _mm_set1_epi32(0x0FC0FC00)), _mm_set1_epi32(0x04000040));
    const __m128i evenValues =
        _mm_mullo_epi16(_mm_and_si128(spreadBytes, _mm_set1_epi32(0x003F03F0)), _mm_set1_epi32(0x01000010));
    const __m128i values = _mm_or_si128(oddValues, evenValues);
    const __m128i upper = _mm_cmpgt_epi8(_mm_set1_epi8(26), values);
    const __m128i place =
        _mm_or_si128(_mm_subs_epu8(values, _mm_set1_epi8(51)), _mm_and_si128(upper, _mm_set1_epi8(13)));
    return _mm_add_epi8(values, _mm_shuffle_epi8(Load(distances.data()), place));
}

TVUT_FOR_SSSE3 std::size_t EncodeSsse3(const std::uint8_t* bytes, std::size_t count, char16_t* text) {
    std::size_t done = 0;
    for (; count - done >= 16; done += 12, text += 16) { // 16 are loaded
        const __m128i characters = Characters(Load(bytes + done));
        Store(text, _mm_unpacklo_epi8(characters, _mm_setzero_si128()));
        Store(text + 8, _mm_unpackhi_epi8(characters, _mm_setzero_si128()));
    }
    return done + UtilpBase64EncodeByTable(bytes + done, count - done, text);
}

TVUT_FOR_SSSE3 std::size_t DecodeSsse3(const char16_t* text, std::size_t count, std::uint8_t* bytes) {
    std::size_t done = 0;
    for (; count - done >= 24; done += 16, bytes += 12) { // 16 bytes are stored
        const __m128i characters = _mm_packus_epi16(Load(text + done), Load(text + done + 8));
        const __m128i nibble = _mm_set1_epi8(0xF);
        const __m128i high = _mm_and_si128(_mm_srli_epi32(characters, 4), nibble);
        const __m128i low = _mm_and_si128(characters, nibble);
        const __m128i strays = _mm_and_si128(_mm_shuffle_epi8(Load(lowMasks.data()), low),
                                             _mm_shuffle_epi8(Load(highMasks.data()), high));
        if (_mm_movemask_epi8(_mm_cmpeq_epi8(strays, _mm_setzero_si128())) != 0xFFFF)
            break;
        const __m128i slash = _mm_cmpeq_epi8(characters, _mm_set1_epi8('/'));
        const __m128i shift = _mm_shuffle_epi8(Load(shifts.data()), _mm_add_epi8(slash, high));
        const __m128i values = _mm_add_epi8(characters, shift);
        const __m128i twelves = _mm_maddubs_epi16(values, _mm_set1_epi32(0x01400140));
        const __m128i groups = _mm_madd_epi16(twelves, _mm_set1_epi32(0x00011000));
        Store(bytes, _mm_shuffle_epi8(groups, Load(gather.data())));
    }
    return done + UtilpBase64DecodeByTable(text + done, count - done, bytes);
}

TVUT_FOR_AVX2 inline __m256i Twice(const Lane& lane) {
    return _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(lane.data())));
}
TVUT_FOR_AVX2 inline __m256i LoadWide(const void* from) {
    return _mm256_loadu_si256(static_cast<const __m256i*>(from));
}
TVUT_FOR_AVX2 inline void StoreWide(void* to, __m256i value) {
    _mm256_storeu_si256(static_cast<__m256i*>(to), value);
}
TVUT_FOR_AVX2 inline __m128i LoadHalf(const void* from) {
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
}

TVUT_FOR_AVX2 inline __m256i CharactersWide(__m256i bytes) {
    const __m256i spreadBytes = _mm256_shuffle_epi8(bytes, Twice(spread));
    const __m256i oddValues = _mm256_mulhi_epu16(_mm256_and_si256(spreadBytes, _mm256_set1_epi32(0x0FC0FC00)),
                                                 _mm256_set1_epi32(0x04000040));
    const __m256i evenValues = _mm256_mullo_epi16(
        _mm256_and_si256(spreadBytes, _mm256_set1_epi32(0x003F03F0)), _mm256_set1_epi32(0x01000010));
    const __m256i values = _mm256_or_si256(oddValues, evenValues);
    const __m256i upper = _mm256_cmpgt_epi8(_mm256_set1_epi8(26), values);
    const __m256i place = _mm256_or_si256(_mm256_subs_epu8(values, _mm256_set1_epi8(51)),
                                          _mm256_and_si256(upper, _mm256_set1_epi8(13)));
    return _mm256_add_epi8(values, _mm256_shuffle_epi8(Twice(distances), place));
}

TVUT_FOR_AVX2 std::size_t EncodeAvx2(const std::uint8_t* bytes, std::size_t count, char16_t* text) {
    std::size_t done = 0;
    for (; count - done >= 28; done += 24, text += 32) { // 12 and 16 are loaded
        const __m256i both = _mm256_inserti128_si256(_mm256_castsi128_si256(LoadHalf(bytes + done)),
                                                     LoadHalf(bytes + done + 12), 1);
        const __m256i characters = CharactersWide(both);
        StoreWide(text, _mm256_cvtepu8_epi16(_mm256_castsi256_si128(characters)));
        StoreWide(text + 16, _mm256_cvtepu8_epi16(_mm256_extracti128_si256(characters, 1)));
    }
    return done + UtilpBase64EncodeByTable(bytes + done, count - done, text);
}

TVUT_FOR_AVX2 std::size_t DecodeAvx2(const char16_t* text, std::size_t count, std::uint8_t* bytes) {
    std::size_t done = 0;
    const __m256i inOrder = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);
    for (; count - done >= 48; done += 32, bytes += 24) { // 32 bytes are stored
        const __m256i packed = _mm256_packus_epi16(LoadWide(text + done), LoadWide(text + done + 16));
        const __m256i characters = _mm256_permute4x64_epi64(packed, 0xD8);
        const __m256i nibble = _mm256_set1_epi8(0xF);
        const __m256i high = _mm256_and_si256(_mm256_srli_epi32(characters, 4), nibble);
        const __m256i low = _mm256_and_si256(characters, nibble);
        const __m256i lowMask = _mm256_shuffle_epi8(Twice(lowMasks), low);
        const __m256i highMask = _mm256_shuffle_epi8(Twice(highMasks), high);
        if (_mm256_testz_si256(lowMask, highMask) == 0)
            break;
        const __m256i slash = _mm256_cmpeq_epi8(characters, _mm256_set1_epi8('/'));
        const __m256i shift = _mm256_shuffle_epi8(Twice(shifts), _mm256_add_epi8(slash, high));
        const __m256i values = _mm256_add_epi8(characters, shift);
        const __m256i twelves = _mm256_maddubs_epi16(values, _mm256_set1_epi32(0x01400140));
        const __m256i groups = _mm256_madd_epi16(twelves, _mm256_set1_epi32(0x00011000));
        const __m256i gathered = _mm256_shuffle_epi8(groups, Twice(gather));
        StoreWide(bytes, _mm256_permutevar8x32_epi32(gathered, inOrder));
    }
    return done + UtilpBase64DecodeByTable(text + done, count - done, bytes);
}

} // namespace

std::span<const scBase64Engine> UtilpBase64Engines() {
    static constexpr scBase64Engine engines[] = {
        {"AVX2", PlatformHasAvx2, EncodeAvx2, DecodeAvx2},
        {"SSSE3", PlatformHasSsse3, EncodeSsse3, DecodeSsse3},
        {"table", []() noexcept { return true; }, UtilpBase64EncodeByTable, UtilpBase64DecodeByTable},
    };
    return engines;
}

} // namespace tvut
