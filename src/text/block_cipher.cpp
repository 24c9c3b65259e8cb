#include "text/block_cipher.h"

#include <algorithm>
#include <bit>

namespace tvut {

namespace {

using Byte = std::uint8_t;
constexpr std::size_t blockBytes = clsBlockCipher::blockBytes;
constexpr std::size_t blocksAtOnce = 8; // enough to hide what one instruction waits for another

// Blocks are little-endian on every machine; compilers make one move of each of these.
std::uint64_t LoadBlock(const Byte* bytes) {
    std::uint64_t block = 0;
    for (unsigned at = 0; at < blockBytes; ++at)
        block |= std::uint64_t{bytes[at]} << 8 * at;
    return block;
}

void StoreBlock(Byte* bytes, std::uint64_t block) {
    for (unsigned at = 0; at < blockBytes; ++at)
        bytes[at] = static_cast<Byte>(block >> 8 * at);
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
        std::array<std::uint32_t, blocksAtOnce> x{};
        std::array<std::uint32_t, blocksAtOnce> y{};
        for (std::size_t at = 0; at < count; ++at) {
            x[at] = High(blocks[at]);
            y[at] = Low(blocks[at]);
        }
        for (std::size_t number = roundCount; number-- != 0;) {
            const std::uint32_t key = rounds_[number];
            for (std::size_t at = 0; at < blocksAtOnce; ++at) {
                y[at] = std::rotr(y[at] ^ x[at], 3);
                x[at] = std::rotl((x[at] ^ key) - y[at], 8);
            }
        }
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
