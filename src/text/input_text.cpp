#include "text/input_text.h"

#include "platform/code_page.h"
#include "text/utf8.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace tvut {

namespace {

constexpr std::size_t smallestReserve = 4096;
constexpr std::size_t largestReserve = 256 * 1024 * 1024; // a source may say what it likes of its size

// Zero bytes never occur in 8-bit text, and in UTF-16 little-endian every line end, "=" and bracket
// has one as its second byte. A look at the beginning is enough to find some.
bool LooksLikeUtf16(std::string_view bytes) {
    const std::size_t end = std::min<std::size_t>(bytes.size() & ~std::size_t{1}, 65536);
    std::size_t low = 0;
    std::size_t high = 0;
    for (std::size_t i = 0; i < end; i += 2) {
        low += bytes[i] == 0;
        high += bytes[i + 1] == 0;
    }
    return high > 4 * low;
}

bool BeginsWith(std::string_view bytes, std::string_view mark) {
    return bytes.substr(0, mark.size()) == mark;
}

} // namespace

clsInputText clsInputText::Read(clsByteSource& source) {
    clsInputText input;
    const std::uint64_t expected = std::min<std::uint64_t>(source.SizeHint(), largestReserve);
    input.Reserve(std::max(static_cast<std::size_t>(expected) + 1, smallestReserve));
    while (const std::size_t read =
               source.Read(input.Data() + input.byteCount_, input.capacity_ - input.byteCount_)) {
        input.byteCount_ += read;
        if (input.byteCount_ == input.capacity_)
            input.Reserve(input.capacity_ * 2);
    }
    return input;
}

void clsInputText::Reserve(std::size_t bytes) {
    if (bytes > std::numeric_limits<std::size_t>::max() / 2)
        throw std::bad_alloc();
    const std::size_t units = bytes / sizeof(char16_t) + 1;
    auto larger = std::make_unique_for_overwrite<char16_t[]>(units + padding);
    if (byteCount_ != 0)
        std::memcpy(larger.get(), storage_.get(), byteCount_);
    storage_ = std::move(larger);
    capacity_ = units * sizeof(char16_t);
}

void clsInputText::Decode(unsigned codePage) {
    const std::string_view bytes = Bytes();
    if (BeginsWith(bytes, "\xFF\xFE"))
        return UseInPlace(2, false);
    if (BeginsWith(bytes, "\xFE\xFF"))
        return UseInPlace(2, true);
    const bool markedUtf8 = BeginsWith(bytes, "\xEF\xBB\xBF");
    if (!markedUtf8 && LooksLikeUtf16(bytes))
        return UseInPlace(0, false);

    const std::string_view encoded = bytes.substr(markedUtf8 ? 3 : 0);
    auto decoded = std::make_unique_for_overwrite<char16_t[]>(encoded.size() + padding);
    const std::size_t length = markedUtf8 || UtilpIsUtf8(encoded)
                                   ? UtilpDecodeUtf8(encoded, decoded.get())
                                   : PlatformDecode(codePage, encoded, decoded.get());
    storage_ = std::move(decoded);
    Terminate(0, length);
}

void clsInputText::UseInPlace(std::size_t skippedBytes, bool swapped) {
    const std::size_t first = skippedBytes / sizeof(char16_t);
    const std::size_t length =
        byteCount_ / sizeof(char16_t) - first; // half a character at the end is dropped
    if (swapped) {
        for (char16_t* unit = storage_.get() + first; unit != storage_.get() + first + length; ++unit)
            *unit = static_cast<char16_t>(*unit << 8 | *unit >> 8);
    }
    Terminate(first, length);
}

void clsInputText::Terminate(std::size_t first, std::size_t length) {
    std::fill_n(storage_.get() + first + length, padding, u'\n');
    text_ = {storage_.get() + first, length};
}

} // namespace tvut
