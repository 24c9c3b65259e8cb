// Walks the chain of pieces that crossed_links.h describes from its end: FindRound looks for the parts of the
// last link, to the left, and Carry moves pieces as one round of replacement would move text. Pieces are
// linked by number and only ever trimmed at their ends or relinked, so a round costs what it drops or makes
// final.
#include "text/html/crossed_links.h"

#include "text/find.h"
#include "text/html/link_marks.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace tvut {

namespace {

// Whether what is looked for ends with a place, given that its last unit stands there. The unit before tells
// it nearly always.
bool EndsAddress(const char16_t* text, const char16_t* place) {
    constexpr std::ptrdiff_t before = linkAddress.size() - 1;
    return place - text >= before && place[-1] == linkAddress[before - 1] &&
           std::memcmp(place - before, linkAddress.data(), before * sizeof(char16_t)) == 0;
}
// Whether a text ends with <a and white space, which is what stands before most addresses.
bool EndsWithStart(const char16_t* text, const char16_t* end) {
    return end - text > 2 && UtilpIsPatternBlank(end[-1]) && end[-2] == linkStart.back() &&
           end[-3] == linkStart.front();
}
// Whether there is a unit after this one in href=" too.
bool MayEndLeftPart(char16_t unit) {
    static_assert(linkAddress == u"href=\"");
    return unit == u'h' || unit == u'r' || unit == u'e' || unit == u'f' || unit == u'=';
}
bool EndsLink(const char16_t* text, const char16_t* place) {
    constexpr std::ptrdiff_t before = linkEnd.size() - 1;
    return place - text >= before && place[-1] == linkEnd[before - 1] &&
           std::memcmp(place - before, linkEnd.data(), before * sizeof(char16_t)) == 0;
}

} // namespace

clsCrossedLinks::clsCrossedLinks(std::u16string_view text)
    : pieces_(text.size() / 4), blocks_(text.size() / 8), text_(text.data()),
      textEnd_(text.data() + text.size()), unreadEnd_(textEnd_) {
    top_ = ReadBlock();
}

// ---- Reading ----

clsCrossedLinks::Index clsCrossedLinks::ReadBlock() {
    if (!unreadEnd_)
        return none;
    const Index number = blocks_.Add();
    scBlock& block = blocks_[number];
    block = {unread, unread, none, none, noAddresses, false};
    const char16_t* pieceEnd = unreadEnd_; // what is not in a piece yet ends here
    unreadEnd_ = UtilpFindLastOf(text_, unreadEnd_, {u'<', u'>', u'"'}, [&](const char16_t* place) {
        if (*place == u'<') {
            matters_ = matters_ || (textEnd_ - place > 1 && place[1] == linkStart.back());
            return false;
        }
        if (*place == u'"') {
            if (EndsAddress(text_, place)) {
                matters_ = true;
                const char16_t* const start = place + 1 - linkAddress.size();
                const Index piece = PutFirst(block, start, std::exchange(pieceEnd, start));
                block.addresses = Join({piece, piece}, block.addresses);
                block.addressed = number;
            }
            return false;
        }
        block.endsLink = EndsLink(text_, place);
        return std::exchange(matters_, block.endsLink) || block.endsLink;
    });
    PutFirst(block, unreadEnd_ ? unreadEnd_ : text_, pieceEnd);
    return number;
}

// Puts a piece before all others of a block.
clsCrossedLinks::Index clsCrossedLinks::PutFirst(scBlock& block, const char16_t* start, const char16_t* end) {
    const Index piece = AddPiece(start, end);
    if (block.firstPiece != none)
        Link(piece, block.firstPiece);
    else
        block.lastPiece = piece;
    block.firstPiece = piece;
    return piece;
}

clsCrossedLinks::Index clsCrossedLinks::Below(Index block) {
    if (blocks_[block].below == unread) {
        const Index below = ReadBlock();
        blocks_[block].below = below;
    }
    return blocks_[block].below;
}

clsCrossedLinks::Index clsCrossedLinks::Addressed(Index block) {
    if (blocks_[block].addressed == unread)
        blocks_[block].addressed = Below(block);
    return blocks_[block].addressed;
}

clsCrossedLinks::Index clsCrossedLinks::AddPiece(const char16_t* start, const char16_t* end) {
    const Index piece = pieces_.Add();
    pieces_[piece] = {start, end, none, none, none};
    return piece;
}

