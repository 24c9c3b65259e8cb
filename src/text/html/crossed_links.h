// Links whose addresses hold the ends of other links, resolved at a cost that grows with the text only.
//
// The rounds are those of links.h. A round takes label and address out of the text and puts them back in
// the other order, so that the next one may begin within them; looking through them again each time would
// cost the square of the text. Instead the text is a chain of pieces, cut where blocks and addresses
// begin:
//
// - A block begins at a > that can be the one before a label, and reaches to the next. The label is
//   always a whole block, the one before the last </a>. Blocks keep their order for ever; a label that
//   moves to the left is appended to the block that precedes the link.
// - Each block knows the pieces in it that begin with href=", in order. The last one before a place is found
//   through the nearest block that has any; blocks that have none any more point on to the left, and
//   these pointers are shortened when they are followed.
//
// Everything else is found by walking left over what the round then drops or makes final, so that each
// character is walked over once.
//
// Blocks are read from the end of the text, each when a round comes to it, and blocks and pieces that a round
// drops are used again: most texts never need many of them at a time.
//
// A > matters only if <a, href=" or </a> comes before the next >: without these nothing can ever remove
// the next > and leave a </a> after it. That keeps the number of blocks to a fraction of the text's
// length even where it is all brackets.
#pragma once

#include "text/html/backward_text.h"
#include "text/html/item_pool.h"

#include <cstdint>

namespace tvut {

class clsCrossedLinks {
  public:
    explicit clsCrossedLinks(std::u16string_view text);

    // Runs all rounds and writes the whole text.
    void Resolve(clsBackwardText& result);

  private:
    using Index = std::uint32_t;
    static constexpr Index none = 0xFFFFFFFF;
    static constexpr Index unread = 0xFFFFFFFE; // the block before is still to be read

    struct scPiece {
        const char16_t* start;
        const char16_t* end;
        Index before; // neighbours in the block
        Index after;
        Index addressBefore; // of a piece that begins with href=": the one before in the block
    };
    struct scAddresses { // pieces
        Index first;
        Index last;
    };
    static constexpr scAddresses noAddresses{none, none};
    struct scBlock {
        Index below;     // the block before, or unread
        Index addressed; // itself if it has addresses, or some block below on the way to one that has; unread
                         // is the one below
        Index firstPiece;
        Index lastPiece;
        scAddresses addresses;
        bool endsLink; // the > that it begins with is that of </a>
    };
    // A place in the chain, and the last address of its block that lies before it.
    struct scPlace {
        Index block;
        Index piece;
        const char16_t* at;
        Index addressBefore;
    };
    struct scRound {
        Index label; // a block
        scPlace quote;
        scPlace address; // the piece that begins with href="
        scPlace start;   // at <a
    };

    Index ReadBlock();
    Index PutFirst(scBlock& block, const char16_t* start, const char16_t* end);
    Index Below(Index block);
    Index Addressed(Index block);
    Index AddPiece(const char16_t* start, const char16_t* end);
    void FreeWithPieces(Index block);

    void PutBlock(Index block, clsBackwardText& result) const;
    bool FindRound(scRound& round);
    bool FindQuote(Index block, scPlace& quote);
    bool FindAddress(const scPlace& quote, scPlace& address);
    bool FindStart(const scPlace& address, scPlace& start);
    bool IsStart(Index piece, const char16_t* at) const;
    char16_t UnitAfter(Index& piece, const char16_t*& at) const;
    Index NearestAddressed(Index block);
    bool IsOwnQuote(const scPlace& quote) const;

    void Carry(const scRound& round, clsBackwardText& result);
    void CutAddressEnd(const scRound& round);
    void TrimLabel(Index label);
    void MergeIntoAddress(const scRound& round);
    Index FirstFilled(Index piece, Index last) const;
    Index LastFilled(Index piece, Index first) const;
    void Link(Index before, Index after);
    scAddresses Join(scAddresses before, scAddresses after);
    scAddresses AddressAcross(Index before, Index after);
    std::size_t UnitsAcross(Index before, Index after) const;
    void TrimEnd(Index piece, std::size_t units);
    void TrimStart(Index piece, std::size_t units);

    clsItemPool<scPiece, &scPiece::after> pieces_;
    clsItemPool<scBlock, &scBlock::below> blocks_;
    const char16_t* text_;
    const char16_t* textEnd_;
    const char16_t* unreadEnd_; // what is not in blocks yet reaches to here; null when there is nothing
    bool matters_ = false;      // whether the last > of it begins a block
    Index top_ = none;          // the last block
};

} // namespace tvut
