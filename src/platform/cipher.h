// The system's cryptography: AES, digests, keys from passwords, random bytes. Looked up when first needed.
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

// AES in chained blocks (NIST SP 800-38A, CBC): each is laid over the one before. A key of 16, 24 or 32
// bytes, 16 bytes that the chain begins with.
class clsAesChain {
  public:
    clsAesChain(std::span<const unsigned char> key, std::span<const unsigned char> beginning);
    clsAesChain(const clsAesChain&) = delete;
    clsAesChain& operator=(const clsAesChain&) = delete;
    ~clsAesChain();

    // Whole blocks, in place; the chain goes on from call to call.
    void Encipher(std::span<unsigned char> blocks);
    void Decipher(std::span<unsigned char> blocks);

  private:
    struct scState;
    std::unique_ptr<scState> state_;
};

// MD5 (RFC 1321), SHA-2 (FIPS 180-4).
enum class DigestKind { md5, sha256, sha384, sha512 };

constexpr std::size_t PlatformDigestBytes(DigestKind kind) {
    constexpr std::size_t bytes[] = {16, 32, 48, 64};
    return bytes[static_cast<std::size_t>(kind)];
}

// The digest has room for PlatformDigestBytes.
void PlatformDigest(DigestKind kind, std::span<const unsigned char> data, std::span<unsigned char> digest);

// SHA-256 of data that comes in pieces.
class clsSha256 {
  public:
    clsSha256();
    clsSha256(const clsSha256&) = delete;
    clsSha256& operator=(const clsSha256&) = delete;
    ~clsSha256();

    void Add(std::span<const unsigned char> data);
    std::array<unsigned char, PlatformDigestBytes(DigestKind::sha256)> Finish(); // once

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
