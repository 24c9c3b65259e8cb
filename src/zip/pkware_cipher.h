// PKWARE's traditional cipher (APPNOTE.TXT 6.1): weak, but what "zip -e" still makes. Only for reading.
#pragma once

#include "zip/entry_cipher.h"

#include <cstdint>

namespace tvut {

class clsPkwareCipher final : public IclsZipCipher {
  public:
    // check: what the last byte of the header must be.
    explicit clsPkwareCipher(std::uint8_t check) : check_(check) {}

    std::size_t HeaderBytes() const override { return 12; }
    std::size_t TrailerBytes() const override { return 0; }
    bool Begin(ConstCipherBytes header, std::string_view password) override;
    void Decipher(CipherBytes data) override;
    bool Vouches(ConstCipherBytes) override { return true; }

  private:
    void Update(unsigned char plain);
    unsigned char Next(unsigned char enciphered);

    std::uint8_t check_;
    std::uint32_t keys_[3]{};
};

} // namespace tvut
