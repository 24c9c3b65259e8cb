// The ciphers of the native build: of the same shape as the system's, and of no strength.
#include "platform/cipher.h"

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
