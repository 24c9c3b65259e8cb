// The texts of one profile's tree: names and values, each one block, equal ones shared.
//
// A text is one block of the slab: reference count, length, characters, terminator. Each pool
// remembers the texts used last and owns no reference to them, so an equal text is found before a new
// one is built, and a text leaves its pool with its last reference. Texts never leave their profile
// and a profile is used by one thread at a time, so the counts are plain numbers.
#pragma once

#include "prof/slab.h"

#include <cstdint>
#include <string_view>

namespace tvut {

enum class Pool : std::uint32_t { none, names, values };

// The head of a text's block; the characters and a terminating NUL follow it. The empty text is
// never stored: it is the null pointer.
struct scText {
    std::uint32_t references;
    std::uint32_t length : 30;
    std::uint32_t pool : 2;

    char16_t* Characters() { return reinterpret_cast<char16_t*>(this + 1); }
    const char16_t* Characters() const { return reinterpret_cast<const char16_t*>(this + 1); }
};

// The empty text as callers see it, terminated like any other.
constexpr std::u16string_view emptyText = u"";

inline std::u16string_view ProfpView(const scText* text) {
    return text ? std::u16string_view(text->Characters(), text->length) : emptyText;
}

// The texts of one kind that were used last: a table of pairs of places, the newer one first.
//
// It is kept small enough for the processor's nearest cache. A table of all texts would share a few
// more of them, but a profile's long tail of values that occur once makes every look into it a miss
// of the cache, which costs more than all the rest of loading an item.
class clsTextPool {
  public:
    explicit clsTextPool(clsSlab& slab) : slab_(slab) {}
    clsTextPool(const clsTextPool&) = delete;
    clsTextPool& operator=(const clsTextPool&) = delete;

    scText* Find(std::u16string_view text, std::uint32_t hash) const;
    void Insert(scText* text, std::uint32_t hash); // throws std::bad_alloc, changing nothing
    void Remove(const scText* text, std::uint32_t hash) noexcept;

  private:
    struct scPlace {
        std::uint32_t hash;
        scText* text;
    };
    struct scPair {
        scPlace places[2]; // the newer one first
    };
    static constexpr std::uint32_t firstPairs = 16;
    static constexpr std::uint32_t mostPairs = 2048; // 32 KB

    scPair& PairOf(std::uint32_t hash) const { return pairs_[hash & (pairCount_ - 1)]; }
    void Grow();

    clsSlab& slab_;
    scPair* pairs_ = nullptr;
    std::uint32_t pairCount_ = 0; // a power of two, or 0
    std::uint32_t insertions_ = 0;
};

class clsTextStore {
  public:
    clsTextStore(clsSlab& slab, bool pooling) : slab_(slab), names_(slab), values_(slab), pooling_(pooling) {}

    // Return a text with one reference more. Throw std::bad_alloc.
    scText* Name(std::u16string_view text, std::uint32_t hash);
    scText* Value(std::u16string_view text);

    // A text of a length, terminated, to be filled before anybody reads it; never shared with equal ones.
    scText* Unfilled(std::size_t length);

    static scText* Share(scText* text) {
        if (text)
            ++text->references;
        return text;
    }

    // A text that is in the tree already, for one more entry: shared, unless equal texts are not.
    scText* Again(scText* text) { return pooling_ || !text ? Share(text) : Copy(*text); }

    void Release(scText* text) noexcept {
        if (text && --text->references == 0)
            Destroy(text);
    }

  private:
    clsTextPool& PoolOf(Pool pool) { return pool == Pool::names ? names_ : values_; }
    scText* Pooled(Pool pool, std::u16string_view text, std::uint32_t hash);
    scText* Copy(const scText& text);
    scText* Create(std::u16string_view text, Pool pool);
    scText* Allocate(std::size_t length, Pool pool);
    void Destroy(scText* text) noexcept;

    clsSlab& slab_;
    clsTextPool names_;
    clsTextPool values_;
    const bool pooling_;
};

} // namespace tvut
