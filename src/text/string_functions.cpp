#include "text/string_functions.h"

#include "text/units.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

// A sanitizer sees every byte that is read behind the end of a string, page or not.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TVUT_READS_STRICTLY 1
#endif
#endif
#if defined(TVUT_HAS_SSE2) && !defined(TVUT_READS_STRICTLY)
#define TVUT_READS_BLOCKS 1
#endif

namespace tvut {

namespace {

constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

// Where count characters end, or memory does.
const char16_t* EndOf(const char16_t* text, std::size_t count) {
    const std::size_t most = (unlimited - reinterpret_cast<std::uintptr_t>(text)) / sizeof(char16_t);
    return text + std::min(count, most);
}

int Order(char16_t a, char16_t b) {
    return a < b ? -1 : a > b;
}

char16_t Lower(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 0x20) : c;
}

#ifdef TVUT_HAS_SSE2

__m128i Load(const void* from) {
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
}
void Store(void* to, __m128i block) {
    _mm_storeu_si128(static_cast<__m128i*>(to), block);
}

#endif

#ifdef TVUT_READS_BLOCKS

constexpr std::size_t blockBytes = sizeof(__m128i);
constexpr std::size_t blockUnits = blockBytes / sizeof(char16_t);

// Two bits a unit that equals one of another block.
unsigned EqualUnits(__m128i a, __m128i b) {
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(a, b)));
}

std::size_t FirstUnit(unsigned mask) {
    return static_cast<std::size_t>(std::countr_zero(mask)) / 2;
}

// Walks the aligned blocks that a text lies in, from the one with its first unit on.
class clsBlocks {
  public:
    // Strings at odd addresses exist, in packed structures; their units do not lie in one block each.
    static bool Fit(const char16_t* text) { return reinterpret_cast<std::uintptr_t>(text) % 2 == 0; }

    explicit clsBlocks(const char16_t* text)
        : skipped_(reinterpret_cast<std::uintptr_t>(text) % blockBytes),
          block_(text - skipped_ / sizeof(char16_t)) {}

    __m128i Block() const { return _mm_load_si128(reinterpret_cast<const __m128i*>(block_)); }
    // Bits of the units that belong to the text.
    unsigned OfText(unsigned mask) const { return mask >> skipped_ << skipped_; }
    const char16_t* Unit(std::size_t number) const { return block_ + number; }
    void Next() {
        block_ += blockUnits;
        skipped_ = 0;
    }

  private:
    std::size_t skipped_; // bytes before the text
    const char16_t* block_;
};

// The first unit before an end that a function of its block marks, or the end.
template <class Mark>
const char16_t* FirstMarked(const char16_t* text, const char16_t* end, Mark mark) {
    for (clsBlocks blocks(text); blocks.Unit(0) < end; blocks.Next()) {
        const unsigned marked = blocks.OfText(mark(blocks.Block()));
        if (marked != 0)
            return std::min(end, blocks.Unit(FirstUnit(marked)));
    }
    return end;
}

// Whether a block may be read that begins anywhere: not where it would touch the next page.
bool InOnePage(const void* from) {
    constexpr std::size_t pageBytes = 4096; // or a multiple
    return reinterpret_cast<std::uintptr_t>(from) % pageBytes <= pageBytes - blockBytes;
}

__m128i LowerBlock(__m128i block) {
    const __m128i fromA = _mm_sub_epi16(block, _mm_set1_epi16(u'A'));
    const __m128i isUpper = _mm_cmpeq_epi16(_mm_subs_epu16(fromA, _mm_set1_epi16(25)), _mm_setzero_si128());
    return _mm_or_si128(block, _mm_and_si128(isUpper, _mm_set1_epi16(0x20)));
}

unsigned AsciiUnits(__m128i block) {
    return EqualUnits(_mm_srli_epi16(block, 7), _mm_setzero_si128());
}

#endif

