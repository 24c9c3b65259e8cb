// Bytes are packed whole before they become text, because the text's length must be known before it is
// written. The other way round everything goes piece by piece, Base64, cipher, zlib, sink, and needs memory
// for one piece only. Limits are checked as bytes come: how far a text unfolds shows only then.
#include "text/bytes/byte_text.h"

#include "platform/exception.h"
#include "runtime/diagnostics.h"
#include "text/bytes/base64.h"
#include "text/bytes/block_cipher.h"
#include "text/bytes/deflate.h"

#include <algorithm>
#include <memory>
#include <optional>

namespace tvut {

namespace {

using Byte = std::uint8_t;

constexpr std::u16string_view zlibMark = u"@2@";
constexpr std::u16string_view filledMark = u"@1@";

// Memory for a piece of what passes through. A piece that fills it is of whole groups and blocks.
class clsRoom {
  public:
    static constexpr std::size_t unit = 24;
    explicit clsRoom(std::size_t bytes)
        : size_((bytes + unit - 1) / unit * unit), bytes_(std::make_unique_for_overwrite<Byte[]>(size_)) {}
    std::span<Byte> Span() const { return {bytes_.get(), size_}; }

  private:
    std::size_t size_;
    std::unique_ptr<Byte[]> bytes_;
};

constexpr std::size_t smallestBlock = 128 * clsRoom::unit;
constexpr std::size_t largestBlock = 256 * smallestBlock;
constexpr std::size_t readAtOnce = 256 * 1024;
constexpr std::size_t decodedAtOnce = 192 * 1024;
constexpr std::size_t unfoldedAtOnce = 256 * 1024;

std::size_t Drain(clsByteSource& source, clsByteSink& sink) {
    const clsRoom room(readAtOnce);
    std::size_t all = 0;
    sink.Extend(clsByteSink::unknownLength);
    while (const std::size_t read = source.Read(room.Span().data(), room.Span().size())) {
        all += read;
        UtilpRequireReadable(all);
        sink.Write(room.Span().data(), read);
    }
    sink.Finish();
    return all;
}

void Encipher(clsByteBlocks& bytes, std::u16string_view keyText) {
    if (keyText.empty() || bytes.Size() < clsBlockCipher::blockBytes)
        return;
    clsCipherChain chain(keyText);
    for (auto& block : bytes.Blocks())
        chain.Encipher(block);
}

// A text that cannot be decoded, with the line that says so.
class clsUndecodable : public clsException {
  public:
    explicit clsUndecodable(std::u16string_view line) : clsException("text of bytes"), line_(line) {}
    std::u16string_view Line() const { return line_; }

  private:
    std::u16string_view line_; // a literal
};

// The bytes that were encoded, deciphered, piece by piece.
class clsPieces {
  public:
    clsPieces(std::u16string_view text, clsBase64Decoder::Padding padding, std::u16string_view keyText)
        : decoder_(text, padding), keyText_(keyText),
          room_(std::min(decodedAtOnce, text.size() / 4 * 3 + clsRoom::unit)) {}

    // The next piece; an empty one at the end.
    std::span<const Byte> Next() {
        const auto count = decoder_.Decode(room_.Span());
        if (!count)
            throw clsUndecodable(u"ERR: Base64 string has bad format!");
        const auto piece = room_.Span().first(*count);
        if (!keyText_.empty() && piece.size() >= clsBlockCipher::blockBytes)
            chain_.emplace(keyText_);
        keyText_ = {}; // looked at with the first piece only: later ones may be short
        if (chain_)
            chain_->Decipher(piece);
        return piece;
    }

