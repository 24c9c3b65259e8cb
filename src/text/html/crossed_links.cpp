// Walks the chain of pieces that crossed_links.h describes from its end: FindRound looks for the parts of the
// last link, to the left, and Carry moves pieces as one round of replacement would move text. Pieces are
// linked by number and only ever trimmed at their ends or relinked, so a round costs what it drops or makes
// final.
#include "text/html/crossed_links.h"

#include "text/find.h"
#include "text/html/link_marks.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tvut {

namespace {

bool EndsWith(const char16_t* text, const char16_t* end, std::u16string_view part) {
    return static_cast<std::size_t>(end - text) >= part.size() &&
           std::equal(part.begin(), part.end(), end - part.size());
}

// Reports where blocks and addresses begin, from the start to the end.
template <class OnBlock, class OnAddress>
void WalkOver(std::u16string_view text, OnBlock onBlock, OnAddress onAddress) {
    const char16_t* const start = text.data();
    const char16_t* const end = start + text.size();
    const char16_t* bracket = nullptr; // the last > that does not begin a block so far
    const auto beginPending = [&] {
        if (bracket)
            onBlock(std::exchange(bracket, nullptr), false);
    };
    for (const char16_t* next = start; (next = UtilpFindAny(next, end, {u'<', u'>', u'"'})) != end; ++next) {
        if (*next == u'<') {
            if (end - next > 1 && next[1] == linkStart.back())
                beginPending();
        } else if (*next == u'"') {
            if (EndsWith(start, next + 1, linkAddress)) {
                beginPending();
                onAddress(next + 1 - linkAddress.size());
            }
        } else if (EndsWith(start, next + 1, linkEnd)) {
            beginPending();
            onBlock(next, true);
        } else {
            bracket = next;
        }
    }
}

} // namespace

clsCrossedLinks::clsCrossedLinks(std::u16string_view text) {
    std::size_t blocks = 1, addresses = 0, ends = 0;
    WalkOver(
        text, [&](const char16_t*, bool endsLink) { ++blocks, ends += endsLink; },
        [&](const char16_t*) { ++addresses; });
    blocks_.reserve(blocks); // growing would take three times as much
    pieces_.reserve(blocks + addresses + 2 * std::min(ends, addresses));
    BeginBlock(text.data(), false);
    WalkOver(
        text, [this](const char16_t* start, bool endsLink) { BeginBlock(start, endsLink); },
        [this](const char16_t* start) { BeginAddress(start); });
    pieces_.back().end = text.data() + text.size();
}

void clsCrossedLinks::BeginBlock(const char16_t* start, bool endsLink) {
    if (!pieces_.empty())
        pieces_.back().end = start;
    const Index piece = AddPiece(start, start);
    const Index below = top_;
    top_ = static_cast<Index>(blocks_.size());
    blocks_.push_back({below, below, piece, piece, {}, endsLink});
}

void clsCrossedLinks::BeginAddress(const char16_t* start) {
    pieces_.back().end = start;
    const Index piece = AddPiece(start, start);
    scBlock& block = blocks_[top_];
    Link(block.lastPiece, piece);
    block.lastPiece = piece;
    block.addresses = Join(block.addresses, {piece, piece});
    block.addressed = top_;
}

clsCrossedLinks::Index clsCrossedLinks::AddPiece(const char16_t* start, const char16_t* end) {
    pieces_.push_back({start, end, none, none, none});
    return static_cast<Index>(pieces_.size() - 1);
}

void clsCrossedLinks::Link(Index before, Index after) {
    pieces_[before].after = after;
    pieces_[after].before = before;
}

clsCrossedLinks::scAddresses clsCrossedLinks::Join(scAddresses before, scAddresses after) {
    if (before.last == none || after.first == none)
        return before.last == none ? after : before;
    pieces_[after.first].addressBefore = before.last;
    return {before.first, after.last};
}

// ---- Rounds ----

void clsCrossedLinks::Resolve(clsBackwardText& result) {
    for (; top_ != none; top_ = blocks_[top_].below) {
        scRound round;
        while (blocks_[top_].endsLink) {
            if (!FindRound(round)) { // then there will be no other
                for (; top_ != none; top_ = blocks_[top_].below)
                    PutBlock(top_, result);
                return;
            }
            Carry(round, result);
        }
        PutBlock(top_, result);
    }
}

void clsCrossedLinks::PutBlock(Index block, clsBackwardText& result) const {
    for (Index piece = blocks_[block].lastPiece;; piece = pieces_[piece].before) {
        result.Put(
            {pieces_[piece].start, static_cast<std::size_t>(pieces_[piece].end - pieces_[piece].start)});
        if (piece == blocks_[block].firstPiece)
            return;
    }
}

