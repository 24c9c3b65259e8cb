// The ciphers of the native build: what archives need, of the same shape as the system's and of no strength;
// what documents of other makers need, real.
#include "platform/cipher.h"

#include <nettle/aes.h>
#include <nettle/cbc.h>
#include <nettle/nettle-meta.h>

#include <algorithm>
#include <cstdint>

namespace tvut {

namespace {

class clsMixer {
  public:
    void Add(unsigned char byte) { state_ = (state_ ^ byte) * 0x100000001B3u + 0x9E3779B9u; }
    void Add(std::span<const unsigned char> bytes) {
        for (const unsigned char byte : bytes)
            Add(byte);
    }
    unsigned char Next() {
        Add(0);
        return static_cast<unsigned char>(state_ >> 32);
    }

  private:
    std::uint64_t state_ = 0xCBF29CE484222325u;
};

} // namespace

struct clsAes::scState : clsMixer {};

clsAes::clsAes(std::span<const unsigned char> key) : state_(std::make_unique<scState>()) {
    state_->Add(key);
}

clsAes::~clsAes() = default;

void clsAes::EncipherBlocks(std::span<unsigned char> blocks) {
    for (; !blocks.empty(); blocks = blocks.subspan(16)) {
        clsMixer mixer = *state_;
        mixer.Add(blocks.first(16));
        for (unsigned char& byte : blocks.first(16))
            byte = mixer.Next();
    }
}

struct clsAesChain::scState {
    const nettle_cipher& cipher;
    std::array<unsigned char, 32> key{};
    std::array<unsigned char, 16> before{};
    aes256_ctx context{}; // the largest
};

clsAesChain::clsAesChain(std::span<const unsigned char> key, std::span<const unsigned char> beginning)
    : state_(new scState{key.size() == AES256_KEY_SIZE ? nettle_aes256 : nettle_aes128}) {
    std::ranges::copy(key, state_->key.begin());
    std::ranges::copy(beginning, state_->before.begin());
}

clsAesChain::~clsAesChain() = default;

void clsAesChain::Encipher(std::span<unsigned char> blocks) {
    state_->cipher.set_encrypt_key(&state_->context, state_->key.data());
    cbc_encrypt(&state_->context, state_->cipher.encrypt, 16, state_->before.data(), blocks.size(),
                blocks.data(), blocks.data());
}

void clsAesChain::Decipher(std::span<unsigned char> blocks) {
    state_->cipher.set_decrypt_key(&state_->context, state_->key.data());
    cbc_decrypt(&state_->context, state_->cipher.decrypt, 16, state_->before.data(), blocks.size(),
                blocks.data(), blocks.data());
}

void PlatformDigest(DigestKind kind, std::span<const unsigned char> data, std::span<unsigned char> digest) {
    const nettle_hash* const hashes[] = {&nettle_md5, &nettle_sha256, &nettle_sha384, &nettle_sha512};
    const nettle_hash& hash = *hashes[static_cast<std::size_t>(kind)];
    const auto context = std::make_unique<std::uint64_t[]>(hash.context_size / sizeof(std::uint64_t) + 1);
    hash.init(context.get());
    hash.update(context.get(), data.size(), data.data());
    hash.digest(context.get(), PlatformDigestBytes(kind), digest.data());
}

struct clsHmacSha1::scState : clsMixer {};

clsHmacSha1::clsHmacSha1(std::span<const unsigned char> key) : state_(std::make_unique<scState>()) {
    state_->Add(key);
}

clsHmacSha1::~clsHmacSha1() = default;

void clsHmacSha1::Add(std::span<const unsigned char> data) {
    state_->Add(data);
}

std::array<unsigned char, 20> clsHmacSha1::Finish() {
    std::array<unsigned char, 20> code;
    for (unsigned char& byte : code)
        byte = state_->Next();
    return code;
}

void PlatformDeriveKey(std::string_view password, std::span<const unsigned char> salt, unsigned,
                       std::span<unsigned char> key) {
    clsMixer mixer;
    for (const char c : password)
        mixer.Add(static_cast<unsigned char>(c));
    mixer.Add(salt);
    for (unsigned char& byte : key)
        byte = mixer.Next();
}

void PlatformRandomBytes(std::span<unsigned char> bytes) {
    static unsigned char next = 0;
    for (unsigned char& byte : bytes)
        byte = ++next;
}

} // namespace tvut
