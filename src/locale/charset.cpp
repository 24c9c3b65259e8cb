// The scripts found so far are a set of bits. A text keeps to a few spans of units that can add nothing to
// that set, so blocks of it are compared with three spans, and only a unit outside of them is looked up in
// the table. Where such units come thick, blocks are compared with all rows that would add something, which
// takes longer but never stops in vain. As soon as the set holds more than one script, or an ideograph, which
// several languages share, the walk ends and the code page decides.
#include "locale/charset.h"

#include "text/blocks.h"
#include "text/units.h"

#include <algorithm>
#include <array>
#include <bit>

namespace tvut {

namespace {

// A bit for each script that a character set of its own shows. The set of scripts of a text decides.
enum : unsigned {
    kana = 0x001,
    ideograph = 0x007, // Japanese and both sorts of Chinese: never a single bit
    korean = 0x008,
    thai = 0x010,
    greek = 0x020,
    cyrillic = 0x040,
    arabic = 0x080,
    hebrew = 0x100,
};

struct scRow {
    char16_t first, last;
    unsigned scripts;
};

constexpr scRow rows[] = {
    {0x0370, 0x03FF, greek},
    {0x0400, 0x052F, cyrillic},
    {0x0590, 0x05FF, hebrew},
    {0x0600, 0x06FF, arabic},
    {0x0E00, 0x0E7F, thai},
    {0x1100, 0x11FF, korean},
    {0x1F00, 0x1FFF, greek},
    {0x3040, 0x30FF, kana},
    {0x3130, 0x318F, korean},
    {0x3300, 0x3357, kana},
    {0x3400, 0x4DFF, korean}, // ideographs, which have always been shown as
                              // Korean
    {0x4E00, 0x9FAF, ideograph},
    {0xAC00, 0xD7A3, korean},
    {0xFE70, 0xFEFF, arabic},
};

using RowOfPage = std::array<std::uint8_t, 256>;

// For each 256 units, the first row that does not end before them.
constexpr RowOfPage FirstRows() {
    RowOfPage numbers{};
    for (unsigned page = 0; page < numbers.size(); ++page) {
        while (numbers[page] < std::size(rows) && rows[numbers[page]].last < page * 256)
            ++numbers[page];
    }
    return numbers;
}

constexpr RowOfPage firstRows = FirstRows();

unsigned ScriptsOf(char16_t unit) {
    for (const scRow* row = rows + firstRows[unit >> 8]; row != std::end(rows) && row->first <= unit; ++row) {
        if (unit <= row->last)
            return row->scripts;
    }
    return 0;
}

struct scSpan {
    char16_t first, last;
    bool Holds(char16_t unit) const { return unit >= first && unit <= last; }
};

// The widest run of units around one that add nothing once some scripts were found; the unit is
// such a one itself. The terminator lies in no span.
scSpan SpanAround(char16_t unit, unsigned found) {
    scSpan span{1, 0xFFFF};
    for (const scRow& row : rows) {
        if ((row.scripts & ~found) == 0)
            continue;
        if (row.first > unit) {
            span.last = static_cast<char16_t>(row.first - 1);
            break;
        }
        span.first = static_cast<char16_t>(row.last + 1);
    }
    return span;
}

// A span to compare blocks with.
struct scBlockSpan {
    scBlockSpan() = default;
    explicit scBlockSpan(const scSpan& span)
        : first(_mm_set1_epi16(static_cast<short>(span.first))),
          width(_mm_set1_epi16(static_cast<short>(span.last - span.first))) {}

    // Marks the units that lie in the span: those for which unit - first, which wraps below it, is not above
    // last - first.
    __m128i Marks(__m128i block) const {
        return _mm_cmpeq_epi16(_mm_subs_epu16(_mm_sub_epi16(block, first), width), _mm_setzero_si128());
    }

    __m128i first, width;
};

// The spans that a text keeps to: Latin letters, and the last two others. A text seldom leaves them, say
// Cyrillic letters and typographic marks, so nearly all of it is only passed over, at the speed of memory.
class clsSpans {
  public:
    explicit clsSpans(unsigned found)
        : found_(found), latin_(SpanAround(1, found)), recent_(latin_), before_(latin_) {}

    void Add(char16_t unit) {
        before_ = recent_;
        recent_ = SpanAround(unit, found_);
    }

