// Read on in pieces, as far as somebody looks: what is wanted stands mostly in the first. UTF-16 becomes
// UTF-8 piece by piece, so that readers know one form of text; places count in what was read, not in the
// document.
#include "docinfo/document_head.h"

#include "docinfo/document_text.h"
#include "text/encoding/utf8.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::size_t pieceBytes = 16 * 1024;

} // namespace

clsDocumentHead::clsDocumentHead(clsPagedSource& source, std::size_t most)
    : source_(source), end_(std::min<std::uint64_t>(most, source.Size())) {
    const std::string start = source_.Read(0, 3);
    if (start == "\xEF\xBB\xBF")
        position_ = 3;
    else if (start.starts_with("\xFF\xFE") || start.starts_with("\xFE\xFF"))
        position_ = 2;
    hasMark_ = position_ != 0;
    if (position_ == 2)
        form_ = start[0] == '\xFF' ? Form::utf16Little : Form::utf16Big;
}

bool clsDocumentHead::Reach(std::size_t size) {
    while (bytes_.size() < size) {
        if (!ReadOn())
            return false;
    }
    return true;
}

// The first piece is the page that the format was recognised by. A surrogate at the end of a piece of UTF-16
// comes again with its other half.
bool clsDocumentHead::ReadOn() {
    const std::size_t wanted =
        bytes_.empty() ? clsPagedSource::pageBytes - static_cast<std::size_t>(position_) : pieceBytes;
    std::string piece =
        source_.Read(position_, static_cast<std::size_t>(std::min<std::uint64_t>(wanted, end_ - position_)));
    position_ = piece.empty() ? end_ : position_ + piece.size();
    if (form_ == Form::bytes) {
        bytes_ += piece;
        return !piece.empty();
    }
    std::u16string units = UtilpDecodeUtf16(piece, form_ == Form::utf16Big);
    if (units.size() > 1 && position_ < end_ && UtilpIsHighSurrogate(units.back())) {
        units.pop_back();
        position_ -= 2;
    }
    const std::size_t before = bytes_.size();
    bytes_.resize(before + units.size() * longestUtf8);
    bytes_.resize(before + UtilpEncodeUtf8(units, bytes_.data() + before));
    return !units.empty();
}

bool clsDocumentHead::StartsWith(std::size_t at, std::string_view lower) {
    return Reach(at + lower.size()) &&
           std::ranges::equal(Between(at, at + lower.size()), lower, {}, UtilpLowerAscii);
}

std::size_t clsDocumentHead::Find(std::string_view text, std::size_t from) {
    for (;;) {
        const std::size_t found = bytes_.find(text, from);
        if (found != bytes_.npos)
            return found;
        from = std::max(from, bytes_.size() - std::min(bytes_.size(), text.size() - 1));
        if (!ReadOn())
            return bytes_.size();
    }
}

std::size_t clsDocumentHead::FindIgnoringCase(std::string_view lower, std::size_t from) {
    std::size_t at = Find(lower.substr(0, 1), from);
    while (!IsAtEnd(at) && !StartsWith(at, lower))
        at = Find(lower.substr(0, 1), at + 1);
    return at;
}

} // namespace tvut
