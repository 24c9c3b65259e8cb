// Pooling is an economy and no promise: two equal texts may stand beside each other, and nothing relies on
// equal texts being one. So a table may forget, and it does: each hash has one pair of places, and a new text
// takes the place of the older one.
#include "prof/text_pool.h"

#include "text/hash.h"
#include "text/scan.h"

#include <cstring>
#include <new>

namespace tvut {

namespace {

constexpr std::size_t maximumLength = (std::size_t{1} << 30) - 1;

constexpr std::size_t BlockSize(std::size_t length) {
    return sizeof(scText) + (length + 1) * sizeof(char16_t);
}

bool IsDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

// Points, rectangles, colours and longer numbers hardly ever repeat: looking for an equal one costs
// more than it saves.
bool LooksUnique(std::u16string_view value) {
    if (value.front() == u'(')
        return true;
    if (IsDigit(value.front()))
        return value.size() >= 4;
    return value.front() == u'-' && value.size() > 4 && IsDigit(value[1]);
}

// A hash of values for their pool, whose places are as good a guess as any: texts that somebody has made so
// that they collide are stored once each, and that is all. So it needs no seed and no care, but to be fast
// with texts of which no two have the same length: blocks that may overlap are weighed and added.
class clsValueHash {
  public:
    static std::uint32_t Of(std::u16string_view text) {
        const std::size_t length = text.size();
        if (length < 4) // 1 to 3
            return Mixed(text.front() | static_cast<std::uint32_t>(text[length / 2]) << 11 |
                             static_cast<std::uint32_t>(text.back()) << 22,
                         length);
        const char16_t* const begin = text.data();
        __m128i sum = _mm_setzero_si128();
        if (length < 16) {
            const auto load = [=](std::size_t place) { return UtilpLoadFour(begin + place); };
            const clsQuarters quarters(length);
            Add(sum, quarters.LowerHalf(load));
            Add(sum, quarters.UpperHalf(load));
        } else {
            for (std::size_t at = 0; at + 8 < length; at += 8)
                Add(sum, UtilpLoadEight(begin + at));
            Add(sum, UtilpLoadEight(begin + length - 8));
        }
        sum = _mm_add_epi32(sum, _mm_shuffle_epi32(sum, _MM_SHUFFLE(1, 0, 3, 2)));
        sum = _mm_add_epi32(sum, _mm_shuffle_epi32(sum, _MM_SHUFFLE(2, 3, 0, 1)));
        return Mixed(static_cast<std::uint32_t>(_mm_cvtsi128_si32(sum)), length);
    }

  private:
    // Units at equal places of two blocks count differently.
    static void Add(__m128i& sum, __m128i block) {
        const __m128i weights = _mm_set_epi16(0x6A09, 0x1B67, 0x3C6F, 0x254F, 0x510E, 0x1B05, 0x1F83, 0x5BE1);
        sum = _mm_add_epi32(_mm_xor_si128(_mm_slli_epi32(sum, 5), sum), _mm_madd_epi16(block, weights));
    }
    static std::uint32_t Mixed(std::uint32_t sum, std::size_t length) {
        const std::uint32_t product = (sum ^ static_cast<std::uint32_t>(length)) * 0x9E3779B1u;
        return product ^ product >> 16;
    }
};

std::uint32_t HashIn(Pool pool, std::u16string_view text) {
    return pool == Pool::names ? UtilpHashText(text) : clsValueHash::Of(text);
}

} // namespace

// Which of the two places it would be in is no branch, which the processor could not foresee. Two texts of
// one hash are not worth a second look.
inline scText* clsTextPool::Find(std::u16string_view text, std::uint32_t hash) const {
    if (pairCount_ == 0)
        return nullptr;
    const scPair& pair = PairOf(hash);
    const scPlace& place = pair.places[pair.places[0].hash != hash];
    return place.hash == hash && place.text && UtilpEqual(ProfpView(place.text), text) ? place.text : nullptr;
}

void clsTextPool::Insert(scText* text, std::uint32_t hash) {
    if (insertions_ == pairCount_ && pairCount_ < mostPairs)
        Grow();
    ++insertions_;
    scPair& pair = PairOf(hash);
    pair.places[1] = pair.places[0];
    pair.places[0] = {hash, text};
}

void clsTextPool::Remove(const scText* text, std::uint32_t hash) noexcept {
    for (scPlace& place : PairOf(hash).places) {
        if (place.text == text)
            place.text = nullptr;
    }
}

// What the smaller table knew is carried over; then it takes as many insertions as there are pairs.
void clsTextPool::Grow() {
    const std::uint32_t newCount = pairCount_ ? pairCount_ * 2 : firstPairs;
    auto* const newPairs = static_cast<scPair*>(slab_.Allocate(newCount * sizeof(scPair)));
    std::memset(newPairs, 0, newCount * sizeof(scPair));
    scPair* const oldPairs = pairs_;
    const std::uint32_t oldCount = pairCount_;
    pairs_ = newPairs;
    pairCount_ = newCount;
    insertions_ = 0;
    for (std::uint32_t i = 0; i < oldCount; ++i) {
        for (const scPlace& place : {oldPairs[i].places[1], oldPairs[i].places[0]}) {
            if (place.text)
                Insert(place.text, place.hash);
        }
    }
    slab_.Free(oldPairs, oldCount * sizeof(scPair));
}

inline scText* clsTextStore::Allocate(std::size_t length, Pool pool) {
    if (length > maximumLength)
        throw std::bad_alloc();
    auto* const created = static_cast<scText*>(slab_.Allocate(BlockSize(length)));
    created->references = 1;
    created->length = static_cast<std::uint32_t>(length) & 0x3FFFFFFFu;
    created->pool = static_cast<std::uint32_t>(pool) & 3u;
    created->Characters()[length] = u'\0';
    return created;
}

inline scText* clsTextStore::Create(std::u16string_view text, Pool pool) {
    scText* const created = Allocate(text.size(), pool);
    UtilpCopy(created->Characters(), text.data(), text.size());
    return created;
}

scText* clsTextStore::Copy(const scText& text) {
    return Create(ProfpView(&text), Pool::none);
}

scText* clsTextStore::Name(std::u16string_view text, std::uint32_t hash) {
    if (text.empty())
        return nullptr;
    return pooling_ ? Pooled(Pool::names, text, hash) : Create(text, Pool::none);
}

scText* clsTextStore::Value(std::u16string_view text) {
    if (text.empty())
        return nullptr;
    if (!pooling_ || LooksUnique(text))
        return Create(text, Pool::none);
    return Pooled(Pool::values, text, clsValueHash::Of(text));
}

scText* clsTextStore::Pooled(Pool pool, std::u16string_view text, std::uint32_t hash) {
    if (scText* const known = PoolOf(pool).Find(text, hash))
        return Share(known);
    scText* const created = Create(text, pool);
    try {
        PoolOf(pool).Insert(created, hash);
    } catch (...) {
        slab_.Free(created, BlockSize(created->length));
        throw;
    }
    return created;
}

scText* clsTextStore::Unfilled(std::size_t length) {
    return length == 0 ? nullptr : Allocate(length, Pool::none);
}

void clsTextStore::Destroy(scText* text) noexcept {
    const auto pool = static_cast<Pool>(text->pool);
    if (pool != Pool::none)
        PoolOf(pool).Remove(text, HashIn(pool, ProfpView(text)));
    slab_.Free(text, BlockSize(text->length));
}

} // namespace tvut
