// A place's state is a count of its changes, with two bits below it: whether the place is taken, and which of
// its two values counts. A change writes the other value, then stores the new state; a removal stores a state
// that is not taken, and only after that can the place get another name. So a reader that finds the same
// state before and after it has copied a note has copied a whole one; it tries again some times, as long as
// others keep writing just this note.
#include "runtime/crash/notes.h"

#include <algorithm>
#include <mutex>

namespace tvut {

namespace {

constexpr std::uint32_t whichValue = 1;
constexpr std::uint32_t isTaken = 2;
constexpr std::uint32_t oneChange = 4;

constexpr int mostTries = 16;

char16_t Clean(char16_t c) noexcept {
    const bool isControl = c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x2028 || c == 0x2029;
    return isControl ? u' ' : c;
}

std::u16string_view Cut(std::u16string_view text, std::size_t longest) noexcept {
    return {text.data(), std::min(text.size(), longest)};
}

std::uint32_t WordAt(std::u16string_view text, std::size_t at) noexcept {
    const std::uint32_t second = at + 1 < text.size() ? Clean(text[at + 1]) : 0;
    return Clean(text[at]) | second << 16;
}

} // namespace

template <std::size_t longest>
void clsNotes::clsText<longest>::Set(std::u16string_view text) noexcept {
    for (std::size_t at = 0; at < text.size(); at += 2)
        words_[at / 2].store(WordAt(text, at), std::memory_order_relaxed);
    length_.store(static_cast<std::uint32_t>(text.size()), std::memory_order_relaxed);
}

template <std::size_t longest>
bool clsNotes::clsText<longest>::Is(std::u16string_view text) const noexcept {
    if (length_.load(std::memory_order_relaxed) != text.size())
        return false;
    for (std::size_t at = 0; at < text.size(); at += 2) {
        if (words_[at / 2].load(std::memory_order_relaxed) != WordAt(text, at))
            return false;
    }
    return true;
}

template <std::size_t longest>
std::size_t clsNotes::clsText<longest>::Copy(std::array<char16_t, longest>& to) const noexcept {
    const std::size_t length = std::min<std::size_t>(length_.load(std::memory_order_relaxed), longest);
    for (std::size_t at = 0; at < length; ++at) {
        const std::uint32_t word = words_[at / 2].load(std::memory_order_relaxed);
        to[at] = static_cast<char16_t>(at % 2 == 0 ? word : word >> 16);
    }
    return length;
}

UtilResult clsNotes::Set(std::u16string_view name, std::u16string_view value) noexcept {
    name = Cut(name, scNote::longestName);
    value = Cut(value, scNote::longestValue);
    if (name.empty())
        return UtilResult::badArgument;
    const std::lock_guard lock(lock_);
    const std::size_t order = OrderOf(name);
    scPlace* const place =
        order < most ? &places_[order_[order].load(std::memory_order_relaxed)] : NewPlace(name);
    if (!place)
        return UtilResult::tooLarge;
    const std::uint32_t state = place->state.load(std::memory_order_relaxed) ^ whichValue;
    // Who finds some of what is written from here on also finds that the state is no longer the one before.
    std::atomic_thread_fence(std::memory_order_release);
    place->values[state & whichValue].Set(value);
    place->state.store((state | isTaken) + oneChange, std::memory_order_release);
    if (order == most)
        count_.fetch_add(1, std::memory_order_release);
    return UtilResult::ok;
}

UtilResult clsNotes::Remove(std::u16string_view name) noexcept {
    name = Cut(name, scNote::longestName);
    if (name.empty())
        return UtilResult::badArgument;
    const std::lock_guard lock(lock_);
    const std::uint32_t count = count_.load(std::memory_order_relaxed);
    std::size_t order = OrderOf(name);
    if (order == most)
        return UtilResult::ok;
    scPlace& place = places_[order_[order].load(std::memory_order_relaxed)];
    place.state.store((place.state.load(std::memory_order_relaxed) & ~isTaken) + oneChange,
                      std::memory_order_release);
    for (; order + 1 < count; ++order)
        order_[order].store(order_[order + 1].load(std::memory_order_relaxed), std::memory_order_release);
    count_.store(count - 1, std::memory_order_release);
    return UtilResult::ok;
}

// Which of the notes has a name, or `most`.
std::size_t clsNotes::OrderOf(std::u16string_view name) const noexcept {
    const std::uint32_t count = count_.load(std::memory_order_relaxed);
    for (std::size_t order = 0; order < count; ++order) {
        if (places_[order_[order].load(std::memory_order_relaxed)].name.Is(name))
            return order;
    }
    return most;
}

// A place that is free, with its name and its turn, which begins when it is counted; null when there is none.
clsNotes::scPlace* clsNotes::NewPlace(std::u16string_view name) noexcept {
    const auto isFree = [](const scPlace& place) {
        return (place.state.load(std::memory_order_relaxed) & isTaken) == 0;
    };
    scPlace* const end = places_.data() + most;
    scPlace* const place = std::find_if(places_.data(), end, isFree);
    if (place == end)
        return nullptr;
    // As in Set, for those who still read the note that was here.
    std::atomic_thread_fence(std::memory_order_release);
    place->name.Set(name);
    order_[count_.load(std::memory_order_relaxed)].store(static_cast<std::uint8_t>(place - places_.data()),
                                                         std::memory_order_release);
    return place;
}

bool clsNotes::Read(std::size_t order, scNote& note) const noexcept {
    for (int tries = 0; tries < mostTries; ++tries) {
        if (order >= count_.load(std::memory_order_acquire))
            return false;
        const scPlace& place = places_[order_[order].load(std::memory_order_acquire)];
        const std::uint32_t state = place.state.load(std::memory_order_acquire);
        note.nameLength = place.name.Copy(note.name);
        note.valueLength = place.values[state & whichValue].Copy(note.value);
        std::atomic_thread_fence(std::memory_order_acquire);
        if ((state & isTaken) != 0 && place.state.load(std::memory_order_relaxed) == state)
            return true;
    }
    return false;
}

std::size_t clsNotes::ReadAll(std::span<char16_t> text) const noexcept {
    std::size_t length = 0;
    const auto put = [&](std::u16string_view piece) {
        std::copy(piece.begin(), piece.end(), text.begin() + static_cast<std::ptrdiff_t>(length));
        length += piece.size();
    };
    scNote note;
    for (std::size_t order = 0; order < most; ++order) {
        if (!Read(order, note))
            continue;
        const std::size_t room =
            note.nameLength + note.valueLength + 3; // between them, before and after them
        if (room > text.size() - length)
            break;
        put(length == 0 ? u"" : u"\n");
        put(note.Name());
        put(u"=");
        put(note.Value());
    }
    if (!text.empty())
        text[length] = u'\0';
    return length;
}

} // namespace tvut
