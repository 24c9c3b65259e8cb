#include "prof/variant_text.h"

#include "platform/exception.h"
#include "text/bytes/byte_text.h"

namespace tvut {

namespace {

constexpr std::u16string_view mark = u"var://";
constexpr std::size_t compressedFrom = 101;

} // namespace

std::u16string ProfpVariantText(std::string_view bytes) {
    clsSpanSource source(bytes.data(), bytes.size());
    using Compression = clsPackedBytes::Compression;
    const clsPackedBytes packed(source, bytes.size() < compressedFrom ? Compression::none : Compression::zlib,
                                {});
    std::u16string text(mark);
    text.resize(mark.size() + packed.TextLength());
    packed.WriteText(text.data() + mark.size());
    return text;
}

std::string ProfpVariantBytes(std::u16string_view text) {
    clsStringSink bytes;
    if (!text.starts_with(mark) || !UtilpWriteBytesOfText(text.substr(mark.size()), {}, bytes))
        throw clsException("text is no variant");
    return bytes.Take();
}

} // namespace tvut