// Writes both ends of a run of one to two words; they overlap, and all is read before.
template <class Word>
void MoveEnds(char* to, const char* from, std::size_t bytes) {
    Word first;
    Word last;
    std::memcpy(&first, from, sizeof first);
    std::memcpy(&last, from + bytes - sizeof last, sizeof last);
    std::memcpy(to, &first, sizeof first);
    std::memcpy(to + bytes - sizeof last, &last, sizeof last);
}

template <class Word>
void FillEnds(char* to, std::uint64_t pattern, std::size_t bytes) {
    const auto word = static_cast<Word>(pattern);
    std::memcpy(to, &word, sizeof word);
    std::memcpy(to + bytes - sizeof word, &word, sizeof word);
}

} // namespace

std::size_t UtilpLength(const char16_t* text) {
    return UtilpLength(text, unlimited);
}

std::size_t UtilpLength(const char16_t* text, std::size_t count) {
    const char16_t* const end = EndOf(text, count);
    const char16_t* at = text;
#ifdef TVUT_READS_BLOCKS
    if (clsBlocks::Fit(text)) {
        const __m128i zero = _mm_setzero_si128();
        at = FirstMarked(text, end, [&](__m128i block) { return EqualUnits(block, zero); });
        return static_cast<std::size_t>(at - text);
    }
#endif
    while (at != end && *at != 0)
        ++at;
    return static_cast<std::size_t>(at - text);
}

void UtilpMove(void* to, const void* from, std::size_t bytes) {
    auto* const target = static_cast<char*>(to);
    const auto* const source = static_cast<const char*>(from);
#ifdef TVUT_HAS_SSE2
    if (bytes > 16 && bytes <= 64) {
        const std::size_t second = bytes > 32 ? 16 : 0; // the same block twice does no harm
        const __m128i a = Load(source);
        const __m128i b = Load(source + second);
        const __m128i c = Load(source + bytes - 16 - second);
        const __m128i d = Load(source + bytes - 16);
        Store(target, a);
        Store(target + second, b);
        Store(target + bytes - 16 - second, c);
        Store(target + bytes - 16, d);
        return;
    }
#endif
    if (bytes > 16)
        std::memmove(to, from, bytes);
    else if (bytes >= 8)
        MoveEnds<std::uint64_t>(target, source, bytes);
    else if (bytes >= 4)
        MoveEnds<std::uint32_t>(target, source, bytes);
    else if (bytes >= 2)
        MoveEnds<std::uint16_t>(target, source, bytes);
    else if (bytes == 1)
        *target = *source;
}

void UtilpFill(void* to, std::uint8_t byte, std::size_t bytes) {
    auto* const target = static_cast<char*>(to);
    const std::uint64_t pattern = 0x0101010101010101u * byte;
    if (bytes > 16)
        std::memset(to, byte, bytes);
    else if (bytes >= 8)
        FillEnds<std::uint64_t>(target, pattern, bytes);
    else if (bytes >= 4)
        FillEnds<std::uint32_t>(target, pattern, bytes);
    else if (bytes >= 2)
        FillEnds<std::uint16_t>(target, pattern, bytes);
    else if (bytes == 1)
        *target = static_cast<char>(byte);
}

int UtilpCompare(const char16_t* a, const char16_t* b, std::size_t count) {
    while (count != 0) {
#ifdef TVUT_READS_BLOCKS
        if (count >= blockUnits && InOnePage(a) && InOnePage(b)) {
            const __m128i block = Load(a);
            const unsigned goOn = EqualUnits(block, Load(b)) & ~EqualUnits(block, _mm_setzero_si128());
            if (goOn != 0xFFFF) {
                const std::size_t at = FirstUnit(~goOn);
                return Order(a[at], b[at]);
            }
            a += blockUnits;
            b += blockUnits;
            count -= blockUnits;
            continue;
        }
#endif
        if (*a != *b || *a == 0)
            return Order(*a, *b);
        ++a;
        ++b;
        --count;
    }
    return 0;
}

