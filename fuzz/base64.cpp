// Decodes any text; all engines must agree, and what was decoded must encode to a text that decodes to it.
#include "require.h"

#include "text/bytes/base64.h"
#include "text/bytes/base64_engine.h"

#include <string>
#include <vector>

using namespace tvut;

namespace {

using Bytes = std::vector<std::uint8_t>;

bool Decode(std::u16string_view text, Bytes& all) {
    clsBase64Decoder decoder(text);
    for (Bytes room(48);;) {
        const auto count = decoder.Decode(room);
        if (!count)
            return false;
        all.insert(all.end(), room.begin(), room.begin() + static_cast<std::ptrdiff_t>(*count));
        if (*count < room.size())
            return true;
    }
}

// What an engine decodes of the text's beginning, followed by how far it came.
Bytes ByEngine(const scBase64Engine& engine, std::u16string_view text) {
    Bytes bytes(text.size() / 4 * 3);
    const std::size_t done = engine.decode(text.data(), text.size(), bytes.data());
    bytes.resize(done / 4 * 3);
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::u16string text(data, data + size);
    for (char16_t& unit : text) { // some units beyond 8 bits
        if (unit >= 0xF0)
            unit = static_cast<char16_t>(unit << 7);
    }
    const auto engines = UtilpBase64Engines();
    const Bytes expected = ByEngine(engines.back(), text);
    for (const auto& engine : engines) {
        Require(!engine.isAvailable() || ByEngine(engine, text) == expected);
    }
    Bytes decoded;
    if (!Decode(text, decoded))
        return 0;
    std::u16string canonical(UtilpBase64Length(decoded.size()), u'?');
    UtilpBase64Encode(decoded, canonical.data());
    Bytes again;
    Require(Decode(canonical, again) && again == decoded);
    return 0;
}
