// The parser: groups nest, and so do its calls, up to a fixed depth.
#include "text/regex/errors.h"
#include "text/regex/letter_pairs.h"
#include "text/regex/node.h"
#include "text/regex/pattern_reader.h"

#include <algorithm>
#include <limits>

namespace tvut {

namespace {

constexpr unsigned deepestGroup = 200;
constexpr unsigned mostRepeats = 65535;
constexpr std::size_t longestPattern = 100000;

struct scModes {
    bool ignoreCase = false; // i
    bool lines = false;      // m
    bool dotAll = false;     // s
    bool extended = false;   // x
};

using Kind = RegExNodeKind;

struct scGroupStart {
    std::u16string_view text;
    Kind kind;
};
constexpr scGroupStart groupStarts[] = {{u"?:", Kind::sequence},      {u"?=", Kind::lookAhead},
                                        {u"?!", Kind::noLookAhead},   {u"?<=", Kind::lookBehind},
                                        {u"?<!", Kind::noLookBehind}, {u"?>", Kind::atomic}};

struct scAssertion {
    char16_t letter;
    Kind kind;
};
constexpr scAssertion assertions[] = {{u'A', Kind::textStart},
                                      {u'z', Kind::textEnd},
                                      {u'Z', Kind::lastLineEnd},
                                      {u'b', Kind::wordEdge},
                                      {u'B', Kind::noWordEdge}};

class clsParser {
  public:
    explicit clsParser(std::u16string_view pattern) : reader_(pattern) {}

    scRegExTree Parse() {
        tree_.root = ParseAlternatives();
        if (!reader_.AtEnd())
            reader_.Fail("a closing parenthesis too many");
        for (const scRegExNode& node : tree_.nodes) {
            if (node.kind == Kind::sameAgain && node.number > tree_.groups)
                clsPatternReader::Fail(node.offset, "there is no group of that number");
        }
        return std::move(tree_);
    }

  private:
    using Node = std::uint32_t;
    static constexpr Node none = scRegExNode::none;

    Node Make(Kind kind, Node child = none) {
        scRegExNode node{.kind = kind};
        node.firstChild = child;
        node.offset = static_cast<std::uint32_t>(reader_.Offset());
        tree_.nodes.push_back(node);
        return static_cast<Node>(tree_.nodes.size() - 1);
    }
    Node MakeSet(clsCharSet set) {
        const Node node = Make(Kind::set);
        tree_.nodes[node].number = static_cast<std::uint32_t>(tree_.sets.size());
        tree_.sets.push_back(std::move(set));
        return node;
    }
    Node MakeUnit(char16_t unit) {
        if (modes_.ignoreCase && UtilpOtherCase(unit) != unit) {
            clsCharSet set;
            set.Add(unit);
            set.AddOtherCases();
            return MakeSet(std::move(set));
        }
        const Node node = Make(Kind::unit);
        tree_.nodes[node].unit = unit;
        return node;
    }
    Node MakeDot() {
        clsCharSet set;
        if (!modes_.dotAll)
            set.Add(u'\n');
        set.Invert();
        return MakeSet(std::move(set));
    }

    // Modes that a sequence sets hold to the end of its group, in the alternatives that follow, too.
    Node ParseAlternatives() {
        const Node first = ParseSequence();
        Node result = first;
        for (Node last = first; reader_.Take(u'|');) {
            if (result == first)
                result = Make(Kind::alternatives, first);
            const Node next = ParseSequence();
            tree_.nodes[last].nextSibling = next;
            last = next;
        }
        return result;
    }

    Node ParseSequence() {
        const Node sequence = Make(Kind::sequence);
        Node last = none;
        for (;;) {
            SkipIgnored();
            if (reader_.AtEnd() || reader_.Peek() == u'|' || reader_.Peek() == u')')
                return sequence;
            if (TakeModes())
                continue;
            const Node next = ParseRepeated();
            (last == none ? tree_.nodes[sequence].firstChild : tree_.nodes[last].nextSibling) = next;
            last = next;
        }
    }

    // Comments, and in the mode x blanks.
    void SkipIgnored() {
        for (;;) {
            const std::size_t start = reader_.Offset();
            if (reader_.Take(u"(?#"))
                SkipTo(u')', start);
            else if (modes_.extended && reader_.Take(u'#'))
                SkipTo(u'\n', std::nullopt);
            else if (modes_.extended && IsBlank(reader_.Peek()) && !reader_.AtEnd())
                reader_.Next();
            else
                return;
        }
    }
    void SkipTo(char16_t unit, std::optional<std::size_t> mustEnd) {
        while (!reader_.AtEnd()) {
            if (reader_.Next() == unit)
                return;
        }
        if (mustEnd)
            clsPatternReader::Fail(*mustEnd, "a comment without its end");
    }
    static bool IsBlank(char16_t unit) { return unit == u' ' || (unit >= u'\t' && unit <= u'\r'); }

    // (?i) and its like, which change the modes of what follows.
    bool TakeModes() {
        const std::size_t start = reader_.Offset();
        if (!reader_.Take(u"(?"))
            return false;
        const std::optional<scModes> modes = TakeModeLetters();
        if (modes && reader_.Take(u')')) {
            modes_ = *modes;
            return true;
        }
        reader_.GoTo(start);
        return false;
    }

    std::optional<scModes> TakeModeLetters() {
        scModes modes = modes_;
        bool value = true, any = false;
        for (;; any = true) {
            if (reader_.Take(u'i'))
                modes.ignoreCase = value;
            else if (reader_.Take(u'm'))
                modes.lines = value;
            else if (reader_.Take(u's'))
                modes.dotAll = value;
            else if (reader_.Take(u'x'))
                modes.extended = value;
            else if (value && reader_.Take(u'-'))
                value = false;
            else
                return any ? std::optional(modes) : std::nullopt;
        }
    }