    // The first unit outside, such as the terminator.
    const char16_t* FirstOutside(const char16_t* text) const {
        if (clsBlocks::Fit(text)) {
            const scBlockSpan latin(latin_), recent(recent_), before(before_);
            return UtilpFirstMarked(text, [&](__m128i block) {
                const __m128i inside =
                    _mm_or_si128(_mm_or_si128(latin.Marks(block), recent.Marks(block)), before.Marks(block));
                return static_cast<unsigned>(_mm_movemask_epi8(inside)) ^ 0xFFFFu;
            });
        }
        while (Hold(UtilpLoadUnit(text)))
            ++text;
        return text;
    }

  private:
    bool Hold(char16_t unit) const {
        return latin_.Holds(unit) || recent_.Holds(unit) || before_.Holds(unit);
    }

    unsigned found_;
    scSpan latin_, recent_, before_;
};

// All units that would add something, in as few spans as can be: rows that touch are one.
class clsAddingSpans {
  public:
    explicit clsAddingSpans(unsigned found) {
        scSpan span{0, 0}; // the terminator
        for (const scRow& row : rows) {
            if ((row.scripts & ~found) == 0)
                continue;
            if (span.last + 1 != row.first) {
                spans_[count_++] = scBlockSpan(span);
                span.first = row.first;
            }
            span.last = row.last;
        }
        spans_[count_++] = scBlockSpan(span);
    }

    // The first unit that would add something or is the terminator; or one a good way on.
    const char16_t* FirstIn(const char16_t* text) const {
        std::size_t blocksLeft = 128;
        return UtilpFirstMarked(text, [&](__m128i block) {
            __m128i adding = spans_[0].Marks(block);
            for (std::size_t at = 1; at != count_; ++at)
                adding = _mm_or_si128(adding, spans_[at].Marks(block));
            return --blocksLeft == 0 ? 0xFFFFu : static_cast<unsigned>(_mm_movemask_epi8(adding));
        });
    }

  private:
    std::array<scBlockSpan, std::size(rows) + 1> spans_;
    std::size_t count_ = 0;
};

struct scCharset {
    unsigned key; // a code page, or a script
    std::int32_t charset;
};

constexpr std::int32_t shiftJis = 128, hangul = 129, gb2312 = 134, big5 = 136, greekSet = 161,
                       hebrewSet = 177, arabicSet = 178, russian = 204, thaiSet = 222;

constexpr scCharset byCodePage[] = {{932, shiftJis}, {936, gb2312}, {949, hangul}, {950, big5}};
constexpr scCharset byScript[] = {{greek, greekSet},   {cyrillic, russian}, {hebrew, hebrewSet},
                                  {arabic, arabicSet}, {thai, thaiSet},     {korean, hangul},
                                  {kana, shiftJis}};

template <std::size_t count>
std::int32_t Find(const scCharset (&table)[count], unsigned key) {
    const auto* const row = std::ranges::find(table, key, &scCharset::key);
    return row == std::end(table) ? 0 : row->charset;
}

} // namespace

std::int32_t UtilpLikelyCharset(const char16_t* text, unsigned processCodePage) noexcept {
    constexpr std::size_t runUnits = 8;   // looked up one by one, which costs less than a new span for each
    constexpr std::ptrdiff_t thick = 128; // units between two that lie outside
    unsigned found = 0;
    clsSpans spans(found);
    const char16_t* last = nullptr; // where one lay outside before
    for (;;) {
        text = spans.FirstOutside(text);
        const bool isThick = last && text - last < thick && clsBlocks::Fit(text);
        if (isThick)
            text = clsAddingSpans(found).FirstIn(text);
        last = isThick ? nullptr : text;
        const char16_t outside = UtilpLoadUnit(text);
        for (const char16_t* const end = text + runUnits; text != end; ++text) {
            const char16_t unit = UtilpLoadUnit(text);
            if (unit == 0)
                return Find(byScript, found);
            const unsigned scripts = ScriptsOf(unit);
            if ((scripts & ~found) == 0)
                continue;
            found |= scripts;
            if (!std::has_single_bit(found))
                return Find(byCodePage, processCodePage); // whatever follows
            spans = clsSpans(found);
        }
        if (!isThick)
            spans.Add(outside);
    }
}

} // namespace tvut
