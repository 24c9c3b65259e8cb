// The storage is always padded after its last character, whatever was read into it, decoded or dropped; every
// function that changes where the text ends calls Terminate. A window is refilled by moving what is kept to
// its start; a line longer than half of it doubles it, so that no line is moved more than a few times.
#include "text/encoding/input_text.h"

#include "platform/code_page.h"
#include "text/encoding/utf8.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace tvut {

namespace {

constexpr std::size_t windowBytes = 128 * 1024;
constexpr std::size_t largestReserve = 256 * 1024 * 1024; // a source may say what it likes of its size

// In UTF-16 little-endian every line end, "=" and bracket is its byte at an even place and a zero after
// it; in 8-bit text hardly one is, whatever zeros stray into it. A look at the beginning is enough.
bool LooksLikeUtf16(std::string_view bytes) {
    constexpr std::string_view structure = "\r\n=[]";
    const std::size_t end = std::min<std::size_t>(bytes.size(), 65536);
    std::size_t found = 0;
    std::size_t wide = 0;
    for (std::size_t i = 0; i < end; ++i) {
        if (structure.find(bytes[i]) == std::string_view::npos)
            continue;
        ++found;
        wide += i % 2 == 0 && i + 1 < bytes.size() && bytes[i + 1] == 0;
    }
    return 2 * wide > found;
}

bool BeginsWith(std::string_view bytes, std::string_view mark) {
    return bytes.substr(0, mark.size()) == mark;
}

} // namespace

std::unique_ptr<char16_t[]> clsInputText::Allocate(std::size_t bytes) {
    if (bytes > std::numeric_limits<std::size_t>::max() / 2)
        throw std::bad_alloc();
    return std::make_unique_for_overwrite<char16_t[]>(bytes / sizeof(char16_t) + padding);
}

clsInputText::clsInputText(clsByteSource& source) : source_(&source) {
    Reserve(windowBytes);
    Fill();
}

clsInputText::clsInputText(std::unique_ptr<char16_t[]> paddedStorage, std::size_t byteCount)
    : storage_(std::move(paddedStorage)), capacity_(byteCount), byteCount_(byteCount) {}

// Room for at least a number of bytes, rounded up to an even one; what was read stays.
void clsInputText::Reserve(std::size_t bytes) {
    bytes += bytes % sizeof(char16_t);
    if (bytes <= capacity_)
        return;
    auto larger = Allocate(bytes);
    if (byteCount_ != 0)
        std::memcpy(larger.get(), storage_.get(), byteCount_);
    storage_ = std::move(larger);
    capacity_ = bytes;
}

// Reads until the storage is full or the source ends: while there is more to come, the bytes are an
// even number.
void clsInputText::Fill() {
    while (source_ && byteCount_ < capacity_) {
        const std::size_t read =
            source_->Read(reinterpret_cast<char*>(storage_.get()) + byteCount_, capacity_ - byteCount_);
        byteCount_ += read;
        if (read == 0)
            source_ = nullptr;
    }
}

void clsInputText::ReadAll() {
    if (!source_)
        return;
    try {
        Reserve(static_cast<std::size_t>(std::min<std::uint64_t>(source_->SizeHint(), largestReserve)) + 1);
    } catch (const std::bad_alloc&) { // the source may be far smaller than it says
    }
    for (Fill(); source_; Fill())
        Reserve(capacity_ * 2);
}

void clsInputText::Decode(unsigned codePage, bool isSaid) {
    if (BeginsWith(Bytes(), "\xFF\xFE"))
        return UseInPlace(2);
    ReadAll();
    const std::string_view bytes = Bytes();
    if (BeginsWith(bytes, "\xFE\xFF")) {
        SwapBytes();
        return UseInPlace(2);
    }
    const bool markedUtf8 = BeginsWith(bytes, "\xEF\xBB\xBF");
    if (!markedUtf8 && LooksLikeUtf16(bytes))
        return UseInPlace(0);

    const std::string_view encoded = bytes.substr(markedUtf8 ? 3 : 0);
    auto decoded = Allocate(encoded.size() * sizeof(char16_t));
    const std::size_t length = markedUtf8 || (!isSaid && UtilpIsUtf8(encoded))
                                   ? UtilpDecodeUtf8(encoded, decoded.get())
                                   : PlatformDecode(codePage, encoded, decoded.get());
    storage_ = std::move(decoded);
    Terminate(0, length);
}

void clsInputText::DropZerosAtEnd() {
    const auto last = text_.find_last_not_of(u'\0');
    Terminate(static_cast<std::size_t>(text_.data() - storage_.get()), last + 1); // none: npos + 1 is 0
}

bool clsInputText::Refill(const char16_t* keepFrom) {
    if (!source_)
        return false;
    const auto dropped = static_cast<std::size_t>(keepFrom - storage_.get()) * sizeof(char16_t);
    byteCount_ -= dropped;
    std::memmove(storage_.get(), keepFrom, byteCount_);
    if (byteCount_ > capacity_ / 2)
        Reserve(capacity_ * 2);
    Fill();
    Terminate(0, byteCount_ / sizeof(char16_t));
    return true;
}

void clsInputText::ReplaceZeros(const char16_t* begin, const char16_t* end) {
    char16_t* const first = storage_.get() + (begin - storage_.get());
    std::replace(first, first + (end - begin), u'\0', pictureOfZero);
}

void clsInputText::UseInPlace(std::size_t skippedBytes) {
    const std::size_t first = skippedBytes / sizeof(char16_t);
    Terminate(first, byteCount_ / sizeof(char16_t) - first);
}

void clsInputText::SwapBytes() {
    for (std::size_t i = 0; i < byteCount_ / sizeof(char16_t); ++i)
        storage_[i] = static_cast<char16_t>(storage_[i] << 8 | storage_[i] >> 8);
}

// Half a character at the end of the input is dropped.
void clsInputText::Terminate(std::size_t first, std::size_t length) {
    text_ = {storage_.get() + first, length};
    std::fill_n(storage_.get() + first + length, padding, u'\n');
}

} // namespace tvut
