// What a cipher that protects entries can do.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace tvut {

using CipherBytes = std::span<unsigned char>;
using ConstCipherBytes = std::span<const unsigned char>;

class IclsZipCipher {
  public:
    virtual ~IclsZipCipher() = default;

    // Bytes before and after the enciphered data.
    virtual std::size_t HeaderBytes() const = 0;
    virtual std::size_t TrailerBytes() const = 0;

    // Begins with what stands before the data; false when the password does not fit it.
    virtual bool Begin(ConstCipherBytes header, std::string_view password) = 0;
    virtual void Decipher(CipherBytes data) = 0; // in place, one piece after the other
    // Whether what stands after the data vouches for it.
    virtual bool Vouches(ConstCipherBytes trailer) = 0;
};

// Overwrites what is secret, also where nothing reads it any more: a compiler may leave out what only changes
// memory that is about to go, unless it is volatile.
inline void UtilpWipe(CipherBytes bytes) noexcept {
    volatile unsigned char* const memory = bytes.data();
    for (std::size_t at = 0; at < bytes.size(); ++at)
        memory[at] = 0;
}

} // namespace tvut