// Looks only; what is passed over is dropped if there is a round, and otherwise never looked at again.
bool clsCrossedLinks::FindRound(scRound& round) {
    round.label = blocks_[top_].below;
    const Index beforeLabel = blocks_[round.label].below;
    return beforeLabel != none && FindQuote(beforeLabel, round.quote) &&
           FindAddress(round.quote, round.address) && FindStart(round.address, round.start);
}

bool clsCrossedLinks::FindQuote(Index block, scPlace& quote) const {
    for (; block != none; block = blocks_[block].below) {
        for (Index piece = blocks_[block].lastPiece;; piece = pieces_[piece].before) {
            if (const char16_t* const at = UtilpFindLast(pieces_[piece].start, pieces_[piece].end, u'"')) {
                quote = {block, piece, at, blocks_[block].addresses.last};
                return true;
            }
            if (piece == blocks_[block].firstPiece)
                break;
        }
    }
    return false;
}

// Whether the quotation mark is the one of href=" itself, which is then no address's beginning.
bool clsCrossedLinks::IsOwnQuote(const scPlace& quote) const {
    return quote.piece == quote.addressBefore &&
           quote.at == pieces_[quote.piece].start + linkAddress.size() - 1;
}

bool clsCrossedLinks::FindAddress(const scPlace& quote, scPlace& address) {
    address.block = quote.block;
    address.piece = IsOwnQuote(quote) ? pieces_[quote.piece].addressBefore : quote.addressBefore;
    if (address.piece == none) {
        address.block = NearestAddressed(blocks_[quote.block].below);
        if (address.block == none)
            return false;
        address.piece = blocks_[address.block].addresses.last;
    }
    address.at = pieces_[address.piece].start;
    address.addressBefore = pieces_[address.piece].addressBefore;
    return true;
}

clsCrossedLinks::Index clsCrossedLinks::NearestAddressed(Index block) {
    while (block != none && blocks_[block].addressed != block) {
        Index& next = blocks_[block].addressed;
        if (next != none)
            next = blocks_[next].addressed;
        block = next;
    }
    return block;
}

bool clsCrossedLinks::FindStart(const scPlace& address, scPlace& start) const {
    start = address;
    const char16_t* end = address.at; // of the part of the piece that is still to be looked at
    for (;;) {
        const scPiece& piece = pieces_[start.piece];
        while (const char16_t* const at = UtilpFindLast(piece.start, end, linkStart.front())) {
            if (IsStart(start.piece, at)) {
                start.at = at;
                return true;
            }
            end = at;
        }
        if (start.piece == start.addressBefore)
            start.addressBefore = piece.addressBefore;
        if (start.piece != blocks_[start.block].firstPiece) {
            start.piece = piece.before;
        } else {
            start.block = blocks_[start.block].below;
            if (start.block == none)
                return false;
            start.piece = blocks_[start.block].lastPiece;
            start.addressBefore = blocks_[start.block].addresses.last;
        }
        end = pieces_[start.piece].end;
    }
}

// Its characters may lie in several pieces; what follows the block is a >, which is none of them.
bool clsCrossedLinks::IsStart(Index piece, const char16_t* at) const {
    ++at;
    return UnitAfter(piece, at) == linkStart.back() && UtilpIsPatternBlank(UnitAfter(piece, at));
}

char16_t clsCrossedLinks::UnitAfter(Index& piece, const char16_t*& at) const {
    while (piece != none && at == pieces_[piece].end) {
        piece = pieces_[piece].after;
        if (piece != none)
            at = pieces_[piece].start;
    }
    return piece != none ? *at++ : u'\0';
}

// ---- Carrying a round out ----

void clsCrossedLinks::Carry(const scRound& round, clsBackwardText& result) {
    ++pieces_[blocks_[top_].firstPiece].start; // the > of </a>
    PutBlock(top_, result);
    result.Put(afterAddress);
    CutAddressEnd(round);
    TrimLabel(round.label);
    MergeIntoAddress(round);
    top_ = round.quote.block;
}

void clsCrossedLinks::CutAddressEnd(const scRound& round) {
    scBlock& block = blocks_[round.quote.block];
    pieces_[round.quote.piece].end = round.quote.at;
    pieces_[round.quote.piece].after = none;
    block.lastPiece = round.quote.piece;
    if (!IsOwnQuote(round.quote))
        return;
    block.addresses.last = pieces_[round.quote.piece].addressBefore;
    if (block.addresses.last == none) {
        block.addresses.first = none;
        block.addressed = block.below;
    }
}

