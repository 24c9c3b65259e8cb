// Each fact is a walk down the tree, by recursion that the parser's limit on nesting bounds.
#include "text/regex/node_facts.h"

namespace tvut {

namespace {

using Kind = RegExNodeKind;
constexpr std::uint32_t none = scRegExNode::none;

// The longest look back; also keeps the sums from overflowing.
constexpr std::uint64_t longestFixed = 1u << 20;

// Collects the units that the children of a sequence can begin with. Returns whether one of them must
// match some, so that what follows does not count.
bool AddFirst(const scRegExTree& tree, std::uint32_t at, clsCharSet& units);

bool AddFirstOfSequence(const scRegExTree& tree, const scRegExNode& node, clsCharSet& units) {
    for (std::uint32_t child = node.firstChild; child != none; child = tree[child].nextSibling) {
        if (AddFirst(tree, child, units))
            return true;
    }
    return false;
}

bool AddFirstOfAlternatives(const scRegExTree& tree, const scRegExNode& node, clsCharSet& units) {
    bool all = true;
    for (std::uint32_t child = node.firstChild; child != none; child = tree[child].nextSibling)
        all &= AddFirst(tree, child, units);
    return all;
}

bool AddFirst(const scRegExTree& tree, std::uint32_t at, clsCharSet& units) {
    const scRegExNode& node = tree[at];
    switch (node.kind) {
    case Kind::unit:
        units.Add(node.unit);
        return true;
    case Kind::set:
        units.Add(tree.sets[node.number]);
        return true;
    case Kind::sequence:
    case Kind::capture:
    case Kind::atomic:
        return AddFirstOfSequence(tree, node, units);
    case Kind::alternatives:
        return AddFirstOfAlternatives(tree, node, units);
    case Kind::repeat:
        return node.most != 0 && AddFirst(tree, node.firstChild, units) && node.least != 0;
    case Kind::sameAgain: // anything
        units.Add(0, 0xFFFF);
        return false;
    default: // an assertion
        return false;
    }
}

std::optional<std::uint32_t> LengthOfSequence(const scRegExTree& tree, const scRegExNode& node) {
    std::uint64_t sum = 0;
    for (std::uint32_t child = node.firstChild; child != none; child = tree[child].nextSibling) {
        const std::optional<std::uint32_t> length = UtilpFixedLength(tree, child);
        if (!length || (sum += *length) > longestFixed)
            return std::nullopt;
    }
    return static_cast<std::uint32_t>(sum);
}

std::optional<std::uint32_t> LengthOfAlternatives(const scRegExTree& tree, const scRegExNode& node) {
    const std::optional<std::uint32_t> first = UtilpFixedLength(tree, node.firstChild);
    for (std::uint32_t child = tree[node.firstChild].nextSibling; child != none;
         child = tree[child].nextSibling) {
        if (!first || UtilpFixedLength(tree, child) != first)
            return std::nullopt;
    }
    return first;
}

} // namespace

bool UtilpCanBeEmpty(const scRegExTree& tree, std::uint32_t at) {
    clsCharSet ignored;
    return !AddFirst(tree, at, ignored);
}

std::optional<std::uint32_t> UtilpFixedLength(const scRegExTree& tree, std::uint32_t at) {
    const scRegExNode& node = tree[at];
    switch (node.kind) {
    case Kind::unit:
    case Kind::set:
        return 1;
    case Kind::sequence:
    case Kind::capture:
    case Kind::atomic:
        return LengthOfSequence(tree, node);
    case Kind::alternatives:
        return LengthOfAlternatives(tree, node);
    case Kind::repeat: {
        const std::optional<std::uint32_t> once = UtilpFixedLength(tree, node.firstChild);
        if (!once || node.least != node.most || std::uint64_t{*once} * node.least > longestFixed)
            return std::nullopt;
        return *once * node.least;
    }
    case Kind::sameAgain:
        return std::nullopt;
    default:
        return 0;
    }
}

std::optional<clsCharSet> UtilpFirstUnits(const scRegExTree& tree, std::uint32_t at) {
    clsCharSet units;
    if (!AddFirst(tree, at, units))
        return std::nullopt;
    units.Finish();
    return units.HasAll() ? std::nullopt : std::optional(units);
}

} // namespace tvut
