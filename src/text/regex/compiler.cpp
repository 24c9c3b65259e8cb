// From a pattern's tree to instructions.
#include "text/regex/errors.h"
#include "text/regex/node_facts.h"
#include "text/regex/program.h"

namespace tvut {

namespace {

using Kind = RegExNodeKind;
using Op = RegExOp;

class clsCompiler {
  public:
    explicit clsCompiler(scRegExTree&& tree) : tree_(std::move(tree)), referredTo_(tree_.groups + 1) {
        for (const scRegExNode& node : tree_.nodes) {
            if (node.kind == Kind::sameAgain)
                referredTo_[node.number] = true;
        }
    }

    scRegExProgram Compile() {
        program_.groups = tree_.groups;
        program_.slots = 2 * (tree_.groups + 1);
        Emit(tree_.root);
        Add({.op = Op::match});
        FindBeginnings();
        program_.sets = std::move(tree_.sets);
        for (clsCharSet& set : program_.sets)
            set.Finish();
        FindFollowers();
        return std::move(program_);
    }

  private:
    using Node = std::uint32_t;
    static constexpr Node none = scRegExNode::none;

    std::uint32_t Here() const { return static_cast<std::uint32_t>(program_.code.size()); }
    std::uint32_t Add(const scRegExInstruction& instruction) {
        program_.code.push_back(instruction);
        return Here() - 1;
    }
    std::uint32_t NewSlots() {
        program_.slots += 2;
        return program_.slots - 2;
    }

    void Emit(Node at) {
        const scRegExNode& node = tree_[at];
        switch (node.kind) {
        case Kind::unit:
            Add({.op = Op::literal, .operand = AddLiteral(node.unit), .length = 1});
            break;
        case Kind::set:
            Add({.op = Op::set, .operand = node.number});
            break;
        case Kind::sequence:
            EmitSequence(node);
            break;
        case Kind::alternatives:
            EmitAlternatives(node, false);
            break;
        case Kind::capture:
            EmitCapture(node);
            break;
        case Kind::repeat:
            EmitRepeat(node);
            break;
        case Kind::sameAgain:
            Add({.op = node.ignoreCase ? Op::sameAgainIgnoringCase : Op::sameAgain,
                 .operand = 2 * node.number});
            break;
        case Kind::lookAhead:
        case Kind::lookBehind:
        case Kind::noLookAhead:
        case Kind::noLookBehind:
            EmitAssertion(node);
            break;
        case Kind::atomic:
            EmitAtomic([&] { EmitSequence(node); });
            break;
        default:
            EmitPlace(node.kind);
        }
    }

    // A group that something refers to keeps what it matched before until it has matched again.
    void EmitCapture(const scRegExNode& node) {
        const bool referredTo = referredTo_[node.number];
        const std::uint32_t slot = 2 * node.number;
        const std::uint32_t start = referredTo ? NewSlots() : slot;
        Add({.op = Op::save, .operand = start});
        EmitSequence(node);
        Add({.op = referredTo ? Op::saveBoth : Op::save, .operand = slot + !referredTo, .other = start});
    }

    void EmitPlace(Kind kind) {
        constexpr std::pair<Kind, Op> places[] = {
            {Kind::textStart, Op::textStart},     {Kind::textEnd, Op::textEnd},
            {Kind::lastLineEnd, Op::lastLineEnd}, {Kind::lineStart, Op::lineStart},
            {Kind::lineEnd, Op::lineEnd},         {Kind::wordEdge, Op::wordEdge},
            {Kind::noWordEdge, Op::noWordEdge}};
        for (const auto& [place, op] : places) {
            if (place == kind)
                Add({.op = op});
        }
    }

    std::uint32_t AddLiteral(char16_t unit) {
        program_.literals += unit;
        return static_cast<std::uint32_t>(program_.literals.size() - 1);
    }

    // Neighbouring characters become one literal.
    void EmitSequence(const scRegExNode& node) {
        bool joins = false;
        for (Node child = node.firstChild; child != none; child = tree_[child].nextSibling) {
            const bool isUnit = tree_[child].kind == Kind::unit;
            if (isUnit && joins) {
                AddLiteral(tree_[child].unit);
                ++program_.code.back().length;
            } else {
                Emit(child);
            }
            joins = isUnit;
        }
    }

    // In a look back each alternative goes back by its own length.
    void EmitAlternatives(const scRegExNode& node, bool stepBack) {
        std::vector<std::uint32_t> jumps;
        for (Node child = node.firstChild; child != none; child = tree_[child].nextSibling) {
            const bool last = tree_[child].nextSibling == none;
            const std::uint32_t fork = last ? 0 : Add({.op = Op::fork, .operand = Here() + 1});
            if (stepBack)
                EmitStepBack(child);
            Emit(child);
            if (last)
                break;
            jumps.push_back(Add({.op = Op::jump}));
            program_.code[fork].other = Here();
        }
        for (const std::uint32_t jump : jumps)
            program_.code[jump].operand = Here();
    }

    void EmitStepBack(Node child) {
        const std::optional<std::uint32_t> length = UtilpFixedLength(tree_, child);
        if (!length)
            throw clsRegExError(tree_[child].offset, "a look back whose length is not fixed");
        Add({.op = Op::stepBack, .operand = *length});
    }

