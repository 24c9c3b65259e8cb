// Loads any bytes as XML that other programs have written. What loads is saved, and read again to the same
// tree: as it was written, which the reader of lines does, and with all of it in one line, which it does not.
#include "require.h"

#include "text/encoding/utf8.h"
#include "unit/native_platform.h"

using namespace tvut;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    DiagnosticLines().clear();
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const ReadMode mode : {ReadMode::foreignXml, ReadMode::foreignMarkup}) {
        clsTree tree(size % 2 == 0);
        clsMemorySink sink;
        if (!Load(tree, bytes, mode).parsed || !ProfpSave(tree.Root(), 1, false, sink))
            continue;
        clsTree plain(true), again(true), relaid(true);
        Require(Load(plain, sink.bytes).parsed && Load(again, sink.bytes, mode).parsed);
        Require(Describe(again.Root()) == Describe(plain.Root()));
        std::u16string text(sink.bytes.size() / 2, u'\0');
        std::memcpy(text.data(), sink.bytes.data(), sink.bytes.size());
        std::erase_if(text, [](char16_t c) { return c == u'\r' || c == u'\n'; });
        if (!UtilpIsUtf16(text))
            continue;
        Require(Load(relaid, Utf16Bytes(text), mode).parsed);
        Require(Describe(relaid.Root()) == Describe(plain.Root()));
    }
    return 0;
}
