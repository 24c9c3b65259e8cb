// The product's own words about what it does, kept where a crash finds them: in fixed memory.
//
// Writers take turns by a spin lock. A reader takes no lock at all and never waits, because at a crash the
// one that holds it may stand still for ever: a value is written beside the one that counts, and becomes it
// by one store, so what a reader finds is always a whole value.
#pragma once

#include "platform/spin_lock.h"
#include "runtime/result.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace tvut {

// A note as it was at one moment.
struct scNote {
    static constexpr std::size_t longestName = 63;   // characters
    static constexpr std::size_t longestValue = 255; // characters

    std::u16string_view Name() const noexcept { return {name.data(), nameLength}; }
    std::u16string_view Value() const noexcept { return {value.data(), valueLength}; }

    std::array<char16_t, longestName> name;
    std::array<char16_t, longestValue> value;
    std::size_t nameLength = 0, valueLength = 0;
};

class clsNotes {
  public:
    static constexpr std::size_t most = 64;
    // Room for all notes as lines, in characters.
    static constexpr std::size_t longestText = most * (scNote::longestName + scNote::longestValue + 2) + 1;

    constexpr clsNotes() noexcept = default;
    clsNotes(const clsNotes&) = delete;
    clsNotes& operator=(const clsNotes&) = delete;

    // Sets a note or changes its value. Longer texts are cut; line ends and control characters become blanks.
    // Names differ in case. The texts are read before the lock is taken. ok, badArgument for an empty name,
    // tooLarge when all places are taken.
    UtilResult Set(std::u16string_view name, std::u16string_view value) noexcept;

    // ok, also when there is no such note; badArgument for an empty name.
    UtilResult Remove(std::u16string_view name) noexcept;

    // Copies the note at a place, 0 to most - 1; notes stand in the order in which they were first set. False
    // when there is none. Waits for nobody, so while others write, a note may be missing or be seen twice.
    bool Read(std::size_t place, scNote& note) const noexcept;

    // All notes as lines "Name=value", separated by LF and ended by a zero. Returns the length without the
    // zero; what has no room is left out. Waits for nobody.
    std::size_t ReadAll(std::span<char16_t> text) const noexcept;

  private:
    // A text of at most some characters, two in a word. Words are atomic, because a reader may look at any
    // time.
    template <std::size_t longest>
    class clsText {
      public:
        void Set(std::u16string_view text) noexcept;
        bool Is(std::u16string_view text) const noexcept;
        std::size_t Copy(std::array<char16_t, longest>& to) const noexcept;

      private:
        std::array<std::atomic<std::uint32_t>, (longest + 1) / 2> words_{};
        std::atomic<std::uint32_t> length_{0};
    };

    // state: whether the place is taken, which value counts, and how often that has changed.
    struct scPlace {
        std::atomic<std::uint32_t> state{0};
        clsText<scNote::longestName> name;
        std::array<clsText<scNote::longestValue>, 2> values;
    };

    std::size_t OrderOf(std::u16string_view name) const noexcept;
    scPlace* NewPlace(std::u16string_view name) noexcept;

    mutable clsSpinLock lock_;
    std::array<std::atomic<std::uint8_t>, most> order_{}; // places in the order of first setting
    std::atomic<std::uint32_t> count_{0};                 // of them
    std::array<scPlace, most> places_{};
};

} // namespace tvut