// Takes off the > before the label and what there is of </a> after it.
void clsCrossedLinks::TrimLabel(Index label) {
    ++pieces_[blocks_[label].firstPiece].start;
    pieces_[blocks_[label].lastPiece].end -= linkEnd.size() - 1;
}

// What is before the link, the label, and the address up to the end of its block become one block, in
// the place of the address's.
void clsCrossedLinks::MergeIntoAddress(const scRound& round) {
    const scBlock before = blocks_[round.start.block];
    scBlock label = blocks_[round.label];
    scAddresses addresses;
    if (round.start.addressBefore != none)
        addresses = {before.addresses.first, round.start.addressBefore};

    pieces_[round.address.piece].start += linkAddress.size();
    pieces_[round.start.piece].end = round.start.at;
    const Index beforeLast = LastFilled(round.start.piece, before.firstPiece);
    label.firstPiece = FirstFilled(label.firstPiece, label.lastPiece);
    label.lastPiece = LastFilled(label.lastPiece, label.firstPiece);
    const Index between = AddPiece(beforeAddress.data(), beforeAddress.data() + beforeAddress.size());
    Link(label.lastPiece, between);
    Link(between, round.address.piece);
    Link(beforeLast, label.firstPiece);
    addresses = Join(addresses, AddressAcross(beforeLast, label.firstPiece));
    addresses = Join(addresses, label.addresses);

    scBlock& merged = blocks_[round.address.block];
    merged.below = before.below;
    merged.endsLink = before.endsLink;
    merged.firstPiece = before.firstPiece;
    merged.addresses = addresses;
    merged.addressed = addresses.last != none ? round.address.block : merged.below;
}

// Pieces that have become empty are left out where others are put before or after them: in a row that
// grows with each round they would all be walked over by the next.
clsCrossedLinks::Index clsCrossedLinks::FirstFilled(Index piece, Index last) const {
    while (piece != last && pieces_[piece].start == pieces_[piece].end)
        piece = pieces_[piece].after;
    return piece;
}

clsCrossedLinks::Index clsCrossedLinks::LastFilled(Index piece, Index first) const {
    while (piece != first && pieces_[piece].start == pieces_[piece].end)
        piece = pieces_[piece].before;
    return piece;
}

// A label that comes to stand after other text may complete a href=" there; it gets a piece of its own.
clsCrossedLinks::scAddresses clsCrossedLinks::AddressAcross(Index before, Index after) {
    const std::size_t units = UnitsAcross(before, after);
    if (units == 0)
        return {};
    TrimEnd(before, units);
    TrimStart(after, linkAddress.size() - units);
    const Index piece = AddPiece(linkAddress.data(), linkAddress.data() + linkAddress.size());
    Link(before, piece);
    Link(piece, after);
    return {piece, piece};
}

// How many units of a href=" stand before the place where two pieces meet and the rest after it; or 0.
std::size_t clsCrossedLinks::UnitsAcross(Index before, Index after) const {
    constexpr std::size_t most = linkAddress.size() - 1;
    std::array<char16_t, 2 * most> units{}; // around the place
    std::size_t count = 0;
    for (Index piece = before; piece != none && count != most; piece = pieces_[piece].before) {
        for (const char16_t* at = pieces_[piece].end; at != pieces_[piece].start && count != most;)
            units[most - ++count] = *--at;
    }
    const char16_t* next = pieces_[after].start;
    for (std::size_t at = most; at != units.size(); ++at)
        units[at] = UnitAfter(after, next);
    const std::size_t found = std::u16string_view(units.data(), units.size()).find(linkAddress);
    return found < most ? most - found : 0;
}

void clsCrossedLinks::TrimEnd(Index piece, std::size_t units) {
    for (; units != 0; piece = pieces_[piece].before) {
        const auto size = static_cast<std::size_t>(pieces_[piece].end - pieces_[piece].start);
        const std::size_t taken = std::min(units, size);
        pieces_[piece].end -= taken;
        units -= taken;
    }
}

void clsCrossedLinks::TrimStart(Index piece, std::size_t units) {
    for (; units != 0; piece = pieces_[piece].after) {
        const auto size = static_cast<std::size_t>(pieces_[piece].end - pieces_[piece].start);
        const std::size_t taken = std::min(units, size);
        pieces_[piece].start += taken;
        units -= taken;
    }
}

} // namespace tvut
