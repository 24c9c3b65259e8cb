// How a match is found, and why that ends.
//
// The matcher stands at one instruction (program.h) and at one place of the text. Step carries the
// instruction out: the place moves on, or the text is against it. Where an instruction leaves a choice,
// another round of a loop or none, this alternative or the next, Step takes the way that the pattern prefers
// and pushes the other one onto a stack. When the text is against a step, GoBack pops the stack and goes on
// from there. So all ways are tried in the order in which the pattern means them, and the first one that
// arrives at Op::match is the match. Find does this at each place where a match can begin, from left to
// right: the places follow from the text that every match begins with, or from the set of first characters,
// and the others are passed over.
//
// An entry of the stack is one of four:
//
//     fork         an instruction and a place to go on at
//     slot         what a slot (the ends of groups, the counters of loops) held before it was set: going back
//                  over it restores it, so an attempt that fails leaves all slots as they were
//     greedyRun    a run such as [a-z]* that may take fewer characters
//     lazyRun      a run such as .*? that may take more
//
// A run is one set of characters taken again and again. It is one entry however long it is, since the way
// back in it is a matter of counting. Where nothing but a certain text can follow it, as in .*</a>, only the
// places where that text stands are tried, and they are found by searching.
//
// Assertions and atomic groups need no second matcher. Op::guard keeps the height of the stack and the place
// in two slots. When the contents have matched, accept drops the choices made since: there is no way back
// into them. The slot entries stay, for whoever goes back further. acceptHere moves back to the kept place,
// too. For an assertion that must not match, guardNot first pushes a fork to what follows it, which is taken
// when the contents fail; when they match, refuse undoes everything since, that fork included, and fails
// itself.
//
// It ends because each round of the main loop spends a step, and steps are counted. A step that reads more
// than a few characters spends one more for every eight of them. A loop that is past its least number of
// rounds ends when a round has matched nothing, so no round is repeated for ever at one place. There still
// are patterns, such as (a|a)*b, whose ways double with every character. These run out of steps: a matcher
// has ten million and 64 for each unit of the text, which any sound pattern stays far below. The stack is
// bounded in the same manner, and clsRegExTooComplex reports either. There is no recursion anywhere.
#include "text/regex/matcher.h"

#include "text/find.h"
#include "text/regex/errors.h"
#include "text/regex/letter_pairs.h"

#include <algorithm>

