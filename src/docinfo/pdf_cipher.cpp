// Two families. Up to revision 4 the key of the document is an MD5 of the password and what the dictionary
// says, and each object has a key of its own, an MD5 of that key and the object's number. From revision 5 on
// the key of the document is random, lies in the dictionary enciphered, and serves for all objects.
//
// RC4 is a dozen lines; the rest of the mathematics is the system's.
#include "docinfo/pdf_cipher.h"

#include "platform/cipher.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace tvut {

namespace {

constexpr std::size_t blockBytes = 16;

// What fills up a password (algorithm 2), here all of it.
constexpr std::string_view padding("\x28\xBF\x4E\x5E\x4E\x75\x8A\x41\x64\x00\x4E\x56\xFF\xFA\x01\x08"
                                   "\x2E\x2E\x00\xB6\xD0\x68\x3E\x80\x2F\x0C\xA9\xFE\x64\x53\x69\x7A",
                                   32);

std::span<const unsigned char> BytesOf(std::string_view text) {
    return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}
std::span<unsigned char> BytesOf(std::string& text) {
    return {reinterpret_cast<unsigned char*>(text.data()), text.size()};
}

std::string Digest(DigestKind kind, std::string_view text) {
    std::string digest(PlatformDigestBytes(kind), '\0');
    PlatformDigest(kind, BytesOf(text), BytesOf(digest));
    return digest;
}

void ApplyRc4(std::string_view key, std::string& bytes) {
    std::array<unsigned char, 256> state;
    std::iota(state.begin(), state.end(), static_cast<unsigned char>(0));
    unsigned char j = 0;
    for (unsigned i = 0; i < state.size(); ++i) {
        j = static_cast<unsigned char>(j + state[i] + static_cast<unsigned char>(key[i % key.size()]));
        std::swap(state[i], state[j]);
    }
    unsigned char i = 0;
    j = 0;
    for (char& byte : bytes) {
        j = static_cast<unsigned char>(j + state[++i]);
        std::swap(state[i], state[j]);
        byte = static_cast<char>(byte ^ state[static_cast<unsigned char>(state[i] + state[j])]);
    }
}

// AES in chained blocks, the first of which is the beginning of the chain; the last one tells in its last
// byte how many are no text.
void DecipherAes(std::string_view key, std::string& bytes) {
    if (bytes.size() < 2 * blockBytes)
        return bytes.clear();
    bytes.resize(bytes.size() / blockBytes * blockBytes);
    clsAesChain(BytesOf(key), BytesOf(std::string_view(bytes).substr(0, blockBytes)))
        .Decipher(BytesOf(bytes).subspan(blockBytes));
    bytes.erase(0, blockBytes);
    const auto filling = static_cast<unsigned char>(bytes.back());
    if (filling >= 1 && filling <= blockBytes) // else the end is lost, and not worth the rest
        bytes.resize(bytes.size() - filling);
}

std::string LittleEndian(std::uint32_t number, std::size_t count) {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes += static_cast<char>(number >> (8 * i) & 0xFF);
    return bytes;
}

struct scHandler {
    std::int64_t revision;
    std::size_t keyBytes;
    std::string_view owner, user; // proofs of the passwords
    std::string_view userKey;     // the document's key, under the user's password
    std::uint32_t permissions;
    bool metadataToo;
};

// Algorithm 2.
std::string OldKey(const scHandler& handler, std::string_view id) {
    std::string text(padding);
    text += handler.owner.substr(0, 32);
    text += LittleEndian(handler.permissions, 4);
    text += id;
    if (handler.revision >= 4 && !handler.metadataToo)
        text += "\xFF\xFF\xFF\xFF";
    std::string key = Digest(DigestKind::md5, text).substr(0, handler.keyBytes);
    for (int round = 0; handler.revision >= 3 && round < 50; ++round)
        key = Digest(DigestKind::md5, key).substr(0, handler.keyBytes);
    return key;
}

// Algorithms 4 and 5: what the dictionary must say when the key is right.
bool IsOldKey(const scHandler& handler, const std::string& key, std::string_view id) {
    if (handler.revision == 2) {
        std::string proof(padding);
        ApplyRc4(key, proof);
        return proof == handler.user.substr(0, 32);
    }
    std::string proof = Digest(DigestKind::md5, std::string(padding).append(id));
    for (int round = 0; round < 20; ++round) {
        std::string roundKey = key;
        for (char& byte : roundKey)
            byte = static_cast<char>(byte ^ round);
        ApplyRc4(roundKey, proof);
    }
    return proof == handler.user.substr(0, blockBytes);
}

// Algorithm 2.B, of the empty password: at least 64 rounds, each of which enciphers 64 copies of the digest
// by itself and chooses the next digest by what comes out.
std::string HardDigest(std::string_view salt) {
    std::string digest = Digest(DigestKind::sha256, salt);
    for (unsigned round = 0;; ++round) {
        std::string text;
        for (int copy = 0; copy < 64; ++copy)
            text += digest;
        clsAesChain(BytesOf(std::string_view(digest).substr(0, blockBytes)),
                    BytesOf(std::string_view(digest).substr(blockBytes, blockBytes)))
            .Encipher(BytesOf(text));
        unsigned choice = 0; // a number of 16 bytes modulo 3 is the sum of them modulo 3
        for (const char byte : std::string_view(text).substr(0, blockBytes))
            choice += static_cast<unsigned char>(byte);
        constexpr DigestKind kinds[] = {DigestKind::sha256, DigestKind::sha384, DigestKind::sha512};
        digest = Digest(kinds[choice % 3], text);
        if (round >= 63 && static_cast<unsigned char>(text.back()) <= round + 1 - 32)
            return digest.substr(0, 32);
    }
}

// Algorithm 2.A. The proof of the password has 32 bytes, then the salt of the proof, then that of the key.
std::optional<std::string> NewKey(const scHandler& handler) {
    constexpr std::size_t proofBytes = 32, saltBytes = 8;
    if (handler.user.size() < proofBytes + 2 * saltBytes || handler.userKey.size() < 32)
        return {};
    const auto digest = [&](std::size_t salt) {
        const std::string_view text = handler.user.substr(salt, saltBytes);
        return handler.revision == 5 ? Digest(DigestKind::sha256, text) : HardDigest(text);
    };
    if (digest(proofBytes) != handler.user.substr(0, proofBytes))
        return {};
    std::string key(handler.userKey.substr(0, 32));
    const std::array<unsigned char, blockBytes> noBeginning{};
    clsAesChain(BytesOf(digest(proofBytes + saltBytes)), noBeginning).Decipher(BytesOf(key));
    return key;
}

} // namespace

