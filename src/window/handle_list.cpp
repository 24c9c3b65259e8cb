// Two tables: entries by handle, and stacks by their frames, each of which counts its entries. A report
// counts the handles of each stack in the stacks themselves and takes memory for what it shows alone.
#include "window/handle_list.h"

#include <algorithm>
#include <limits>

namespace tvut {

namespace {

constexpr std::uint32_t golden = 0x9E3779B1; // spreads neighbouring numbers; their high bits best

constexpr std::uint32_t Folded(std::uint32_t product) {
    return product ^ product >> 16;
}

} // namespace

// ---- What is noted ---------------------------------------------------------------------------------

clsHandleStack::clsHandleStack(std::span<const void* const> frames) noexcept
    : count_(static_cast<std::uint32_t>(std::min(frames.size(), most))) {
    std::copy_n(frames.begin(), count_, frames_.begin());
}

std::uint32_t clsHandleStack::Hash() const noexcept {
    std::uint32_t hash = count_;
    for (const void* const frame : Frames())
        hash =
            (hash << 5 ^ hash >> 27 ^ static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(frame))) *
            golden;
    return Folded(hash);
}

clsHandleNote::clsHandleNote(std::uint32_t handle, std::uint8_t kind, std::u16string_view label,
                             std::uint32_t now) noexcept
    : handle_(handle), addedAt_(now), kind_(kind),
      labelLength_(static_cast<std::uint8_t>(std::min(label.size(), longestLabel))) {
    std::copy_n(label.begin(), labelLength_, label_.begin());
}

// ---- Entries ---------------------------------------------------------------------------------------

std::uint32_t clsHandleList::HashOf(std::uint32_t handle) noexcept {
    return Folded(handle * golden);
}

std::uint32_t clsHandleList::Find(std::uint32_t handle) const noexcept {
    return entries_.Find(HashOf(handle), [&](const scEntry& entry) { return entry.note.Handle() == handle; });
}

clsHandleList::Added clsHandleList::Add(const clsHandleNote& note, const clsHandleStack& stack,
                                        scKeptHandle& old) {
    static_assert(sizeof(scEntry) <= 88, "with two words of its chain 96 bytes");
    const std::uint32_t place = Find(note.Handle());
    if (place == none && entries_.Size() == most)
        return Added::tooMany;
    const std::uint32_t taken = TakeStack(stack);
    if (place != none) {
        scEntry& entry = entries_[place];
        old = CopyOf(entry);
        --counts_[entry.note.Kind()];
        LeaveStack(entry.stack);
        Fill(entry, note, taken);
        return Added::inPlace;
    }
    scEntry entry;
    Fill(entry, note, taken);
    try {
        entries_.Add(entry);
    } catch (...) {
        --counts_[note.Kind()];
        LeaveStack(taken);
        throw;
    }
    return Added::asNew;
}

void clsHandleList::Fill(scEntry& entry, const clsHandleNote& note, std::uint32_t stack) noexcept {
    entry.stack = stack;
    entry.serial = serial_++;
    entry.mark = marks_;
    entry.note = note;
    ++counts_[note.Kind()];
}

clsHandleList::Removed clsHandleList::Remove(std::uint32_t handle, std::uint8_t kind) noexcept {
    const std::uint32_t place = Find(handle);
    if (place == none)
        return Removed::notThere;
    const scEntry& entry = entries_[place];
    if (kind != anyKind && kind != entry.note.Kind())
        return Removed::otherKind;
    --counts_[entry.note.Kind()];
    LeaveStack(entry.stack);
    entries_.Remove(place);
    return Removed::yes;
}

std::uint32_t clsHandleList::Count(std::uint8_t kind) const noexcept {
    return kind == anyKind ? entries_.Size() : counts_[kind];
}

std::uint32_t clsHandleList::Mark() noexcept {
    constexpr auto last = static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max());
    return marks_ < last ? ++marks_ : marks_;
}

// ---- Stacks ----------------------------------------------------------------------------------------

std::uint32_t clsHandleList::TakeStack(const clsHandleStack& stack) {
    const std::uint32_t hash = stack.Hash();
    std::uint32_t place =
        stacks_.Find(hash, [&](const scStack& kept) { return kept.hash == hash && kept.frames == stack; });
    if (place == none)
        place = stacks_.Add({none, hash, 0, stack, 0, none});
    ++stacks_[place].users;
    return place;
}

