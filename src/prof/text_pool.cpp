#include "prof/text_pool.h"

#include "text/hash.h"

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
    if (capacity_ == 0)
        return nullptr;
    const std::uint32_t mask = capacity_ - 1;
    for (std::uint32_t at = hash & mask; slots_[at].text; at = (at + 1) & mask) {
        if (slots_[at].hash == hash && ProfpView(slots_[at].text) == text)
            return slots_[at].text;
    }
    return nullptr;
}

void clsTextPool::Insert(scText* text, std::uint32_t hash) {
    if (count_ >= capacity_ - capacity_ / 4)
        Grow();
    const std::uint32_t mask = capacity_ - 1;
    std::uint32_t at = hash & mask;
    while (slots_[at].text)
        at = (at + 1) & mask;
    slots_[at] = {hash, text};
    ++count_;
}

// Linear probing without markers: the entries behind the gap that may move into it do.
void clsTextPool::Remove(const scText* text, std::uint32_t hash) noexcept {
    const std::uint32_t mask = capacity_ - 1;
    std::uint32_t gap = hash & mask;
    while (slots_[gap].text != text)
        gap = (gap + 1) & mask;
    for (std::uint32_t at = (gap + 1) & mask; slots_[at].text; at = (at + 1) & mask) {
        const std::uint32_t home = slots_[at].hash & mask;
        if (((at - home) & mask) >= ((at - gap) & mask)) {
            slots_[gap] = slots_[at];
            gap = at;
        }
    }
    slots_[gap].text = nullptr;
    --count_;
}

void clsTextPool::Grow() {
    const std::uint32_t newCapacity = capacity_ ? capacity_ * 2 : 16;
    auto* const newSlots = static_cast<scSlot*>(slab_.Allocate(newCapacity * sizeof(scSlot)));
    std::memset(newSlots, 0, newCapacity * sizeof(scSlot));
    const std::uint32_t mask = newCapacity - 1;
    for (std::uint32_t i = 0; i < capacity_; ++i) {
        if (!slots_[i].text)
            continue;
        std::uint32_t at = slots_[i].hash & mask;
        while (newSlots[at].text)
            at = (at + 1) & mask;
        newSlots[at] = slots_[i];
    }
    slab_.Free(slots_, capacity_ * sizeof(scSlot));
    slots_ = newSlots;
    capacity_ = newCapacity;
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

scText* clsTextStore::Create(std::u16string_view text, Pool pool) {
    if (text.size() > maximumLength)
        throw std::bad_alloc();
    auto* const created = static_cast<scText*>(slab_.Allocate(BlockSize(text.size())));
    created->references = 1;
    created->length = static_cast<std::uint32_t>(text.size()) & 0x3FFFFFFFu;
    created->pool = static_cast<std::uint32_t>(pool) & 3u;
    std::memcpy(created->Characters(), text.data(), text.size() * sizeof(char16_t));
    created->Characters()[text.size()] = u'\0';
    return created;
}

void clsTextStore::Destroy(scText* text) noexcept {
    const auto pool = static_cast<Pool>(text->pool);
    if (pool != Pool::none)
        PoolOf(pool).Remove(text, UtilpHashText(ProfpView(text)));
    slab_.Free(text, BlockSize(text->length));
}

} // namespace tvut