  private:
    clsBase64Decoder decoder_;
    std::u16string_view keyText_;
    std::optional<clsCipherChain> chain_;
    clsRoom room_;
};

void Copy(clsPieces& pieces, clsByteSink& sink) {
    for (auto piece = pieces.Next(); !piece.empty(); piece = pieces.Next())
        sink.Write(piece.data(), piece.size());
}

void Inflate(clsPieces& pieces, clsByteSink& sink, std::uint64_t limit) {
    constexpr std::u16string_view damaged =
        u"ERR: compressed bytes of a text are damaged, cut off or of another key";
    const clsRoom room(unfoldedAtOnce);
    clsInflater inflater;
    std::uint64_t all = 0;
    for (auto piece = pieces.Next(); !piece.empty(); piece = pieces.Next()) {
        inflater.Feed(piece.data(), piece.size());
        for (std::size_t unfolded = room.Span().size(); unfolded == room.Span().size();) {
            unfolded = inflater.Unfold(room.Span().data(), room.Span().size());
            if (unfolded > limit - all)
                throw clsUndecodable(u"ERR: compressed bytes of a text unfold to more than 256 MiB");
            all += unfolded;
            sink.Write(room.Span().data(), unfolded);
        }
        if (inflater.Now() == clsInflater::State::damaged || inflater.Left() != 0)
            throw clsUndecodable(damaged);
    }
    if (inflater.Now() != clsInflater::State::ended)
        throw clsUndecodable(damaged);
}

} // namespace

void UtilpRequireReadable(std::uint64_t bytes) {
    if (bytes <= largestUnfoldedBytes)
        return;
    clsDiagnosticLine().Put(u"WRN: more than 256 MiB cannot be kept as a text").Write();
    throw clsException("more bytes than could be read again", reason::tooLarge);
}

void clsByteBlocks::Write(const void* data, std::size_t bytes) {
    const auto* next = static_cast<const Byte*>(data);
    while (bytes != 0) {
        if (blocks_.empty() || blocks_.back().size() == room_) {
            const std::size_t room = std::clamp(room_ * 2, smallestBlock, largestBlock);
            blocks_.emplace_back().reserve(room);
            room_ = room;
        }
        Block& block = blocks_.back();
        const std::size_t count = std::min(bytes, room_ - block.size());
        block.insert(block.end(), next, next + count);
        size_ += count;
        next += count;
        bytes -= count;
    }
}

clsPackedBytes::clsPackedBytes(clsByteSource& source, Compression compression, std::u16string_view keyText)
    : compressed_(compression == Compression::zlib) {
    if (compressed_) {
        clsDeflatingSink deflating(packed_);
        if (Drain(source, deflating) == 0) { // no bytes are the empty text
            packed_ = {};
            compressed_ = false;
        }
    } else {
        Drain(source, packed_);
    }
    Encipher(packed_, keyText);
}

std::size_t clsPackedBytes::TextLength() const {
    return (compressed_ ? zlibMark.size() : 0) + UtilpBase64Length(packed_.Size());
}

void clsPackedBytes::WriteText(char16_t* text) const {
    if (compressed_)
        text = std::ranges::copy(zlibMark, text).out;
    for (const auto& block : packed_.Blocks()) {
        UtilpBase64Encode(block, text);
        text += UtilpBase64Length(block.size());
    }
}

bool UtilpWriteBytesOfText(std::u16string_view text, std::u16string_view keyText, clsByteSink& sink,
                           std::uint64_t limit) {
    sink.Extend(clsByteSink::unknownLength);
    const bool compressed = text.starts_with(zlibMark);
    const bool filled = text.starts_with(filledMark);
    if (compressed || filled)
        text.remove_prefix(zlibMark.size());
    const auto padding = filled ? clsBase64Decoder::Padding::isZero : clsBase64Decoder::Padding::isNothing;
    try {
        clsPieces pieces(text, padding, keyText);
        if (compressed)
            Inflate(pieces, sink, limit);
        else
            Copy(pieces, sink);
        return true;
    } catch (const clsUndecodable& error) {
        clsDiagnosticLine().Put(error.Line()).Write();
        return false;
    }
}

} // namespace tvut
