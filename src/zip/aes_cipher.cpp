// The counter of a block is its number, from 1, little-endian: blocks of counters are enciphered together,
// and what comes out is laid over the data.
#include "zip/aes_cipher.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr unsigned derivationRounds = 1000;
constexpr std::size_t blockBytes = 16;

} // namespace

bool clsAesZipCipher::Begin(ConstCipherBytes header, std::string_view password) {
    const auto verifier = DeriveKeys(header.first(SaltBytes()), password);
    return std::ranges::equal(verifier, header.subspan(SaltBytes()));
}

void clsAesZipCipher::Decipher(CipherBytes data) {
    authentication_->Add(data);
    ApplyKeyStream(data);
}

bool clsAesZipCipher::Vouches(ConstCipherBytes trailer) {
    const auto code = authentication_->Finish();
    unsigned differences = 0; // all bytes are looked at, wherever they differ
    for (std::size_t at = 0; at < authenticationBytes; ++at)
        differences |= static_cast<unsigned>(code[at] ^ trailer[at]);
    return differences == 0;
}

void clsAesZipCipher::BeginNew(CipherBytes header, std::string_view password) {
    const CipherBytes salt = header.first(SaltBytes());
    PlatformRandomBytes(salt);
    std::ranges::copy(DeriveKeys(salt, password), header.subspan(SaltBytes()).begin());
}

void clsAesZipCipher::Encipher(CipherBytes data) {
    ApplyKeyStream(data);
    authentication_->Add(data);
}

void clsAesZipCipher::End(CipherBytes trailer) {
    std::ranges::copy_n(authentication_->Finish().begin(), authenticationBytes, trailer.begin());
}

auto clsAesZipCipher::DeriveKeys(ConstCipherBytes salt, std::string_view password)
    -> std::array<unsigned char, verifierBytes> {
    std::array<unsigned char, 2 * 32 + verifierBytes> keys;
    const CipherBytes derived = CipherBytes(keys).first(2 * KeyBytes() + verifierBytes);
    PlatformDeriveKey(password, salt, derivationRounds, derived);
    aes_.emplace(derived.first(KeyBytes()));
    authentication_.emplace(derived.subspan(KeyBytes(), KeyBytes()));
    used_ = keyStream_.size();
    block_ = 0;
    const std::array<unsigned char, verifierBytes> verifier{derived.end()[-2], derived.end()[-1]};
    UtilpWipe(keys);
    return verifier;
}

void clsAesZipCipher::ApplyKeyStream(CipherBytes data) {
    for (std::size_t done = 0; done < data.size();) {
        if (used_ == keyStream_.size())
            MakeKeyStream();
        const std::size_t count = std::min(data.size() - done, keyStream_.size() - used_);
        for (std::size_t at = 0; at < count; ++at)
            data[done + at] ^= keyStream_[used_ + at];
        done += count;
        used_ += count;
    }
}

void clsAesZipCipher::MakeKeyStream() {
    keyStream_.fill(0);
    for (std::size_t at = 0; at < keyStream_.size(); at += blockBytes) {
        ++block_;
        for (std::size_t byte = 0; byte < sizeof block_; ++byte)
            keyStream_[at + byte] = static_cast<unsigned char>(block_ >> (8 * byte));
    }
    aes_->EncipherBlocks(keyStream_);
    used_ = 0;
}

} // namespace tvut