scOrder UtilpCompareAscii(const char16_t*& a, const char16_t*& b, std::size_t& count) {
    while (count != 0) {
#ifdef TVUT_READS_BLOCKS
        if (count >= blockUnits && InOnePage(a) && InOnePage(b)) {
            const __m128i lowerA = LowerBlock(Load(a));
            const __m128i lowerB = LowerBlock(Load(b));
            const unsigned goOn =
                EqualUnits(lowerA, lowerB) & ~EqualUnits(lowerA, _mm_setzero_si128()) & AsciiUnits(lowerA);
            const std::size_t same = goOn == 0xFFFF ? blockUnits : FirstUnit(~goOn);
            a += same;
            b += same;
            count -= same;
            if (same == blockUnits)
                continue;
        }
#endif
        const char16_t lowerA = Lower(*a);
        const char16_t lowerB = Lower(*b);
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
#ifdef TVUT_READS_BLOCKS
    if (clsBlocks::Fit(text)) {
        const __m128i wanted = _mm_set1_epi16(static_cast<short>(character));
        const __m128i zero = _mm_setzero_si128();
        text = FirstMarked(text, EndOf(text, unlimited), [&](__m128i block) {
            return EqualUnits(block, wanted) | EqualUnits(block, zero);
        });
        return *text == character ? text : nullptr;
    }
#endif
    while (*text != character && *text != 0)
        ++text;
    return *text == character ? text : nullptr;
}

const char16_t* UtilpFindLast(const char16_t* text, char16_t character) {
    if (character == 0)
        return text + UtilpLength(text);
    const char16_t* last = nullptr;
#ifdef TVUT_READS_BLOCKS
    if (clsBlocks::Fit(text)) {
        const __m128i wanted = _mm_set1_epi16(static_cast<short>(character));
        for (clsBlocks blocks(text);; blocks.Next()) {
            const __m128i block = blocks.Block();
            const unsigned ends = blocks.OfText(EqualUnits(block, _mm_setzero_si128()));
            const unsigned before = (ends & (0u - ends)) - 1; // all bits when there is no end
            const unsigned hits = blocks.OfText(EqualUnits(block, wanted)) & before;
            if (hits != 0)
                last = blocks.Unit((31u - static_cast<unsigned>(std::countl_zero(hits))) / 2);
            if (ends != 0)
                return last;
        }
    }
#endif
    for (; *text != 0; ++text) {
        if (*text == character)
            last = text;
    }
    return last;
}

const char16_t* UtilpFindPart(const char16_t* text, const char16_t* part) {
    const std::size_t length = UtilpLength(part);
    if (length == 0)
        return text;
    for (; (text = UtilpFind(text, *part)) != nullptr; ++text) {
        if (UtilpCompare(text, part, length) == 0)
            return text;
    }
    return nullptr;
}

void UtilpTrimLeft(char16_t* text) {
    std::size_t blanks = 0;
    while (text[blanks] == u' ')
        ++blanks;
    if (blanks != 0)
        UtilpMove(text, text + blanks, (UtilpLength(text + blanks) + 1) * sizeof(char16_t));
}

void UtilpTrimRight(char16_t* text) {
    std::size_t length = UtilpLength(text);
    while (length != 0 && text[length - 1] == u' ')
        --length;
    text[length] = 0;
}

void UtilpStuff(char16_t* text, std::size_t position, std::size_t count, const char16_t* insertion) {
    const std::size_t length = UtilpLength(text);
    if (position > length)
        return;
    const std::size_t removed = std::min(count, length - position);
    const std::size_t inserted = insertion ? UtilpLength(insertion) : 0;
    char16_t* const place = text + position;
    const std::size_t behind = length - position - removed + 1; // with the terminator
    UtilpMove(place + inserted, place + removed, behind * sizeof(char16_t));
    UtilpMove(place, insertion, inserted * sizeof(char16_t));
}

void UtilpKeep(char16_t* text, std::size_t position, std::size_t count) {
    const std::size_t kept = UtilpLength(text + position, count);
    UtilpMove(text, text + position, kept * sizeof(char16_t));
    text[kept] = 0;
}

} // namespace tvut
