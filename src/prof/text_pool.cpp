// Pooling is an economy and no promise: two equal texts may stand beside each other, and nothing relies on
// equal texts being one. So a table may forget, and it does: each hash has one pair of places, and a new text
// takes the place of the older one.
#include "prof/text_pool.h"

#include "text/hash.h"
#include "text/units.h"

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

} // namespace

scText* clsTextPool::Find(std::u16string_view text, std::uint32_t hash) const {
    if (pairCount_ == 0)
        return nullptr;
    const scPair& pair = PairOf(hash);
    const auto holds = [&](const scPlace& place) {
        return place.hash == hash && place.text && UtilpEqual(ProfpView(place.text), text);
    };
    if (holds(pair.newer))
        return pair.newer.text;
    return holds(pair.older) ? pair.older.text : nullptr;
}

void clsTextPool::Insert(scText* text, std::uint32_t hash) {
    if (insertions_ == pairCount_ && pairCount_ < mostPairs)
        Grow();
    ++insertions_;
    scPair& pair = PairOf(hash);
    pair.older = pair.newer;
    pair.newer = {hash, text};
}

void clsTextPool::Remove(const scText* text, std::uint32_t hash) noexcept {
    scPair& pair = PairOf(hash);
    if (pair.newer.text == text)
        pair.newer.text = nullptr;
    else if (pair.older.text == text)
        pair.older.text = nullptr;
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
        for (const scPlace& place : {oldPairs[i].older, oldPairs[i].newer}) {
            if (place.text)
                Insert(place.text, place.hash);
        }
    }
    slab_.Free(oldPairs, oldCount * sizeof(scPair));
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
    return Pooled(Pool::values, text, UtilpHashText(text));
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

scText* clsTextStore::Create(std::u16string_view text, Pool pool) {
    scText* const created = Allocate(text.size(), pool);
    UtilpCopy(created->Characters(), text.data(), text.size());
    return created;
}

scText* clsTextStore::Allocate(std::size_t length, Pool pool) {
    if (length > maximumLength)
        throw std::bad_alloc();
    auto* const created = static_cast<scText*>(slab_.Allocate(BlockSize(length)));
    created->references = 1;
    created->length = static_cast<std::uint32_t>(length) & 0x3FFFFFFFu;
    created->pool = static_cast<std::uint32_t>(pool) & 3u;
    created->Characters()[length] = u'\0';
    return created;
}

void clsTextStore::Destroy(scText* text) noexcept {
    const auto pool = static_cast<Pool>(text->pool);
    if (pool != Pool::none)
        PoolOf(pool).Remove(text, UtilpHashText(ProfpView(text)));
    slab_.Free(text, BlockSize(text->length));
}

} // namespace tvut
