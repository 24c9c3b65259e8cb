// Strings end where nobody has said, so what is read ahead is either an aligned block, which lies in one page
// with a unit that must be read anyway, or a block that is checked not to touch the next page. Runs of bytes
// of at most a few hundred are moved and filled in line; both ends are written as words that may overlap,
// instead of a loop over the rest.
#include "text/string_functions.h"

#include "text/blocks.h"
#include "text/find.h"
#include "text/short_text.h"
#include "text/units.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace tvut {

namespace {

constexpr std::size_t mostInLine = 512; // bytes; beyond, a call of the runtime is worth it

// Where count characters end, or memory does.
const char16_t* EndOf(const char16_t* text, std::size_t count) {
    const std::size_t rest =
        std::numeric_limits<std::uintptr_t>::max() - reinterpret_cast<std::uintptr_t>(text);
    const std::size_t most = std::min<std::size_t>(rest, std::numeric_limits<std::ptrdiff_t>::max());
    return text + std::min(count, most / sizeof(char16_t));
}

int Order(char16_t a, char16_t b) {
    return a < b ? -1 : a > b;
}

char16_t Lower(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 0x20) : c;
}

__m128i Load(const void* from) {
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
}
void Store(void* to, __m128i block) {
    _mm_storeu_si128(static_cast<__m128i*>(to), block);
}

unsigned Zeros(__m128i block) {
    return UtilpEqualUnits(block, _mm_setzero_si128());
}

__m128i LowerBlock(__m128i block) {
    const __m128i fromA = _mm_sub_epi16(block, _mm_set1_epi16(u'A'));
    const __m128i isUpper = _mm_cmpeq_epi16(_mm_subs_epu16(fromA, _mm_set1_epi16(25)), _mm_setzero_si128());
    return _mm_or_si128(block, _mm_and_si128(isUpper, _mm_set1_epi16(0x20)));
}

unsigned AsciiUnits(__m128i block) {
    return UtilpEqualUnits(_mm_srli_epi16(block, 7), _mm_setzero_si128());
}

} // namespace

std::size_t UtilpLength(const char16_t* text) {
    if (clsBlocks::Fit(text))
        return static_cast<std::size_t>(UtilpFirstMarked(text, Zeros) - text);
    const char16_t* end = text;
    while (UtilpLoadUnit(end) != 0)
        ++end;
    return static_cast<std::size_t>(end - text);
}

std::size_t UtilpLength(const char16_t* text, std::size_t count) {
    const char16_t* const end = EndOf(text, count);
    if (clsBlocks::Fit(text)) {
        for (clsBlocks blocks(text); blocks.Unit(0) < end; blocks.Next()) {
            const unsigned zeros = blocks.OfText(Zeros(blocks.Block()));
            if (zeros != 0)
                return static_cast<std::size_t>(std::min(end, blocks.Unit(UtilpFirstUnit(zeros))) - text);
        }
        return static_cast<std::size_t>(end - text);
    }
    const char16_t* at = text;
    while (at != end && UtilpLoadUnit(at) != 0)
        ++at;
    return static_cast<std::size_t>(at - text);
}

// Blocks of one size after another and one that ends where the run does; the last is read first, since
// what is written may overlap it. Runs where the target begins inside the source are memmove's.
void UtilpMove(void* to, const void* from, std::size_t bytes) {
    auto* const target = static_cast<char*>(to);
    const auto* const source = static_cast<const char*>(from);
    const bool forwards =
        reinterpret_cast<std::uintptr_t>(to) - reinterpret_cast<std::uintptr_t>(from) >= bytes;
    if (bytes > 16 && bytes <= mostInLine && forwards) {
        const __m128i last = Load(source + bytes - 16);
        for (std::size_t at = 0; at < bytes - 16; at += 16)
            Store(target + at, Load(source + at));
        Store(target + bytes - 16, last);
        return;
    }
    if (bytes > 16)
        std::memmove(to, from, bytes);
    else if (bytes >= 2)
        UtilpMoveShort(target, source, bytes);
    else if (bytes == 1)
        *target = *source;
}

void UtilpFill(void* to, std::uint8_t byte, std::size_t bytes) {
    auto* const target = static_cast<char*>(to);
    if (bytes > 16 && bytes <= mostInLine) {
        const __m128i block = _mm_set1_epi8(static_cast<char>(byte));
        for (std::size_t at = 0; at < bytes - 16; at += 16)
            Store(target + at, block);
        Store(target + bytes - 16, block);
        return;
    }
    if (bytes > 16)
        std::memset(to, byte, bytes);
    else
        UtilpFillShort(to, byte, bytes);
}

int UtilpCompare(const char16_t* a, const char16_t* b, std::size_t count) {
    while (count != 0) {
        if (count >= blockUnits && UtilpLieInOnePage(a, blockBytes) && UtilpLieInOnePage(b, blockBytes)) {
            const __m128i block = Load(a);
            const unsigned goOn = UtilpEqualUnits(block, Load(b)) & ~Zeros(block);
            if (goOn != 0xFFFF) {
                const std::size_t at = UtilpFirstUnit(~goOn);
                return Order(UtilpLoadUnit(a + at), UtilpLoadUnit(b + at));
            }
            a += blockUnits;
            b += blockUnits;
            count -= blockUnits;
            continue;
        }
        const char16_t unitA = UtilpLoadUnit(a);
        const char16_t unitB = UtilpLoadUnit(b);
        if (unitA != unitB || unitA == 0)
            return Order(unitA, unitB);
        ++a;
        ++b;
        --count;
    }
    return 0;
}

