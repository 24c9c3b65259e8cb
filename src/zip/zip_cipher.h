// The cipher that an entry asks for, and the passwords to try on it.
#pragma once

#include "zip/entry_cipher.h"
#include "zip/zip_directory.h"

#include <memory>
#include <string>
#include <string_view>

namespace tvut {

// The cipher of an entry; clsZIPError for one that is not known.
std::unique_ptr<IclsZipCipher> UtilpCipherOf(const scZipEntry& entry);

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
