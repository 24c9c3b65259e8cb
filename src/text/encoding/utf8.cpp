// Most of most texts is ASCII: runs of it pass sixteen bytes at a time, all else one character at a time.
#include "text/encoding/utf8.h"

#include "runtime/code_point.h"

#include <cstdint>

namespace tvut {

namespace {

constexpr std::size_t blockBytes = sizeof(__m128i);

__m128i LoadBlock(const char* bytes) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

// How many bytes of ASCII stand at a place.
std::size_t AsciiAt(std::string_view bytes, std::size_t place) {
    std::size_t at = place;
    for (; bytes.size() - at >= blockBytes; at += blockBytes) {
        if (const int mask = _mm_movemask_epi8(LoadBlock(bytes.data() + at)))
            return at + static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(mask))) - place;
    }
    while (at < bytes.size() && static_cast<unsigned char>(bytes[at]) < 0x80)
        ++at;
    return at - place;
}

void WidenBlock(const char* bytes, char16_t* out) {
    const __m128i block = LoadBlock(bytes), zero = _mm_setzero_si128();
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(block, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 8), _mm_unpackhi_epi8(block, zero));
}

// The last block may overlap the one before.
char16_t* WidenAscii(std::string_view bytes, char16_t* out) {
    const std::size_t length = bytes.size();
    if (length >= blockBytes) {
        for (std::size_t at = 0; at < length - blockBytes; at += blockBytes)
            WidenBlock(bytes.data() + at, out + at);
        WidenBlock(bytes.data() + length - blockBytes, out + length - blockBytes);
    } else {
        for (std::size_t at = 0; at < length; ++at)
            out[at] = static_cast<unsigned char>(bytes[at]);
    }
    return out + length;
}

} // namespace

bool UtilpIsUtf8(std::string_view bytes) noexcept {
    for (std::size_t at = AsciiAt(bytes, 0); at < bytes.size(); at += AsciiAt(bytes, at)) {
        const std::size_t length = UtilpUtf8SequenceLength(bytes, at);
        if (length == 0)
            return false;
        at += length;
    }
    return true;
}

std::size_t UtilpDecodeUtf8(std::string_view bytes, char16_t* characters) noexcept {
    char16_t* out = characters;
    for (std::size_t at = 0; at < bytes.size();) {
        if (const std::size_t ascii = AsciiAt(bytes, at)) {
            out = WidenAscii(bytes.substr(at, ascii), out);
            at += ascii;
            continue;
        }
        const std::size_t length = UtilpUtf8SequenceLength(bytes, at);
        out = UtilpPutUtf16(out, length == 0 ? replacementCharacter : UtilpUtf8CodePoint(bytes, at, length));
        at += length == 0 ? 1 : length;
    }
    return static_cast<std::size_t>(out - characters);
}

bool UtilpIsUtf16(std::u16string_view text) noexcept {
    while (!text.empty()) {
        const char16_t first = text.front();
        if (UtilpTakeUtf16(text) == replacementCharacter && first != replacementCharacter)
            return false;
    }
    return true;
}

std::size_t detail::LengthInUtf8(std::u16string_view text) noexcept {
    std::size_t length = 0;
    while (!text.empty())
        length += UtilpUtf8LengthOf(UtilpTakeUtf16(text));
    return length;
}

std::size_t detail::EncodeUtf8(std::u16string_view text, char* bytes) noexcept {
    char* out = bytes;
    while (!text.empty())
        out = UtilpPutUtf8(out, UtilpTakeUtf16(text));
    return static_cast<std::size_t>(out - bytes);
}

} // namespace tvut
