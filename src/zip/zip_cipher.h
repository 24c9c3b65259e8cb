// The ciphers that protect entries, behind one interface.
#pragma once

#include "zip/zip_directory.h"

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
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

// The cipher of an entry; clsZIPError for one that is not known.
std::unique_ptr<IclsZipCipher> UtilpCipherOf(const scZipEntry& entry);

// Overwrites what is secret, also where nothing reads it any more.
void UtilpWipe(CipherBytes bytes) noexcept;

// The passwords to try: archives do not say how theirs was written. Wiped at the end.
class clsZipPasswords {
  public:
    explicit clsZipPasswords(std::u16string_view password);
    clsZipPasswords(const clsZipPasswords&) = delete;
    clsZipPasswords& operator=(const clsZipPasswords&) = delete;
    ~clsZipPasswords();

    bool Any() const { return !utf8_.empty(); }
    std::string_view Utf8() const { return utf8_; }
    std::string_view InCodePage() const { return inCodePage_; } // empty when that is the same

  private:
    std::string utf8_, inCodePage_;
};

} // namespace tvut