    Node ParseRepeated() {
        const Node atom = ParseAtom();
        const Node repeated = TakeRepeat(atom);
        SkipIgnored();
        unsigned least = 0, most = 0;
        const std::size_t after = reader_.Offset();
        if (repeated != atom && TakeQuantifier(least, most))
            clsPatternReader::Fail(after, "a quantifier after a quantifier");
        return repeated;
    }

    Node TakeRepeat(Node atom) {
        SkipIgnored();
        unsigned least = 0, most = 0;
        if (!TakeQuantifier(least, most))
            return atom;
        const Node repeat = Make(Kind::repeat, atom);
        scRegExNode& node = tree_.nodes[repeat];
        node.least = least;
        node.most = most;
        if (reader_.Take(u'?'))
            node.greed = RegExGreed::lazy;
        else if (reader_.Take(u'+'))
            node.greed = RegExGreed::possessive;
        return repeat;
    }

    bool TakeQuantifier(unsigned& least, unsigned& most) {
        constexpr unsigned unlimited = scRegExNode::unlimited;
        if (reader_.Take(u'*'))
            least = 0, most = unlimited;
        else if (reader_.Take(u'+'))
            least = 1, most = unlimited;
        else if (reader_.Take(u'?'))
            least = 0, most = 1;
        else
            return TakeCounts(least, most);
        return true;
    }

    // {2}, {2,} or {2,5}; a brace that begins nothing of the kind stands for itself.
    bool TakeCounts(unsigned& least, unsigned& most) {
        const std::size_t start = reader_.Offset();
        if (reader_.Take(u'{')) {
            const std::optional<unsigned> first = reader_.TakeNumber(10);
            if (first) {
                least = most = *first;
                if (reader_.Take(u','))
                    most = reader_.TakeNumber(10).value_or(scRegExNode::unlimited);
                if (reader_.Take(u'}')) {
                    CheckCounts(start, least, most);
                    return true;
                }
            }
        }
        reader_.GoTo(start);
        return false;
    }
    static void CheckCounts(std::size_t start, unsigned least, unsigned most) {
        if (least > mostRepeats || (most > mostRepeats && most != scRegExNode::unlimited))
            clsPatternReader::Fail(start, "too many repeats");
        if (most < least)
            clsPatternReader::Fail(start, "a range that ends before it begins");
    }

    Node ParseAtom() {
        const std::size_t start = reader_.Offset();
        unsigned least = 0, most = 0;
        if (TakeQuantifier(least, most))
            clsPatternReader::Fail(start, "nothing to repeat");
        switch (const char16_t unit = reader_.Next()) {
        case u'(':
            return ParseGroup(start);
        case u'[':
            return MakeSet(reader_.TakeClass(modes_.ignoreCase));
        case u'.':
            return MakeDot();
        case u'^':
            return Make(modes_.lines ? Kind::lineStart : Kind::textStart);
        case u'$':
            return Make(modes_.lines ? Kind::lineEnd : Kind::lastLineEnd);
        case u'\\':
            return ParseEscape(start);
        default:
            return MakeUnit(unit);
        }
    }

    Node ParseEscape(std::size_t start) {
        for (const scAssertion& assertion : assertions) {
            if (reader_.Take(assertion.letter))
                return Make(assertion.kind);
        }
        if (std::optional<clsCharSet> set = reader_.TakeSetEscape())
            return MakeSet(std::move(*set));
        if (const std::optional<char16_t> unit = reader_.TakeUnitEscape())
            return MakeUnit(*unit);
        const std::optional<unsigned> group = reader_.TakeNumber(10);
        if (!group)
            clsPatternReader::Fail(start, "an unknown escape");
        const Node node = Make(Kind::sameAgain);
        tree_.nodes[node].number = *group;
        tree_.nodes[node].ignoreCase = modes_.ignoreCase;
        tree_.nodes[node].offset = static_cast<std::uint32_t>(start);
        return node;
    }

    Node ParseGroup(std::size_t start) {
        if (++depth_ > deepestGroup)
            clsPatternReader::Fail(start, "groups nested too deep");
        const scModes outside = modes_;
        const Node group = ParseGroupBody(start);
        modes_ = outside;
        if (!reader_.Take(u')'))
            clsPatternReader::Fail(start, "a group without its closing parenthesis");
        --depth_;
        return group;
    }

    Node ParseGroupBody(std::size_t start) {
        if (reader_.Peek() != u'?') {
            const std::uint32_t number = ++tree_.groups;
            const Node group = Make(Kind::capture);
            const Node body = ParseAlternatives();
            tree_.nodes[group].number = number;
            tree_.nodes[group].firstChild = body;
            return group;
        }
        for (const scGroupStart& known : groupStarts) {
            if (reader_.Take(known.text)) {
                const Node body = ParseAlternatives();
                return Make(known.kind, body);
            }
        }
        reader_.Next();
        const std::optional<scModes> modes = TakeModeLetters();
        if (!modes || !reader_.Take(u':'))
            clsPatternReader::Fail(start, "an unknown kind of group");
        modes_ = *modes;
        return Make(Kind::sequence, ParseAlternatives());
    }

    clsPatternReader reader_;
    scRegExTree tree_;
    scModes modes_;
    unsigned depth_ = 0;
};

} // namespace

scRegExTree UtilpParseRegEx(std::u16string_view pattern) {
    if (pattern.size() > longestPattern)
        clsPatternReader::Fail(longestPattern, "the pattern is too long");
    return clsParser(pattern).Parse();
}

} // namespace tvut
