// Blocks of a chain depend on each other when they are enciphered, one after the other; deciphering has no
// such order, so eight blocks are undone at once in vector registers. A text becomes a key by a published way
// from a block cipher to a hash, so the cipher is all that is needed.
#include "text/bytes/block_cipher.h"

#include "text/units.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace tvut {

namespace {

using Byte = std::uint8_t;
constexpr std::size_t blockBytes = clsBlockCipher::blockBytes;
constexpr std::size_t blocksAtOnce = 8; // enough to hide what one instruction waits for another

static_assert(std::endian::native == std::endian::little, "blocks are little-endian");

std::uint64_t LoadBlock(const Byte* bytes) {
    std::uint64_t block;
    std::memcpy(&block, bytes, sizeof block);
    return block;
}

void StoreBlock(Byte* bytes, std::uint64_t block) {
    std::memcpy(bytes, &block, sizeof block);
}

constexpr std::uint32_t Low(std::uint64_t block) {
    return static_cast<std::uint32_t>(block);
}
constexpr std::uint32_t High(std::uint64_t block) {
    return static_cast<std::uint32_t>(block >> 32);
}
constexpr std::uint64_t Join(std::uint32_t high, std::uint32_t low) {
    return std::uint64_t{high} << 32 | low;
}

constexpr void Round(std::uint32_t& x, std::uint32_t& y, std::uint32_t key) {
    x = (std::rotr(x, 8) + y) ^ key;
    y = std::rotl(y, 3) ^ x;
}

using Halves = std::array<std::uint32_t, blocksAtOnce>;

__m128i RotateLeft(__m128i values, int bits) {
    return _mm_or_si128(_mm_slli_epi32(values, bits), _mm_srli_epi32(values, 32 - bits));
}

void UndoRound(__m128i& x, __m128i& y, __m128i key) {
    y = RotateLeft(_mm_xor_si128(y, x), 29);
    x = RotateLeft(_mm_sub_epi32(_mm_xor_si128(x, key), y), 8);
}

// Two vectors of halves: what 8 registers hold.
void UndoRounds(Halves& xs, Halves& ys, std::span<const std::uint32_t> keys) {
    const auto at = [](Halves& halves, std::size_t index) {
        return reinterpret_cast<__m128i*>(&halves[index]);
    };
    __m128i x0 = _mm_loadu_si128(at(xs, 0));
    __m128i x1 = _mm_loadu_si128(at(xs, 4));
    __m128i y0 = _mm_loadu_si128(at(ys, 0));
    __m128i y1 = _mm_loadu_si128(at(ys, 4));
    for (std::size_t number = keys.size(); number-- != 0;) {
        const __m128i key = _mm_set1_epi32(static_cast<int>(keys[number]));
        UndoRound(x0, y0, key);
        UndoRound(x1, y1, key);
    }
    _mm_storeu_si128(at(xs, 0), x0);
    _mm_storeu_si128(at(xs, 4), x1);
    _mm_storeu_si128(at(ys, 0), y0);
    _mm_storeu_si128(at(ys, 4), y1);
}

// The two halves of a text's key, while it is being absorbed.
struct scHalves {
    std::uint64_t first = 0;
    std::uint64_t second = 0;
};

std::uint64_t EncipherUnder(std::uint64_t high, std::uint64_t low, std::uint64_t block) {
    return clsBlockCipher({Low(low), High(low), Low(high), High(high)}).Encipher(block);
}

// Abreast Davies-Meyer: the published way to a hash of two blocks from a cipher of two blocks' key.
void Absorb(scHalves& halves, std::uint64_t part) {
    const scHalves before = halves;
    halves.first ^= EncipherUnder(before.second, part, before.first);
    halves.second ^= EncipherUnder(part, before.first, ~before.second);
}

// Four units a block, the last one filled up with zeros; then the number of units.
clsBlockCipher::Key KeyOfText(std::u16string_view text) {
    constexpr std::size_t unitsOfBlock = 4;
    scHalves halves;
    for (std::size_t at = 0; at < text.size(); at += unitsOfBlock) {
        std::uint64_t part = 0;
        for (std::size_t unit = 0; unit < unitsOfBlock && at + unit < text.size(); ++unit)
            part |= std::uint64_t{text[at + unit]} << 16 * unit;
        Absorb(halves, part);
    }
    Absorb(halves, text.size());
    return {Low(halves.first), High(halves.first), Low(halves.second), High(halves.second)};
}

} // namespace

clsBlockCipher::clsBlockCipher(const Key& key) {
    std::array<std::uint32_t, 3> words{key[1], key[2], key[3]};
    std::uint32_t round = key[0];
    for (std::uint32_t number = 0; number < roundCount; ++number) {
        rounds_[number] = round;
        Round(words[number % 3], round, number);
    }
}

clsBlockCipher::clsBlockCipher(std::u16string_view keyText) : clsBlockCipher(KeyOfText(keyText)) {}

std::uint64_t clsBlockCipher::Encipher(std::uint64_t block) const {
    std::uint32_t x = High(block);
    std::uint32_t y = Low(block);
    for (const std::uint32_t key : rounds_)
        Round(x, y, key);
    return Join(x, y);
}

void clsBlockCipher::Decipher(std::span<std::uint64_t> blocks) const {
    for (; !blocks.empty(); blocks = blocks.subspan(std::min(blocksAtOnce, blocks.size()))) {
        const std::size_t count = std::min(blocksAtOnce, blocks.size());
        Halves x{};
        Halves y{};
        for (std::size_t at = 0; at < count; ++at) {
            x[at] = High(blocks[at]);
            y[at] = Low(blocks[at]);
        }
        UndoRounds(x, y, rounds_);
        for (std::size_t at = 0; at < count; ++at)
            blocks[at] = Join(x[at], y[at]);
    }
}

clsCipherChain::clsCipherChain(std::u16string_view keyText)
    : cipher_(keyText), previous_(cipher_.Encipher(0)) {}

void clsCipherChain::Encipher(std::span<Byte> bytes) {
    for (; bytes.size() >= blockBytes; bytes = bytes.subspan(blockBytes)) {
        previous_ = cipher_.Encipher(LoadBlock(bytes.data()) ^ previous_);
        StoreBlock(bytes.data(), previous_);
    }
    CoverRest(bytes);
}

void clsCipherChain::Decipher(std::span<Byte> bytes) {
    while (bytes.size() >= blockBytes) {
        std::array<std::uint64_t, blocksAtOnce> enciphered;
        const std::size_t count = std::min(blocksAtOnce, bytes.size() / blockBytes);
        for (std::size_t at = 0; at < count; ++at)
            enciphered[at] = LoadBlock(bytes.data() + at * blockBytes);
        auto plain = enciphered;
        cipher_.Decipher(std::span(plain).first(count));
        for (std::size_t at = 0; at < count; ++at) {
            StoreBlock(bytes.data() + at * blockBytes, plain[at] ^ previous_);
            previous_ = enciphered[at];
        }
        bytes = bytes.subspan(count * blockBytes);
    }
    CoverRest(bytes);
}

void clsCipherChain::CoverRest(std::span<Byte> bytes) const {
    if (bytes.empty())
        return;
    std::array<Byte, blockBytes> mask;
    StoreBlock(mask.data(), cipher_.Encipher(previous_));
    for (std::size_t at = 0; at < bytes.size(); ++at)
        bytes[at] = static_cast<Byte>(bytes[at] ^ mask[at]);
}

} // namespace tvut
