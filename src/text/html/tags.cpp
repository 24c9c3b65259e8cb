// Names of more than four units: sixteen bytes, compared at once.
#include "text/html/tags.h"

#include "text/html/page_units.h"

namespace tvut {

namespace {

using tagTable::FirstLettersOf, tagTable::scMeaning, tagTable::scShortTag;

struct alignas(32) scLongTag {
    std::array<char, tagWindow> name{};
    std::uint8_t length = 0;
    scTag tag{};

    static constexpr unsigned placeBits = 5;
    static constexpr bool Knows(std::string_view name) { return !scShortTag::Knows(name); }
    static constexpr std::uint32_t LettersOf(std::string_view name) { return FirstLettersOf(name); }
    constexpr scLongTag() = default;
    constexpr explicit scLongTag(const scMeaning& meaning)
        : length(static_cast<std::uint8_t>(meaning.name.size())), tag(tagTable::TagOf(meaning)) {
        std::copy(meaning.name.begin(), meaning.name.end(), name.begin());
    }
};

// From the place a number of bytes before the middle on, there are as many bytes that are kept.
constexpr auto keptBytes = [] {
    std::array<std::uint8_t, 2 * tagWindow> bytes{};
    std::fill_n(bytes.begin(), tagWindow, std::uint8_t{0xFF});
    return bytes;
}();

// At most as long as the window.
const scTag* FindLongTag(__m128i window, std::size_t length) {
    const auto load = [](const void* bytes) { return _mm_loadu_si128(static_cast<const __m128i*>(bytes)); };
    const __m128i lower = _mm_or_si128(window, _mm_and_si128(_mm_srli_epi16(window, 1), _mm_set1_epi8(0x20)));
    const __m128i name = _mm_and_si128(lower, load(keptBytes.data() + tagWindow - length));
    const auto& known = tagTable::At<scLongTag>(static_cast<std::uint32_t>(_mm_cvtsi128_si32(name)));
    const int same = _mm_movemask_epi8(_mm_cmpeq_epi8(name, load(known.name.data())));
    return same == 0xFFFF && known.length == length ? &known.tag : nullptr;
}

} // namespace

const scTag* UtilpFindTag(const char16_t* window, __m128i bytes, unsigned closes) {
    const std::size_t length = UtilpFirstPlace(closes | UtilpBlankPlaces(bytes) | 1u << tagWindow);
    return length - 1 < longestShortTagName ? UtilpFindShortTag(window, length) : FindLongTag(bytes, length);
}

} // namespace tvut
