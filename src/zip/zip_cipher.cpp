#include "zip/zip_cipher.h"

#include "platform/code_page.h"
#include "text/encoding/utf8.h"
#include "zip/aes_cipher.h"
#include "zip/pkware_cipher.h"
#include "zip/zip_fault.h"
#include "zip/zip_records.h"

namespace tvut {

namespace {

void Wipe(std::string& text) {
    UtilpWipe({reinterpret_cast<unsigned char*>(text.data()), text.size()});
}

std::string InUtf8(std::u16string_view text) {
    std::string bytes(text.size() * longestUtf8, '\0');
    bytes.resize(UtilpEncodeUtf8(text, bytes.data()));
    return bytes;
}

std::string InProcessCodePage(std::u16string_view text) {
    const unsigned codePage = PlatformProcessCodePage();
    std::string bytes(PlatformEncodedSize(codePage, text), '\0');
    bytes.resize(PlatformEncode(codePage, text, bytes.data(), bytes.size()));
    return bytes;
}

} // namespace

std::unique_ptr<IclsZipCipher> UtilpCipherOf(const scZipEntry& entry) {
    if (entry.Is(scZipEntry::unknownEncryption) || entry.method == zipmethod::aes)
        throw clsZIPError(ZipFault::method, entry.method);
    if (entry.Is(scZipEntry::aesStrength))
        return std::make_unique<clsAesZipCipher>(AesStrengthOf(entry));
    return std::make_unique<clsPkwareCipher>(entry.passwordCheck);
}

clsZipPasswords::clsZipPasswords(std::u16string_view password) : utf8_(InUtf8(password)) {
    if (password.size() == utf8_.size()) // ASCII
        return;
    inCodePage_ = InProcessCodePage(password);
    if (inCodePage_ == utf8_) {
        Wipe(inCodePage_);
        inCodePage_.clear();
    }
}

clsZipPasswords::~clsZipPasswords() {
    Wipe(utf8_);
    Wipe(inCodePage_);
}

} // namespace tvut
