// Windows' "Cryptography API: Next Generation", whose library is loaded when a function of it is first
// called.
#include "platform/cipher.h"

#include "platform/exception.h"
#include "platform/owned.h"
#include "platform/system_function.h"

#include <algorithm>
#include <bcrypt.h>

namespace tvut {

namespace {

constexpr const wchar_t* library = L"bcrypt.dll";

// A function of the library; throws clsException on a call that fails and for a system that has none.
template <class Function>
class clsCall;
template <class... Arguments>
class clsCall<NTSTATUS WINAPI(Arguments...)> {
  public:
    explicit constexpr clsCall(const char* name) noexcept : function_(library, name) {}
    void operator()(std::type_identity_t<Arguments>... arguments) {
        auto* const function = function_.Get();
        if (!function)
            throw clsException("the system has no cryptography", ERROR_PROC_NOT_FOUND);
        if (const NTSTATUS status = function(arguments...); status < 0)
            throw clsException("the system's cryptography fails", static_cast<unsigned long>(status));
    }
    NTSTATUS Quietly(std::type_identity_t<Arguments>... arguments) noexcept {
        return function_.Get()(arguments...);
    }

  private:
    clsSystemFunction<NTSTATUS WINAPI(Arguments...)> function_;
};

constinit clsCall<decltype(BCryptOpenAlgorithmProvider)> openAlgorithm("BCryptOpenAlgorithmProvider");
constinit clsCall<decltype(BCryptCloseAlgorithmProvider)> closeAlgorithm("BCryptCloseAlgorithmProvider");
constinit clsCall<decltype(BCryptSetProperty)> setProperty("BCryptSetProperty");
constinit clsCall<decltype(BCryptGenerateSymmetricKey)> makeKey("BCryptGenerateSymmetricKey");
constinit clsCall<decltype(BCryptDestroyKey)> destroyKey("BCryptDestroyKey");
constinit clsCall<decltype(BCryptEncrypt)> encrypt("BCryptEncrypt");
constinit clsCall<decltype(BCryptDecrypt)> decrypt("BCryptDecrypt");
constinit clsCall<decltype(BCryptCreateHash)> createHash("BCryptCreateHash");
constinit clsCall<decltype(BCryptDestroyHash)> destroyHash("BCryptDestroyHash");
constinit clsCall<decltype(BCryptHashData)> hashData("BCryptHashData");
constinit clsCall<decltype(BCryptFinishHash)> finishHash("BCryptFinishHash");
constinit clsCall<decltype(BCryptDeriveKeyPBKDF2)> deriveKey("BCryptDeriveKeyPBKDF2");
constinit clsCall<decltype(BCryptGenRandom)> random("BCryptGenRandom");

struct scAlgorithmPolicy {
    using Value = BCRYPT_ALG_HANDLE;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { closeAlgorithm.Quietly(value, 0); }
};
struct scKeyPolicy {
    using Value = BCRYPT_KEY_HANDLE;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { destroyKey.Quietly(value); }
};
struct scHashPolicy {
    using Value = BCRYPT_HASH_HANDLE;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { destroyHash.Quietly(value); }
};
using clsAlgorithm = clsOwned<scAlgorithmPolicy>;

clsAlgorithm Algorithm(const wchar_t* name, ULONG flags) {
    clsAlgorithm algorithm;
    openAlgorithm(algorithm.Receive(), name, nullptr, flags);
    return algorithm;
}

clsAlgorithm HmacSha1() {
    return Algorithm(BCRYPT_SHA1_ALGORITHM, BCRYPT_ALG_HANDLE_HMAC_FLAG);
}

// The library takes bytes that it only reads through pointers to bytes that it could change.
template <class Bytes>
UCHAR* Data(const Bytes& bytes) {
    return reinterpret_cast<UCHAR*>(const_cast<typename Bytes::value_type*>(bytes.data()));
}
template <class Bytes>
ULONG Size(const Bytes& bytes) {
    return static_cast<ULONG>(bytes.size());
}

} // namespace

struct clsAes::scState {
    clsAlgorithm algorithm;
    clsOwned<scKeyPolicy> key;
};

// The mode is a literal's array, with its zero.
template <class State, std::size_t length>
void MakeAesKey(State& state, const wchar_t (&mode)[length], std::span<const unsigned char> key) {
    state.algorithm = Algorithm(BCRYPT_AES_ALGORITHM, 0);
    setProperty(state.algorithm.Get(), BCRYPT_CHAINING_MODE, Data(std::wstring_view(mode)), sizeof mode, 0);
    makeKey(state.algorithm.Get(), state.key.Receive(), nullptr, 0, Data(key), Size(key), 0);
}

clsAes::clsAes(std::span<const unsigned char> key) : state_(std::make_unique<scState>()) {
    MakeAesKey(*state_, BCRYPT_CHAIN_MODE_ECB, key); // each block by itself
}

clsAes::~clsAes() = default;

void clsAes::EncipherBlocks(std::span<unsigned char> blocks) {
    ULONG written = 0;
    encrypt(state_->key.Get(), Data(blocks), Size(blocks), nullptr, nullptr, 0, Data(blocks), Size(blocks),
            &written, 0);
}

struct clsAesChain::scState {
    clsAlgorithm algorithm;
    clsOwned<scKeyPolicy> key;
    std::array<unsigned char, 16> before; // what the next block is laid over
};

clsAesChain::clsAesChain(std::span<const unsigned char> key, std::span<const unsigned char> beginning)
    : state_(std::make_unique<scState>()) {
    MakeAesKey(*state_, BCRYPT_CHAIN_MODE_CBC, key);
    std::copy_n(beginning.begin(), state_->before.size(), state_->before.begin());
}

clsAesChain::~clsAesChain() = default;

void clsAesChain::Encipher(std::span<unsigned char> blocks) {
    ULONG written = 0;
    encrypt(state_->key.Get(), Data(blocks), Size(blocks), nullptr, Data(state_->before),
            Size(state_->before), Data(blocks), Size(blocks), &written, 0);
}

void clsAesChain::Decipher(std::span<unsigned char> blocks) {
    ULONG written = 0;
    decrypt(state_->key.Get(), Data(blocks), Size(blocks), nullptr, Data(state_->before),
            Size(state_->before), Data(blocks), Size(blocks), &written, 0);
}

void PlatformDigest(DigestKind kind, std::span<const unsigned char> data, std::span<unsigned char> digest) {
    constexpr const wchar_t* names[] = {BCRYPT_MD5_ALGORITHM, BCRYPT_SHA256_ALGORITHM,
                                        BCRYPT_SHA384_ALGORITHM, BCRYPT_SHA512_ALGORITHM};
    const clsAlgorithm algorithm = Algorithm(names[static_cast<std::size_t>(kind)], 0);
    clsOwned<scHashPolicy> hash;
    createHash(algorithm.Get(), hash.Receive(), nullptr, 0, nullptr, 0, 0);
    hashData(hash.Get(), Data(data), Size(data), 0);
    finishHash(hash.Get(), Data(digest), static_cast<ULONG>(PlatformDigestBytes(kind)), 0);
}

struct clsSha256::scState {
    clsAlgorithm algorithm;
    clsOwned<scHashPolicy> hash;
};

clsSha256::clsSha256() : state_(std::make_unique<scState>()) {
    state_->algorithm = Algorithm(BCRYPT_SHA256_ALGORITHM, 0);
    createHash(state_->algorithm.Get(), state_->hash.Receive(), nullptr, 0, nullptr, 0, 0);
}

clsSha256::~clsSha256() = default;

void clsSha256::Add(std::span<const unsigned char> data) {
    hashData(state_->hash.Get(), Data(data), Size(data), 0);
}

std::array<unsigned char, PlatformDigestBytes(DigestKind::sha256)> clsSha256::Finish() {
    std::array<unsigned char, PlatformDigestBytes(DigestKind::sha256)> digest;
    finishHash(state_->hash.Get(), digest.data(), Size(digest), 0);
    return digest;
}

struct clsHmacSha1::scState {
    clsAlgorithm algorithm;
    clsOwned<scHashPolicy> hash;
};

clsHmacSha1::clsHmacSha1(std::span<const unsigned char> key) : state_(std::make_unique<scState>()) {
    state_->algorithm = HmacSha1();
    createHash(state_->algorithm.Get(), state_->hash.Receive(), nullptr, 0, Data(key), Size(key), 0);
}

clsHmacSha1::~clsHmacSha1() = default;

void clsHmacSha1::Add(std::span<const unsigned char> data) {
    hashData(state_->hash.Get(), Data(data), Size(data), 0);
}

std::array<unsigned char, 20> clsHmacSha1::Finish() {
    std::array<unsigned char, 20> code;
    finishHash(state_->hash.Get(), code.data(), Size(code), 0);
    return code;
}

void PlatformDeriveKey(std::string_view password, std::span<const unsigned char> salt, unsigned rounds,
                       std::span<unsigned char> key) {
    const clsAlgorithm algorithm = HmacSha1();
    deriveKey(algorithm.Get(), Data(password), Size(password), Data(salt), Size(salt), rounds, Data(key),
              Size(key), 0);
}

void PlatformRandomBytes(std::span<unsigned char> bytes) {
    random(nullptr, bytes.data(), Size(bytes), BCRYPT_USE_SYSTEM_PREFERRED_RNG);
}

} // namespace tvut
