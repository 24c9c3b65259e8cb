// Runs a compiled pattern over a text: an instruction after the other, and back to the last choice when
// one fails.
//
// The way back is a stack of entries: a place to go on at, a slot's value to restore, or a run that can
// still take a different number of characters. A run is one entry however long it is. Both the stack and the
// work are bounded by the text's length and a constant.
#pragma once

#include "text/regex/program.h"
#include "text/regex/small_buffer.h"

#include <string_view>

namespace tvut {

class clsRegExMatcher {
  public:
    // Throws clsRegExTooComplex for a text that is too long to be matched at all.
    clsRegExMatcher(const scRegExProgram& program, std::u16string_view text);

    // The first match from a position on; not the empty one there unless it may be. Throws
    // clsRegExTooComplex.
    bool Find(std::size_t from, bool mayBeEmpty = true);

    // Of the last match; none for a group that took no part.
    static constexpr std::uint32_t none = 0xFFFFFFFF;
    std::uint32_t Start(std::size_t group) { return slots_[2 * group]; }
    std::uint32_t End(std::size_t group) { return slots_[2 * group + 1]; }

  private:
    using Place = const char16_t*;
    enum class Way : std::uint32_t { fork, slot, greedyRun, lazyRun };
    struct scEntry {
        Way way;
        std::uint32_t target; // instruction or slot
        std::uint32_t value;  // position, old value, or the shortest or longest end of a run
        std::uint32_t at;     // where the run ended last
    };

    std::uint32_t Position(Place place) const { return static_cast<std::uint32_t>(place - text_); }
    void Spend(std::size_t steps);
    void SpendOnUnits(std::size_t units) { Spend(1 + units / unitsAStep); }
    void Push(const scEntry& entry);
    void SetSlot(std::uint32_t slot, std::uint32_t value);

    Place NextBeginning(Place from) const;
    bool RunFrom(Place start);
    bool Step();
    bool GoBack();
    void ForgetMatch();
    bool StandsHere(std::u16string_view literal);
    bool CanGoOn(std::uint32_t code) const;
    bool IsPlace(RegExOp op) const;
    bool WordBefore() const;
    bool WordAfter() const;
    bool TakeFork(const scRegExInstruction& instruction);
    bool TakeSameAgain(const scRegExInstruction& instruction);
    bool TakeRun(const scRegExInstruction& instruction);
    Place FindFollower(const scRegExInstruction& instruction, Place limit);
    bool TakeShortest(const scRegExInstruction& instruction, Place limit);
    bool TakeLongest(const scRegExInstruction& instruction, Place shortest);
    void TakeLoop(const scRegExInstruction& instruction);
    void TakeGuard(const scRegExInstruction& instruction);
    void KeepSlotsOnly(std::size_t height);
    bool Refuse(std::size_t height);
    bool Accepts() const { return mayBeEmpty_ || here_ != start_; }

    static constexpr std::size_t unitsAStep = 8;

    const scRegExProgram& program_;
    Place text_;
    Place end_;
    std::size_t stepsLeft_;
    std::size_t mostEntries_;
    bool mayBeEmpty_ = true;
    bool matched_ = false;
    Place start_ = nullptr; // where this attempt began
    Place here_ = nullptr;
    std::uint32_t next_ = 0; // instruction
    clsSmallBuffer<scEntry, 40> ways_;
    clsSmallBuffer<std::uint32_t, 24> slots_;
};

} // namespace tvut
