// The block cipher of the key text of stored bytes: Speck64/128 in cipher block chaining.
//
// A published cipher with blocks of 64 and keys of 128 bits, chosen for what it costs: few instructions,
// no tables, some times faster than its likes at equal strength. docs/byte-text.md says what it protects
// from and fixes every byte, because stored profiles must stay readable for ever.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace tvut {

class clsBlockCipher {
  public:
    static constexpr std::size_t blockBytes = 8;
    using Key = std::array<std::uint32_t, 4>;

    explicit clsBlockCipher(const Key& key);
    // The key that a text of any length stands for.
    explicit clsBlockCipher(std::u16string_view keyText);

    std::uint64_t Encipher(std::uint64_t block) const;
    // A number of blocks, independent of each other.
    void Decipher(std::span<std::uint64_t> blocks) const;

  private:
    static constexpr std::size_t roundCount = 27;
    std::array<std::uint32_t, roundCount> rounds_;
};

// Enciphers or deciphers one run of bytes in place. It may come in pieces; all but the last are
// multiples of a block. The rest after the last whole block is covered with the chain's next mask.
class clsCipherChain {
  public:
    explicit clsCipherChain(std::u16string_view keyText);

    void Encipher(std::span<std::uint8_t> bytes);
    void Decipher(std::span<std::uint8_t> bytes);

  private:
    void CoverRest(std::span<std::uint8_t> bytes) const;

    clsBlockCipher cipher_;
    std::uint64_t previous_; // block of enciphered bytes
};

} // namespace tvut
