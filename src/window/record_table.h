// Records that are found by a hash, in memory that never moves: pieces of a fixed number of them, and chains
// through the records themselves.
//
// A record has `next`, which belongs to the table, and `Hash()`, which never changes while it is in. Free
// records are taken again before new pieces are made; a piece is given back with the table only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace tvut {

template <class Record>
class clsRecordTable {
  public:
    static constexpr std::uint32_t none = UINT32_MAX;

    std::uint32_t Size() const noexcept { return size_; }
    Record& operator[](std::uint32_t place) noexcept { return pieces_[place / perPiece][place % perPiece]; }
    const Record& operator[](std::uint32_t place) const noexcept {
        return pieces_[place / perPiece][place % perPiece];
    }

    // The place of the record with a hash that passes a test; none when there is no such.
    template <class Test>
    std::uint32_t Find(std::uint32_t hash, Test test) const {
        if (chains_.empty())
            return none;
        std::uint32_t place = chains_[ChainOf(hash)];
        while (place != none && !test((*this)[place]))
            place = (*this)[place].next;
        return place;
    }

    // Throws std::bad_alloc, and is as before then.
    std::uint32_t Add(const Record& record) {
        if (size_ >= chains_.size())
            Grow();
        const std::uint32_t place = TakePlace();
        (*this)[place] = record;
        Chain(place);
        ++size_;
        return place;
    }

    void Remove(std::uint32_t place) noexcept {
        std::uint32_t* link = &chains_[ChainOf((*this)[place].Hash())];
        while (*link != place)
            link = &(*this)[*link].next;
        *link = (*this)[place].next;
        (*this)[place].next = free_;
        free_ = place;
        --size_;
    }

    template <class Visit>
    void ForEach(Visit visit) {
        for (const std::uint32_t first : chains_)
            for (std::uint32_t place = first; place != none; place = (*this)[place].next)
                visit(place, (*this)[place]);
    }

  private:
    static constexpr std::size_t perPiece = 64, firstChains = 64;

    std::size_t ChainOf(std::uint32_t hash) const noexcept { return hash & (chains_.size() - 1); }

    void Chain(std::uint32_t place) noexcept {
        std::uint32_t& first = chains_[ChainOf((*this)[place].Hash())];
        (*this)[place].next = first;
        first = place;
    }

    void Grow() {
        std::vector<std::uint32_t> longer(chains_.empty() ? firstChains : chains_.size() * 2, none);
        chains_.swap(longer);
        for (std::uint32_t place : longer)
            while (place != none) {
                const std::uint32_t next = (*this)[place].next;
                Chain(place);
                place = next;
            }
    }

    std::uint32_t TakePlace() {
        if (free_ != none) {
            const std::uint32_t place = free_;
            free_ = (*this)[place].next;
            return place;
        }
        if (used_ == pieces_.size() * perPiece)
            pieces_.push_back(std::make_unique<Record[]>(perPiece));
        return used_++;
    }

    std::vector<std::unique_ptr<Record[]>> pieces_;
    std::vector<std::uint32_t> chains_; // a power of two of them, one a record at least
    std::uint32_t free_ = none;
    std::uint32_t used_ = 0; // places that have been taken at least once
    std::uint32_t size_ = 0;
};

} // namespace tvut
