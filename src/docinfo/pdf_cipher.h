// The standard security handler of PDF (ISO 32000-1, 7.6; ISO 32000-2, 7.6.4), revisions 2 to 6, for
// documents that open with the empty user password: it says who may print or copy, not who may read.
#pragma once

#include "docinfo/pdf_syntax.h"

#include <span>

namespace tvut {

class clsPdfCipher {
  public:
    // By the dictionary Encrypt and the first string of ID. Nothing when the document wants a password, or
    // has another handler. Throws std::bad_alloc, and clsException where the system has no cryptography.
    static std::optional<clsPdfCipher> Open(const clsPdfValue& encrypt, std::string_view id);

    // What an object's string or stream was, in place. Bytes that cannot be what was enciphered become none.
    void DecipherString(scPdfReference owner, std::string& bytes) const { Decipher(strings_, owner, bytes); }
    void DecipherStream(scPdfReference owner, std::string& bytes) const { Decipher(streams_, owner, bytes); }

    // Whether the packets of metadata lie open.
    static bool LeavesMetadata(const clsPdfValue& encrypt);

  private:
    enum class Method { none, rc4, aes, aes256, unknown };

    static Method MethodOf(const clsPdfValue& encrypt, std::string_view filter);
    void Decipher(Method method, scPdfReference owner, std::string& bytes) const;

    Method strings_ = Method::rc4, streams_ = Method::rc4;
    std::string key_;
};

} // namespace tvut