std::optional<clsPdfCipher> clsPdfCipher::Open(const clsPdfValue& encrypt, std::string_view id) {
    const std::int64_t version = encrypt["V"].IntegerOr(0);
    const std::int64_t bits = encrypt["Length"].IntegerOr(40);
    scHandler handler{encrypt["R"].IntegerOr(0), 16,
                      encrypt["O"].Text(),       encrypt["U"].Text(),
                      encrypt["UE"].Text(),      static_cast<std::uint32_t>(encrypt["P"].IntegerOr(0)),
                      !LeavesMetadata(encrypt)};
    if (!encrypt["Filter"].IsName("Standard") || handler.revision < 2 || handler.revision > 6)
        return {};
    clsPdfCipher cipher;
    if (version >= 4) {
        cipher.strings_ = MethodOf(encrypt, "StrF");
        cipher.streams_ = MethodOf(encrypt, "StmF");
    } else {
        handler.keyBytes = version == 1 || bits < 40 || bits > 128 ? 5 : static_cast<std::size_t>(bits / 8);
    }
    if (cipher.strings_ == Method::unknown || cipher.streams_ == Method::unknown)
        return {};
    if (handler.revision >= 5) {
        auto key = NewKey(handler);
        if (!key)
            return {};
        cipher.key_ = std::move(*key);
        return cipher;
    }
    cipher.key_ = OldKey(handler, id);
    if (!IsOldKey(handler, cipher.key_, id))
        return {};
    return cipher;
}

bool clsPdfCipher::LeavesMetadata(const clsPdfValue& encrypt) {
    const clsPdfValue value = encrypt["EncryptMetadata"];
    return value.Is(PdfKind::other) && !value.IsTrue();
}

// The dictionary names a filter for strings and one for streams, whose methods stand in CF.
auto clsPdfCipher::MethodOf(const clsPdfValue& encrypt, std::string_view filter) -> Method {
    const clsPdfValue name = encrypt[filter];
    if (name.Is(PdfKind::none) || name.IsName("Identity"))
        return Method::none;
    const clsPdfValue method = encrypt["CF"][name.Text()]["CFM"];
    if (method.IsName("None"))
        return Method::none;
    if (method.IsName("V2"))
        return Method::rc4;
    if (method.IsName("AESV2"))
        return Method::aes;
    return method.IsName("AESV3") ? Method::aes256 : Method::unknown;
}

void clsPdfCipher::Decipher(Method method, scPdfReference owner, std::string& bytes) const {
    if (method == Method::none)
        return;
    if (method == Method::aes256)
        return DecipherAes(key_, bytes);
    std::string text = key_ + LittleEndian(owner.number, 3) + LittleEndian(owner.generation, 2);
    if (method == Method::aes)
        text += "sAlT";
    const std::string key =
        Digest(DigestKind::md5, text).substr(0, std::min<std::size_t>(key_.size() + 5, blockBytes));
    if (method == Method::aes)
        DecipherAes(key, bytes);
    else
        ApplyRc4(key, bytes);
}

} // namespace tvut