void clsHandleList::LeaveStack(std::uint32_t place) noexcept {
    if (--stacks_[place].users == 0)
        stacks_.Remove(place);
}

// ---- Reports ---------------------------------------------------------------------------------------

scKeptHandle clsHandleList::CopyOf(const scEntry& entry) const noexcept {
    return {entry.note, stacks_[entry.stack].frames};
}

// Numbers of additions begin again after the last one; those of two entries that are in lie close together.
bool clsHandleList::IsOlder(std::uint32_t one, std::uint32_t other) const noexcept {
    return static_cast<std::int32_t>(entries_[one].serial - entries_[other].serial) < 0;
}

template <class Visit>
void clsHandleList::ForEachSince(std::uint8_t kind, std::uint32_t mark, Visit visit) {
    entries_.ForEach([&](std::uint32_t place, const scEntry& entry) {
        if ((kind == anyKind || kind == entry.note.Kind()) && entry.mark >= mark)
            visit(place, entry);
    });
}

std::uint32_t clsHandleList::CountSince(std::uint8_t kind, std::uint32_t mark) noexcept {
    std::uint32_t count = 0;
    ForEachSince(kind, mark, [&](std::uint32_t, const scEntry&) { ++count; });
    return count;
}

scHandlesLeft clsHandleList::Left(std::uint8_t kind, std::uint32_t mark, std::size_t mostGroups) {
    scHandlesLeft left;
    stacks_.ForEach([](std::uint32_t, scStack& stack) { stack.handles = 0; });
    ForEachSince(kind, mark, [&](std::uint32_t place, const scEntry& entry) {
        scStack& stack = stacks_[entry.stack];
        left.stacks += stack.handles == 0;
        if (stack.handles++ == 0 || IsOlder(place, stack.first))
            stack.first = place;
        ++left.handles;
    });
    std::vector<std::uint32_t> order;
    order.reserve(left.stacks);
    stacks_.ForEach([&](std::uint32_t place, const scStack& stack) {
        if (stack.handles != 0)
            order.push_back(place);
    });
    const auto shown = order.begin() + static_cast<std::ptrdiff_t>(std::min(order.size(), mostGroups));
    std::partial_sort(order.begin(), shown, order.end(), [&](std::uint32_t one, std::uint32_t other) {
        const scStack &a = stacks_[one], &b = stacks_[other];
        return a.handles != b.handles ? a.handles > b.handles : IsOlder(a.first, b.first);
    });
    left.groups.reserve(static_cast<std::size_t>(shown - order.begin()));
    std::for_each(order.begin(), shown, [&](std::uint32_t place) {
        const scStack& stack = stacks_[place];
        left.groups.push_back({CopyOf(entries_[stack.first]), stack.handles});
    });
    return left;
}

std::vector<scHandleEntry> clsHandleList::Entries(std::uint8_t kind) {
    std::vector<scHandleEntry> entries;
    entries.reserve(Count(kind));
    ForEachSince(kind, 0, [&](std::uint32_t, const scEntry& entry) {
        entries.push_back({entry.note.Handle(), entry.note.Kind(), entry.serial});
    });
    return entries;
}

std::vector<scKeptHandle> clsHandleList::StillIn(std::span<const scHandleEntry> entries) {
    std::vector<std::uint32_t> places;
    places.reserve(entries.size());
    for (const scHandleEntry& entry : entries) {
        const std::uint32_t place = Find(entry.handle);
        if (place != none && entries_[place].serial == entry.serial)
            places.push_back(place);
    }
    const auto firstOf = [&](std::uint32_t place) -> std::uint32_t& {
        return stacks_[entries_[place].stack].first;
    };
    for (const std::uint32_t place : places)
        firstOf(place) = place;
    for (const std::uint32_t place : places)
        if (IsOlder(place, firstOf(place)))
            firstOf(place) = place;
    std::sort(places.begin(), places.end(), [&](std::uint32_t one, std::uint32_t other) {
        const std::uint32_t a = firstOf(one), b = firstOf(other);
        return a != b ? IsOlder(a, b) : IsOlder(one, other);
    });
    std::vector<scKeptHandle> kept;
    kept.reserve(places.size());
    for (const std::uint32_t place : places)
        kept.push_back(CopyOf(entries_[place]));
    return kept;
}

} // namespace tvut
