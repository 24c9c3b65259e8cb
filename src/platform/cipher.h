// The system's cryptography: AES, HMAC-SHA1, keys from passwords, random bytes. Looked up when first needed.
//
// All throw clsException when the system cannot, std::bad_alloc without memory.
#pragma once

#include <array>
#include <memory>
#include <span>
#include <string_view>

namespace tvut {

// AES (FIPS 197) on blocks of 16 bytes, each by itself, with a key of 16, 24 or 32 bytes.
class clsAes {
  public:
    explicit clsAes(std::span<const unsigned char> key);
    clsAes(const clsAes&) = delete;
    clsAes& operator=(const clsAes&) = delete;
    ~clsAes();

    void EncipherBlocks(std::span<unsigned char> blocks); // in place

  private:
    struct scState;
    std::unique_ptr<scState> state_;
};

// HMAC-SHA1 (RFC 2104).
class clsHmacSha1 {
  public:
    explicit clsHmacSha1(std::span<const unsigned char> key);
    clsHmacSha1(const clsHmacSha1&) = delete;
    clsHmacSha1& operator=(const clsHmacSha1&) = delete;
    ~clsHmacSha1();

    void Add(std::span<const unsigned char> data);
    std::array<unsigned char, 20> Finish(); // once

  private:
    struct scState;
    std::unique_ptr<scState> state_;
};

// PBKDF2 (RFC 8018) on HMAC-SHA1.
void PlatformDeriveKey(std::string_view password, std::span<const unsigned char> salt, unsigned rounds,
                       std::span<unsigned char> key);

void PlatformRandomBytes(std::span<unsigned char> bytes);

} // namespace tvut