// Its pieces must be linked from the first to the last.
void clsCrossedLinks::FreeWithPieces(Index block) {
    pieces_.Free(blocks_[block].firstPiece, blocks_[block].lastPiece);
    blocks_.Free(block, block);
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
    while (top_ != none) {
        scRound round;
        while (blocks_[top_].endsLink) {
            if (!FindRound(round)) { // then there will be no other, and all has been read or need not be
                for (; top_ != none && top_ != unread; top_ = blocks_[top_].below)
                    PutBlock(top_, result);
                if (unreadEnd_)
                    result.Put({text_, static_cast<std::size_t>(unreadEnd_ - text_)});
                return;
            }
            Carry(round, result);
        }
        PutBlock(top_, result);
        const Index below = Below(top_);
        FreeWithPieces(top_);
        top_ = below;
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
    round.label = Below(top_);
    const Index beforeLabel = Below(round.label);
    return beforeLabel != none && FindQuote(beforeLabel, round.quote) &&
           FindAddress(round.quote, round.address) && FindStart(round.address, round.start);
}

bool clsCrossedLinks::FindQuote(Index block, scPlace& quote) {
    for (; block != none; block = Below(block)) {
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
        address.block = NearestAddressed(Below(quote.block));
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
        Index next = Addressed(block);
        if (next != none) {
            next = Addressed(next);
            blocks_[block].addressed = next;
        }
        block = next;
    }
    return block;
}

bool clsCrossedLinks::FindStart(const scPlace& address, scPlace& start) {
    start = address;
    const char16_t* end = address.at; // of the part of the piece that is still to be looked at
    for (;;) {
        const scPiece& piece = pieces_[start.piece];
        if (EndsWithStart(piece.start, end)) {
            start.at = end - (linkStart.size() + 1);
            return true;
        }
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
            start.block = Below(start.block);
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
    if (pieces_[piece].end - at >= 2)
        return at[0] == linkStart.back() && UtilpIsPatternBlank(at[1]);
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
    static_assert(afterAddress.size() == 1);
    result.Put(afterAddress.front());
    CutAddressEnd(round);
    TrimLabel(round.label);
    for (Index block = blocks_[round.label].below; block != round.quote.block;) {
        const Index dropped = std::exchange(block, blocks_[block].below);
        FreeWithPieces(dropped);
    }
    MergeIntoAddress(round);
    blocks_.Free(round.label, round.label);
    FreeWithPieces(top_);
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
    const scBlock& before = blocks_[round.start.block]; // may be the one that is written over in the end
    const scBlock& label = blocks_[round.label];
    const Index below = before.below, firstPiece = before.firstPiece;
    const bool endsLink = before.endsLink;
    scAddresses addresses = noAddresses;
    if (round.start.addressBefore != none)
        addresses = {before.addresses.first, round.start.addressBefore};

    pieces_[round.address.piece].start += linkAddress.size();
    pieces_[round.start.piece].end = round.start.at;
    const Index beforeLast = LastFilled(round.start.piece, firstPiece);
    const Index labelFirst = FirstFilled(label.firstPiece, label.lastPiece);
    const Index labelLast = LastFilled(label.lastPiece, labelFirst);
    const Index between = AddPiece(beforeAddress.data(), beforeAddress.data() + beforeAddress.size());
    Link(labelLast, between);
    Link(between, round.address.piece);
    Link(beforeLast, labelFirst);
    addresses = Join(addresses, AddressAcross(beforeLast, labelFirst));
    addresses = Join(addresses, label.addresses);

    scBlock& merged = blocks_[round.address.block];
    merged.below = below;
    merged.endsLink = endsLink;
    merged.firstPiece = firstPiece;
    merged.addresses = addresses;
    merged.addressed = addresses.last != none ? round.address.block : below;
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
        return noAddresses;
    TrimEnd(before, units);
    TrimStart(after, linkAddress.size() - units);
    const Index piece = AddPiece(linkAddress.data(), linkAddress.data() + linkAddress.size());
    Link(before, piece);
    Link(piece, after);
    return {piece, piece};
}

// How many units of a href=" stand before the place where two pieces meet and the rest after it; or 0.
std::size_t clsCrossedLinks::UnitsAcross(Index before, Index after) const {
    const scPiece& left = pieces_[before];
    if (left.start != left.end && !MayEndLeftPart(left.end[-1]))
        return 0; // as nearly always
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
