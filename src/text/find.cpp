// A part is looked for by two of its units: eight places at a time are compared with its first unit, and
// those after them with its last. Only where both agree is the rest compared. Texts where that happens all
// the time cost their length times the part's; parts are short here.
#include "text/find.h"

namespace tvut {

namespace {

// Whether a part stands at a place where its first and last unit do.
bool HasMiddle(const char16_t* place, std::u16string_view part) {
    for (std::size_t at = 1; at + 1 < part.size(); ++at) {
        if (UtilpLoadUnit(place + at) != UtilpLoadUnit(part.data() + at))
            return false;
    }
    return true;
}

char16_t FirstOf(std::u16string_view part) {
    return UtilpLoadUnit(part.data());
}
char16_t LastOf(std::u16string_view part) {
    return UtilpLoadUnit(part.data() + part.size() - 1);
}

bool Stands(const char16_t* place, std::u16string_view part) {
    return UtilpLoadUnit(place) == FirstOf(part) && UtilpLoadUnit(place + part.size() - 1) == LastOf(part) &&
           HasMiddle(place, part);
}

unsigned EqualUnits(const char16_t* text, char16_t unit) {
    return UtilpEqualUnits(UtilpLoadEight(text), _mm_set1_epi16(static_cast<short>(unit)));
}

// Which of eight places a part may stand at, by its first and last unit.
unsigned Candidates(const char16_t* text, std::u16string_view part) {
    return EqualUnits(text, FirstOf(part)) & EqualUnits(text + part.size() - 1, LastOf(part));
}

const char16_t* LastUnit(const char16_t* text, unsigned mask) {
    return text + (31 - std::countl_zero(mask)) / 2;
}

// How many places there are for a part.
std::ptrdiff_t Places(const char16_t* text, const char16_t* end, std::u16string_view part) {
    return end - text - static_cast<std::ptrdiff_t>(part.size()) + 1;
}

} // namespace

const char16_t* UtilpFindLast(const char16_t* text, const char16_t* end, char16_t unit) {
    for (; end - text >= 8; end -= 8) {
        if (const unsigned marks = EqualUnits(end - 8, unit); marks != 0)
            return LastUnit(end - 8, marks);
    }
    while (end != text) {
        if (*--end == unit)
            return end;
    }
    return nullptr;
}

const char16_t* UtilpFindFirst(const char16_t* text, const char16_t* end, std::u16string_view part) {
    std::ptrdiff_t places = Places(text, end, part);
    for (; places >= 8; places -= 8, text += 8) {
        for (unsigned hits = Candidates(text, part); hits != 0; hits &= hits - 1, hits &= hits - 1) {
            const char16_t* const place = text + UtilpFirstUnit(hits); // two bits a unit
            if (HasMiddle(place, part))
                return place;
        }
    }
    for (; places > 0; --places, ++text) {
        if (Stands(text, part))
            return text;
    }
    return nullptr;
}

const char16_t* UtilpFindLast(const char16_t* text, const char16_t* end, std::u16string_view part) {
    std::ptrdiff_t places = Places(text, end, part);
    for (; places >= 8; places -= 8) {
        const char16_t* const block = text + places - 8;
        for (unsigned hits = Candidates(block, part); hits != 0;) {
            const char16_t* const place = LastUnit(block, hits);
            if (HasMiddle(place, part))
                return place;
            hits &= ~(3u << 2 * (place - block));
        }
    }
    while (places > 0) {
        if (Stands(text + --places, part))
            return text + places;
    }
    return nullptr;
}

} // namespace tvut