namespace tvut {

namespace {

// An entry or a step is a matter of nanoseconds.
constexpr std::size_t stepsAtLeast = 10'000'000;
constexpr std::size_t stepsPerUnit = 64;
constexpr std::size_t entriesAtLeast = 1u << 20;
constexpr std::size_t entriesPerUnit = 2;
constexpr std::ptrdiff_t firstPiece = 128;
constexpr std::size_t longestText = 0x7FFFFFF0 / sizeof(char16_t);

using Op = RegExOp;

bool IsWordUnit(char16_t unit) {
    const auto lower = static_cast<char16_t>(unit | 0x20);
    return unit == u'_' || (unit >= u'0' && unit <= u'9') || (unit < 0x80 && lower >= u'a' && lower <= u'z');
}

} // namespace

clsRegExMatcher::clsRegExMatcher(const scRegExProgram& program, std::u16string_view text)
    : program_(program), text_(text.data()), end_(text.data() + text.size()),
      stepsLeft_(stepsAtLeast + std::min(text.size(), longestText / stepsPerUnit) * stepsPerUnit),
      mostEntries_(entriesAtLeast + text.size() * entriesPerUnit) {
    if (text.size() > longestText)
        throw clsRegExTooComplex("a text too long to match");
    slots_.Assign(program.slots, none);
}

bool clsRegExMatcher::Find(std::size_t from, bool mayBeEmpty) {
    const Place first = text_ + from;
    for (Place start = first; (start = NextBeginning(start)) != nullptr; ++start) {
        mayBeEmpty_ = mayBeEmpty || start != first;
        if (RunFrom(start))
            return true;
        if (start == end_ || program_.fromTextStart)
            return false;
        Spend(1);
    }
    return false;
}

// The first place from here on where a match can begin; null when there is none.
clsRegExMatcher::Place clsRegExMatcher::NextBeginning(Place from) const {
    if (program_.fromTextStart)
        return from == text_ ? from : nullptr;
    if (!program_.prefix.empty())
        return UtilpFindFirst(from, end_, program_.prefix);
    if (!program_.firstUnits)
        return from;
    while (from != end_ && !program_.firstUnits->Has(*from))
        ++from;
    return from != end_ ? from : nullptr;
}

void clsRegExMatcher::Spend(std::size_t steps) {
    if (steps > stepsLeft_)
        throw clsRegExTooComplex("a regular expression took too many steps");
    stepsLeft_ -= steps;
}

void clsRegExMatcher::Push(const scEntry& entry) {
    if (ways_.Size() >= mostEntries_)
        throw clsRegExTooComplex("a regular expression took too much memory");
    ways_.Push(entry);
}

void clsRegExMatcher::SetSlot(std::uint32_t slot, std::uint32_t value) {
    Push({Way::slot, slot, slots_[slot], 0});
    slots_[slot] = value;
}

bool clsRegExMatcher::RunFrom(Place start) {
    start_ = here_ = start;
    next_ = 0;
    if (matched_)
        ForgetMatch();
    for (;;) {
        Spend(1);
        if (!Step() && !GoBack())
            return false;
        if (matched_) {
            slots_[0] = Position(start_);
            slots_[1] = Position(here_);
            return true;
        }
    }
}

// An attempt that failed has gone back all its way, so that its slots are as they were before it.
void clsRegExMatcher::ForgetMatch() {
    matched_ = false;
    ways_.Cut(0);
    SpendOnUnits(slots_.Size());
    std::fill_n(&slots_[0], slots_.Size(), none);
}

bool clsRegExMatcher::StandsHere(std::u16string_view literal) {
    if (static_cast<std::size_t>(end_ - here_) < literal.size())
        return false;
    const auto differs = std::mismatch(literal.begin(), literal.end(), here_).first;
    SpendOnUnits(static_cast<std::size_t>(differs - literal.begin()));
    return differs == literal.end();
}

// Carries out one instruction; false when the text is against it.
bool clsRegExMatcher::Step() {
    const scRegExInstruction& instruction = program_.code[next_++];
    switch (instruction.op) {
    case Op::literal:
        if (!StandsHere(program_.Literal(instruction)))
            return false;
        here_ += instruction.length;
        return true;
    case Op::set:
        if (here_ == end_ || !program_.sets[instruction.operand].Has(*here_))
            return false;
        ++here_;
        return true;
    case Op::run:
        return TakeRun(instruction);
    case Op::fork:
        return TakeFork(instruction);
    case Op::jump:
        next_ = instruction.operand;
        return true;
    case Op::save:
        SetSlot(instruction.operand, Position(here_));
        return true;
    case Op::saveBoth:
        SetSlot(instruction.operand, slots_[instruction.other]);
        SetSlot(instruction.operand + 1, Position(here_));
        return true;
    case Op::sameAgain:
    case Op::sameAgainIgnoringCase:
        return TakeSameAgain(instruction);
    case Op::stepBack:
        if (Position(here_) < instruction.operand)
            return false;
        here_ -= instruction.operand;
        return true;
    case Op::loopStart:
        SetSlot(instruction.operand, 0);
        SetSlot(instruction.operand + 1, none);
        return true;
    case Op::loopNext:
        TakeLoop(instruction);
        return true;
    case Op::loopRound:
        SetSlot(instruction.operand, slots_[instruction.operand] + 1);
        SetSlot(instruction.operand + 1, Position(here_));
        return true;
    case Op::guard:
    case Op::guardNot:
        TakeGuard(instruction);
        return true;
    case Op::acceptHere:
        here_ = text_ + slots_[instruction.operand + 1];
        [[fallthrough]];
    case Op::accept:
        KeepSlotsOnly(slots_[instruction.operand]);
        return true;
    case Op::refuse:
        return Refuse(slots_[instruction.operand]);
    case Op::match:
        matched_ = Accepts();
        return matched_;
    default:
        return IsPlace(instruction.op);
    }
}

bool clsRegExMatcher::WordBefore() const {
    return here_ != text_ && IsWordUnit(here_[-1]);
}
bool clsRegExMatcher::WordAfter() const {
    return here_ != end_ && IsWordUnit(*here_);
}

bool clsRegExMatcher::IsPlace(RegExOp op) const {
    switch (op) {
    case Op::textStart:
        return here_ == text_;
    case Op::textEnd:
        return here_ == end_;
    case Op::lastLineEnd:
        return here_ == end_ || (end_ - here_ == 1 && *here_ == u'\n');
    case Op::lineStart: // not after a line feed that ends the text
        return here_ == text_ || (here_[-1] == u'\n' && here_ != end_);
    case Op::lineEnd:
        return here_ == end_ || *here_ == u'\n';
    case Op::wordEdge:
        return WordBefore() != WordAfter();
    default:
        return WordBefore() == WordAfter();
    }
}

// Whether an instruction has a chance here; saves an entry where a look at one character is enough.
bool clsRegExMatcher::CanGoOn(std::uint32_t code) const {
    const scRegExInstruction& instruction = program_.code[code];
    if (instruction.op == Op::literal)
        return here_ != end_ && *here_ == program_.literals[instruction.operand];
    if (instruction.op == Op::set)
        return here_ != end_ && program_.sets[instruction.operand].Has(*here_);
    return true;
}

bool clsRegExMatcher::TakeFork(const scRegExInstruction& instruction) {
    if (!CanGoOn(instruction.operand)) {
        next_ = instruction.other;
        return true;
    }
    if (CanGoOn(instruction.other))
        Push({Way::fork, instruction.other, Position(here_), 0});
    next_ = instruction.operand;
    return true;
}

bool clsRegExMatcher::TakeSameAgain(const scRegExInstruction& instruction) {
    const std::uint32_t start = slots_[instruction.operand];
    const std::uint32_t end = slots_[instruction.operand + 1];
    if (start == none || end == none)
        return false;
    const std::u16string_view group(text_ + start, end - start);
    if (static_cast<std::size_t>(end_ - here_) < group.size())
        return false;
    const bool ignoreCase = instruction.op == Op::sameAgainIgnoringCase;
    const auto [differs, reached] =
        std::mismatch(group.begin(), group.end(), here_, [ignoreCase](char16_t a, char16_t b) {
            return a == b || (ignoreCase && UtilpOtherCase(a) == b);
        });
    SpendOnUnits(static_cast<std::size_t>(reached - here_));
    if (differs != group.end())
        return false;
    here_ = reached;
    return true;
}

bool clsRegExMatcher::TakeRun(const scRegExInstruction& instruction) {
    const auto room = static_cast<std::size_t>(end_ - here_);
    if (instruction.least > room)
        return false;
    const Place limit = here_ + std::min<std::size_t>(room, instruction.most);
    const Place shortest = here_ + instruction.least;
    const clsCharSet& set = program_.sets[instruction.operand];
    if (instruction.greed == RegExGreed::lazy) {
        const Place reached = set.RunEnd(here_, shortest);
        SpendOnUnits(static_cast<std::size_t>(reached - here_));
        if (reached != shortest)
            return false;
        here_ = shortest;
        return TakeShortest(instruction, limit);
    }
    const Place longest = set.RunEnd(here_, limit);
    SpendOnUnits(static_cast<std::size_t>(longest - here_));
    if (longest < shortest)
        return false;
    here_ = longest;
    return TakeLongest(instruction, shortest);
}

// The first place from here up to a limit where the follower stands, with nothing but characters of the
// run before it; null when there is none. The pieces keep the cost near the distance found.
clsRegExMatcher::Place clsRegExMatcher::FindFollower(const scRegExInstruction& instruction, Place limit) {
    const std::u16string_view literal = program_.Landmark(program_.code[instruction.follower]);
    const clsCharSet& set = program_.sets[instruction.operand];
    std::ptrdiff_t piece = set.HasAll() ? limit - here_ : firstPiece;
    for (Place from = here_;; piece *= 2) {
        const Place stop = limit - from > piece ? from + piece : limit;
        const Place run = set.RunEnd(from, stop);
        const auto after = std::min(static_cast<std::size_t>(end_ - run), literal.size());
        const Place found = UtilpFindFirst(from, run + after, literal);
        SpendOnUnits(static_cast<std::size_t>((found ? found : run) - from));
        if (found || run != stop || stop == limit)
            return found;
        from = run;
    }
}

// Goes on with the fewest further characters that let the follower stand after them; keeps the way to
// more of them.
bool clsRegExMatcher::TakeShortest(const scRegExInstruction& instruction, Place limit) {
    const auto code = static_cast<std::uint32_t>(&instruction - program_.code.data());
    if (instruction.follower != scRegExNode::none) {
        here_ = FindFollower(instruction, limit);
        if (!here_)
            return false;
    }
    if (here_ != limit)
        Push({Way::lazyRun, code, Position(limit), Position(here_)});
    next_ = code + 1;
    return true;
}

// Goes back from here to the most characters that let the follower stand after them; keeps the way to fewer.
bool clsRegExMatcher::TakeLongest(const scRegExInstruction& instruction, Place shortest) {
    const auto code = static_cast<std::uint32_t>(&instruction - program_.code.data());
    if (instruction.follower != scRegExNode::none) {
        const std::u16string_view literal = program_.Landmark(program_.code[instruction.follower]);
        const auto after = std::min(static_cast<std::size_t>(end_ - here_), literal.size());
        const Place found = UtilpFindLast(shortest, here_ + after, literal);
        const Place reached = found ? found : shortest;
        SpendOnUnits(reached < here_ ? static_cast<std::size_t>(here_ - reached) : 0);
        if (!found)
            return false;
        here_ = found;
    }
    if (here_ != shortest)
        Push({Way::greedyRun, code, Position(shortest), Position(here_)});
    next_ = code + 1;
    return true;
}

// Once there are enough rounds, one that matched nothing ends the loop: more would match nothing again.
void clsRegExMatcher::TakeLoop(const scRegExInstruction& instruction) {
    const std::uint32_t rounds = slots_[instruction.operand];
    if (rounds < instruction.least)
        return;
    const std::uint32_t round = next_;
    next_ = instruction.other;
    if (rounds == instruction.most || slots_[instruction.operand + 1] == Position(here_))
        return;
    const bool lazy = instruction.greed == RegExGreed::lazy;
    Push({Way::fork, lazy ? round : instruction.other, Position(here_), 0});
    if (!lazy)
        next_ = round;
}

// The slots need no entry: nobody reads them before they are set again.
void clsRegExMatcher::TakeGuard(const scRegExInstruction& instruction) {
    slots_[instruction.operand] = static_cast<std::uint32_t>(ways_.Size());
    slots_[instruction.operand + 1] = Position(here_);
    if (instruction.op == Op::guardNot)
        Push({Way::fork, instruction.other, Position(here_), 0});
}

// Forgets the choices since a height of the stack, but not how to restore the slots.
void clsRegExMatcher::KeepSlotsOnly(std::size_t height) {
    std::size_t kept = height;
    for (std::size_t at = height; at < ways_.Size(); ++at) {
        if (ways_[at].way == Way::slot)
            ways_[kept++] = ways_[at];
    }
    SpendOnUnits(ways_.Size() - height);
    ways_.Cut(kept);
}

// The contents of an assertion matched that should not have: all is as it was before, and it fails.
bool clsRegExMatcher::Refuse(std::size_t height) {
    SpendOnUnits(ways_.Size() - height);
    while (ways_.Size() > height) {
        const scEntry entry = ways_.Pop();
        if (entry.way == Way::slot)
            slots_[entry.target] = entry.value;
    }
    return false;
}

// To the last choice that has another way to go; false when there is none.
bool clsRegExMatcher::GoBack() {
    while (ways_.Size() != 0) {
        Spend(1);
        const scEntry entry = ways_.Pop();
        if (entry.way == Way::slot) {
            slots_[entry.target] = entry.value;
            continue;
        }
        if (entry.way == Way::fork) {
            here_ = text_ + entry.value;
            next_ = entry.target;
            return true;
        }
        const scRegExInstruction& instruction = program_.code[entry.target];
        here_ = text_ + entry.at;
        if (entry.way == Way::greedyRun) {
            --here_;
            if (TakeLongest(instruction, text_ + entry.value))
                return true;
        } else if (program_.sets[instruction.operand].Has(*here_)) {
            ++here_;
            if (TakeShortest(instruction, text_ + entry.value))
                return true;
        }
    }
    return false;
}

} // namespace tvut
