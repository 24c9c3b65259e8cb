// WinZip's AES encryption (its "AES Encryption Information", AE-1 and AE-2): AES in counter mode,
// authenticated by the first ten bytes of an HMAC-SHA1 over the enciphered data, both with keys that PBKDF2
// makes of the password and a salt. The mathematics is the system's.
#pragma once

#include "platform/cipher.h"
#include "zip/entry_cipher.h"
#include "zip/zip_directory.h"

#include <array>
#include <optional>

namespace tvut {

enum class AesStrength : unsigned { bits128 = 1, bits192 = 2, bits256 = 3 };

inline AesStrength AesStrengthOf(const scZipEntry& entry) {
    return static_cast<AesStrength>((entry.marks & scZipEntry::aesStrength) / scZipEntry::aes128);
}

class clsAesZipCipher final : public IclsZipCipher {
  public:
    static constexpr std::size_t verifierBytes = 2;
    static constexpr std::size_t authenticationBytes = 10;
    static constexpr std::size_t largestHeader = 16 + verifierBytes;

    explicit clsAesZipCipher(AesStrength strength) : strength_(strength) {}

    std::size_t HeaderBytes() const override { return SaltBytes() + verifierBytes; }
    std::size_t TrailerBytes() const override { return authenticationBytes; }
    bool Begin(ConstCipherBytes header, std::string_view password) override;
    void Decipher(CipherBytes data) override;
    bool Vouches(ConstCipherBytes trailer) override;

    // Enciphering: the header of a new entry with a salt of its own, the data, the trailer.
    void BeginNew(CipherBytes header, std::string_view password);
    void Encipher(CipherBytes data);
    void End(CipherBytes trailer);

  private:
    std::size_t KeyBytes() const { return 8 + 8 * static_cast<std::size_t>(strength_); }
    std::size_t SaltBytes() const { return KeyBytes() / 2; }
    // Gives the verifier that belongs to the password.
    std::array<unsigned char, verifierBytes> DeriveKeys(ConstCipherBytes salt, std::string_view password);
    void ApplyKeyStream(CipherBytes data);
    void MakeKeyStream();

    AesStrength strength_;
    std::optional<clsAes> aes_;
    std::optional<clsHmacSha1> authentication_;
    std::array<unsigned char, 4096> keyStream_;
    std::size_t used_ = 0; // of the key stream
    std::uint64_t block_ = 0;
};

} // namespace tvut
