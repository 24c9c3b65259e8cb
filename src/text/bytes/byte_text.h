// The text form of bytes, as items of a profile hold it. docs/byte-text.md fixes it.
//
//     ""         no bytes
//     Base64     the bytes
//     @2@Base64  the bytes as a zlib stream
//     @1@Base64  the bytes with zeros after them, up to a multiple of three; read, but never written
//
// With a key text, what is encoded is enciphered if it has 8 bytes or more. Any other text that begins
// with "@" is in bad format, since "@" is outside the alphabet.
#pragma once

#include "platform/bytes.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace tvut {

// A text of a few hundred kilobytes may unfold to gigabytes; nothing that is stored is that large.
constexpr std::uint64_t largestUnfoldedBytes = 256 * 1024 * 1024;

// Throws clsException, after a diagnostic line, for more bytes than could be read from a text of them.
void UtilpRequireReadable(std::uint64_t bytes);

// Memory that grows by blocks: no byte is moved, and what is taken exceeds what is written by little.
class clsByteBlocks final : public clsByteSink {
  public:
    using Block = std::vector<std::uint8_t>;

    void Extend(std::uint64_t) override {}
    void Write(const void* data, std::size_t bytes) override; // throws std::bad_alloc
    void Finish() override {}

    std::size_t Size() const { return size_; }
    // All blocks but the last are of a multiple of 24 bytes: whole groups of Base64, whole blocks of
    // the cipher.
    std::span<Block> Blocks() { return blocks_; }
    std::span<const Block> Blocks() const { return blocks_; }

  private:
    std::vector<Block> blocks_;
    std::size_t room_ = 0; // of the last block
    std::size_t size_ = 0;
};

// Bytes on their way to text, compressed and enciphered but not yet encoded, so that the text's length
// is known and the text can be written to where it belongs.
class clsPackedBytes {
  public:
    enum class Compression { none, zlib };

    // Reads a source to its end. Throws what the source throws, clsException when it has more bytes than can
    // be read again, std::bad_alloc.
    clsPackedBytes(clsByteSource& source, Compression compression, std::u16string_view keyText);

    std::size_t TextLength() const; // throws std::bad_alloc when no text can be so long
    void WriteText(char16_t* text) const;

  private:
    clsByteBlocks packed_;
    bool compressed_;
};

// Writes the bytes that a text stands for to a sink, whose length it does not know and which is not finished.
// A text that cannot be decoded, or unfolds to more than a limit, is reported by false and a diagnostic line;
// the sink may have got some bytes by then, so whoever promises all or nothing passes a sink that can be
// dropped. Throws what the sink throws, std::bad_alloc.
bool UtilpWriteBytesOfText(std::u16string_view text, std::u16string_view keyText, clsByteSink& sink,
                           std::uint64_t limit = largestUnfoldedBytes);

} // namespace tvut
