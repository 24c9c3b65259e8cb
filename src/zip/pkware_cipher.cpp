// Three keys, stirred by each byte in the clear, make the byte that the next one is mixed with. So
// deciphering has to follow in order, and the last byte of the header, which is known, shows a wrong password
// in 255 of 256 cases.
#include "zip/pkware_cipher.h"

#include <zlib.h>

namespace tvut {

namespace {

std::uint32_t Crc(std::uint32_t crc, unsigned char byte) {
    return get_crc_table()[(crc ^ byte) & 0xFF] ^ crc >> 8;
}

} // namespace

bool clsPkwareCipher::Begin(ConstCipherBytes header, std::string_view password) {
    keys_[0] = 0x12345678;
    keys_[1] = 0x23456789;
    keys_[2] = 0x34567890;
    for (const char c : password)
        Update(static_cast<unsigned char>(c));
    unsigned char last = 0;
    for (const unsigned char byte : header)
        last = Next(byte);
    return last == check_;
}

void clsPkwareCipher::Decipher(CipherBytes data) {
    for (unsigned char& byte : data)
        byte = Next(byte);
}

void clsPkwareCipher::Update(unsigned char plain) {
    keys_[0] = Crc(keys_[0], plain);
    keys_[1] = (keys_[1] + (keys_[0] & 0xFF)) * 134775813 + 1;
    keys_[2] = Crc(keys_[2], static_cast<unsigned char>(keys_[1] >> 24));
}

unsigned char clsPkwareCipher::Next(unsigned char enciphered) {
    const std::uint32_t mixed = (keys_[2] & 0xFFFF) | 2;
    const auto plain = static_cast<unsigned char>(enciphered ^ (mixed * (mixed ^ 1) >> 8));
    Update(plain);
    return plain;
}

} // namespace tvut