    void EmitAssertion(const scRegExNode& node) {
        const bool wanted = node.kind == Kind::lookAhead || node.kind == Kind::lookBehind;
        const bool back = node.kind == Kind::lookBehind || node.kind == Kind::noLookBehind;
        const std::uint32_t slots = NewSlots();
        const std::uint32_t start = Add({.op = wanted ? Op::guard : Op::guardNot, .operand = slots});
        const scRegExNode& body = tree_[node.firstChild];
        if (back && body.kind == Kind::alternatives) {
            EmitAlternatives(body, true);
        } else {
            if (back)
                EmitStepBack(node.firstChild);
            Emit(node.firstChild);
        }
        Add({.op = wanted ? Op::acceptHere : Op::refuse, .operand = slots});
        program_.code[start].other = Here();
    }

    template <class Body>
    void EmitAtomic(Body body) {
        const std::uint32_t slots = NewSlots();
        Add({.op = Op::guard, .operand = slots});
        body();
        Add({.op = Op::accept, .operand = slots});
    }

    void EmitRepeat(const scRegExNode& node) {
        if (node.most == 0)
            return;
        if (node.greed == RegExGreed::possessive) {
            EmitAtomic([&] { EmitWayBackRepeat(node, RegExGreed::greedy); });
            return;
        }
        EmitWayBackRepeat(node, node.greed);
    }

    void EmitWayBackRepeat(const scRegExNode& node, RegExGreed greed) {
        if (const std::optional<std::uint32_t> set = SingleSet(node.firstChild))
            Add({.op = Op::run, .greed = greed, .operand = *set, .least = node.least, .most = node.most});
        else if (node.least == 0 && node.most == 1)
            EmitOptional(node, greed);
        else if (node.least <= 1 && node.most == scRegExNode::unlimited &&
                 !UtilpCanBeEmpty(tree_, node.firstChild))
            EmitEndless(node, greed);
        else
            EmitLoop(node, greed);
    }

    // The set, when all that is repeated is one character.
    std::optional<std::uint32_t> SingleSet(Node at) {
        const scRegExNode& node = tree_[at];
        if (node.kind == Kind::set)
            return node.number;
        if (node.kind == Kind::sequence && node.firstChild != none &&
            tree_[node.firstChild].nextSibling == none)
            return SingleSet(node.firstChild);
        if (node.kind != Kind::unit)
            return std::nullopt;
        clsCharSet set;
        set.Add(node.unit);
        tree_.sets.push_back(std::move(set));
        return static_cast<std::uint32_t>(tree_.sets.size() - 1);
    }

    std::uint32_t AddFork(RegExGreed greed, std::uint32_t round) {
        return greed == RegExGreed::lazy ? Add({.op = Op::fork, .other = round})
                                         : Add({.op = Op::fork, .operand = round});
    }
    void SetExit(std::uint32_t fork, RegExGreed greed) {
        scRegExInstruction& instruction = program_.code[fork];
        (greed == RegExGreed::lazy ? instruction.operand : instruction.other) = Here();
    }

    void EmitOptional(const scRegExNode& node, RegExGreed greed) {
        const std::uint32_t fork = AddFork(greed, Here() + 1);
        Emit(node.firstChild);
        SetExit(fork, greed);
    }

    // A round that matches nothing cannot be, so no round needs to be counted.
    void EmitEndless(const scRegExNode& node, RegExGreed greed) {
        const std::uint32_t start = Here();
        if (node.least == 0) {
            const std::uint32_t fork = AddFork(greed, start + 1);
            Emit(node.firstChild);
            Add({.op = Op::jump, .operand = start});
            SetExit(fork, greed);
        } else {
            Emit(node.firstChild);
            SetExit(AddFork(greed, start), greed);
        }
    }

    void EmitLoop(const scRegExNode& node, RegExGreed greed) {
        const std::uint32_t slots = NewSlots();
        Add({.op = Op::loopStart, .operand = slots});
        const std::uint32_t next = Add(
            {.op = Op::loopNext, .greed = greed, .operand = slots, .least = node.least, .most = node.most});
        Add({.op = Op::loopRound, .operand = slots});
        Emit(node.firstChild);
        Add({.op = Op::jump, .operand = next});
        program_.code[next].other = Here();
    }

    void FindBeginnings() {
        std::size_t at = 0;
        while (program_.code[at].op == Op::save)
            ++at;
        program_.fromTextStart = program_.code[at].op == Op::textStart;
        if (program_.code[at].op == Op::literal)
            program_.prefix = program_.Landmark(program_.code[at]);
        program_.firstUnits = UtilpFirstUnits(tree_, tree_.root);
    }

    // What must follow a run is known when nothing between can fail or lead elsewhere.
    void FindFollowers() {
        for (std::size_t at = 0; at < program_.code.size(); ++at) {
            if (program_.code[at].op != Op::run)
                continue;
            std::size_t next = at + 1;
            while (program_.code[next].op == Op::save)
                ++next;
            if (program_.code[next].op == Op::literal)
                program_.code[at].follower = static_cast<std::uint32_t>(next);
        }
    }

    scRegExTree tree_;
    std::vector<bool> referredTo_; // by group
    scRegExProgram program_;
};

} // namespace

scRegExProgram UtilpCompileRegEx(scRegExTree&& tree) {
    return clsCompiler(std::move(tree)).Compile();
}

} // namespace tvut