scOrder UtilpCompareAscii(const char16_t*& a, const char16_t*& b, std::size_t& count) {
    while (count != 0) {
        if (count >= blockUnits && UtilpLieInOnePage(a, blockBytes) && UtilpLieInOnePage(b, blockBytes)) {
            const __m128i lowerA = LowerBlock(Load(a));
            const __m128i lowerB = LowerBlock(Load(b));
            const unsigned goOn = UtilpEqualUnits(lowerA, lowerB) & ~Zeros(lowerA) & AsciiUnits(lowerA);
            const std::size_t same = goOn == 0xFFFF ? blockUnits : UtilpFirstUnit(~goOn);
            a += same;
            b += same;
            count -= same;
            if (same == blockUnits)
                continue;
        }
        const char16_t lowerA = Lower(UtilpLoadUnit(a));
        const char16_t lowerB = Lower(UtilpLoadUnit(b));
        if ((lowerA | lowerB) > 0x7F)
            return {false, 0};
        if (lowerA != lowerB || lowerA == 0)
            return {true, Order(lowerA, lowerB)};
        ++a;
        ++b;
        --count;
    }
    return {true, 0};
}

const char16_t* UtilpFind(const char16_t* text, char16_t character) {
    if (clsBlocks::Fit(text)) {
        const __m128i wanted = _mm_set1_epi16(static_cast<short>(character));
        text = UtilpFirstMarked(text,
                                [&](__m128i block) { return UtilpEqualUnits(block, wanted) | Zeros(block); });
        return *text == character ? text : nullptr;
    }
    for (;; ++text) {
        const char16_t unit = UtilpLoadUnit(text);
        if (unit == character)
            return text;
        if (unit == 0)
            return nullptr;
    }
}

const char16_t* UtilpFindLast(const char16_t* text, char16_t character) {
    if (character == 0)
        return text + UtilpLength(text);
    const char16_t* last = nullptr;
    if (clsBlocks::Fit(text)) {
        const __m128i wanted = _mm_set1_epi16(static_cast<short>(character));
        for (clsBlocks blocks(text);; blocks.Next()) {
            const __m128i block = blocks.Block();
            const unsigned ends = blocks.OfText(Zeros(block));
            const unsigned before = (ends & (0u - ends)) - 1; // all bits when there is no end
            const unsigned hits = blocks.OfText(UtilpEqualUnits(block, wanted)) & before;
            if (hits != 0)
                last = blocks.Unit((31u - static_cast<unsigned>(std::countl_zero(hits))) / 2);
            if (ends != 0)
                return last;
        }
    }
    for (char16_t unit; (unit = UtilpLoadUnit(text)) != 0; ++text) {
        if (unit == character)
            last = text;
    }
    return last;
}

// The text is measured and searched a window at a time, so that a part near its beginning costs no look at
// its end. Windows overlap by what a part that begins in the one before may need.
const char16_t* UtilpFindPart(const char16_t* text, const char16_t* part) {
    constexpr std::size_t windowPositions = 512;
    const std::size_t length = UtilpLength(part);
    if (length == 0)
        return text;
    for (;; text += windowPositions) {
        const std::size_t units = UtilpLength(text, windowPositions + length - 1);
        if (units < length)
            return nullptr;
        if (const char16_t* const found = UtilpFindFirst(text, text + units, {part, length}))
            return found;
        if (units - length + 1 < windowPositions)
            return nullptr;
    }
}

void UtilpTrimLeft(char16_t* text) {
    std::size_t blanks = 0;
    while (UtilpLoadUnit(text + blanks) == u' ')
        ++blanks;
    if (blanks != 0)
        UtilpMove(text, text + blanks, (UtilpLength(text + blanks) + 1) * sizeof(char16_t));
}

void UtilpTrimRight(char16_t* text) {
    std::size_t length = UtilpLength(text);
    while (length != 0 && UtilpLoadUnit(text + length - 1) == u' ')
        --length;
    UtilpStoreUnit(text + length, 0);
}

void UtilpStuff(char16_t* text, std::size_t position, std::size_t count, const char16_t* insertion) {
    const std::size_t length = UtilpLength(text);
    if (position > length)
        return;
    const std::size_t removed = std::min(count, length - position);
    const std::size_t inserted = insertion ? UtilpLength(insertion) : 0;
    char16_t* const place = text + position;
    const std::size_t rest = length - position - removed + 1; // with the terminator
    UtilpMove(place + inserted, place + removed, rest * sizeof(char16_t));
    UtilpMove(place, insertion, inserted * sizeof(char16_t));
}

void UtilpKeep(char16_t* text, std::size_t position, std::size_t count) {
    const std::size_t kept = UtilpLength(text + position, count);
    UtilpMove(text, text + position, kept * sizeof(char16_t));
    UtilpStoreUnit(text + kept, 0);
}

} // namespace tvut
