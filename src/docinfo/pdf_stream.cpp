// How long an object is shows at its end only, so a little is read, and more when that was not enough.
#include "docinfo/pdf_stream.h"

#include "text/bytes/deflate.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace tvut {

namespace {

constexpr std::size_t firstPiece = 1024, unfoldedPiece = 16 * 1024;

// Calls `take` with a beginning of what lies at a position, a longer one each time, until it gives a result.
// Its second argument says that no longer one comes.
template <class Take>
auto ReadGrowing(clsPagedSource& source, std::uint64_t position, Take take) {
    for (std::size_t bytes = firstPiece;; bytes *= 8) {
        const std::string piece = source.Read(position, std::min(bytes, mostPdfObjectBytes));
        const bool isAll = piece.size() < bytes || bytes >= mostPdfObjectBytes;
        if (auto result = take(std::string_view(piece), isAll))
            return *result;
        if (isAll)
            return typename decltype(take(piece, true))::value_type{};
    }
}

// The bytes of a stream begin after the end of the keyword's line.
std::size_t AfterLineEnd(std::string_view text, std::size_t at) {
    if (text.substr(at).starts_with("\r\n"))
        return at + 2;
    return text.substr(at).starts_with('\r') || text.substr(at).starts_with('\n') ? at + 1 : at;
}

std::optional<scPdfIndirect> ParseIndirect(std::string_view text, bool isAll, std::uint64_t position) {
    clsPdfLexer head(text);
    scPdfIndirect found;
    const auto takeNumber = [&](std::uint32_t& number) {
        const bool fits =
            head.Next() == PdfToken::integer && head.Number() >= 0 && head.Number() <= INT32_MAX;
        number = fits ? static_cast<std::uint32_t>(head.Number()) : 0;
        return fits;
    };
    scPdfReference reference;
    if (!takeNumber(reference.number) || !takeNumber(reference.generation) || !head.IsKeyword("obj"))
        return scPdfIndirect{};
    const auto length = found.object.Parse(text.substr(head.At()), isAll);
    if (!length)
        return {};
    found.reference = reference;
    clsPdfLexer tail(text, head.At() + *length);
    const bool isStream = tail.IsKeyword("stream");
    if (tail.RanOut() && !isAll)
        return {};
    if (isStream)
        found.streamAt = position + AfterLineEnd(text, tail.At());
    return found;
}

constexpr std::string_view streamEnd = "endstream";

bool EndsAt(clsPagedSource& source, std::uint64_t position) {
    const std::string text = source.Read(position, 4 + streamEnd.size());
    const std::size_t at = text.find(streamEnd);
    return at != text.npos &&
           std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), UtilpIsPdfSpace);
}

std::size_t SearchedLength(clsPagedSource& source, std::uint64_t position) {
    constexpr std::size_t step = clsPagedSource::pageBytes;
    std::string window;
    for (std::size_t done = 0; done < mostPdfStreamBytes; done += step) {
        const std::string piece = source.Read(position + done, step);
        const std::size_t before = window.size();
        window += piece;
        if (const std::size_t at = window.find(streamEnd); at != window.npos)
            return done - before + at;
        if (piece.size() < step)
            return done + piece.size();
        window.erase(0, window.size() - (streamEnd.size() - 1));
    }
    return mostPdfStreamBytes;
}

std::size_t StreamLength(clsPagedSource& source, std::uint64_t position, std::optional<std::int64_t> length) {
    const std::uint64_t rest = source.Size() - std::min(position, source.Size());
    if (length && *length >= 0 && static_cast<std::uint64_t>(*length) <= rest &&
        EndsAt(source, position + static_cast<std::uint64_t>(*length)))
        return static_cast<std::size_t>(
            std::min<std::uint64_t>(static_cast<std::uint64_t>(*length), mostPdfStreamBytes));
    return SearchedLength(source, position);
}

enum class Packing { none, deflated, unknown };

Packing PackingOf(const clsPdfValue& filter) {
    Packing packing = Packing::none;
    const auto take = [&](const clsPdfValue& name) {
        if (name.IsName("FlateDecode") && packing == Packing::none)
            packing = Packing::deflated;
        else if (!name.IsName("Crypt"))
            packing = Packing::unknown;
    };
    if (filter.Is(PdfKind::name))
        take(filter);
    filter.EachItem(take);
    return packing;
}

// Unfolds what comes in pieces until it ends, is damaged, or gives too much.
template <class NextPiece>
std::string Unfolded(NextPiece nextPiece) {
    clsInflater inflater;
    std::string text;
    std::size_t done = 0;
    while (done < mostPdfStreamBytes && inflater.Now() == clsInflater::State::running) {
        if (done == text.size())
            text.resize(std::min(std::max(unfoldedPiece, 2 * done), mostPdfStreamBytes));
        const std::size_t count = inflater.Unfold(text.data() + done, text.size() - done);
        done += count;
        if (count != 0 || inflater.Left() != 0)
            continue;
        const std::string_view piece = nextPiece();
        if (piece.empty())
            break;
        inflater.Feed(piece.data(), piece.size());
    }
    text.resize(done);
    return text;
}

// What lies open need not be in memory as a whole.
std::string UnfoldedAt(clsPagedSource& source, std::uint64_t position, std::size_t length) {
    std::string piece;
    return Unfolded([&] {
        piece = source.Read(position, std::min(length, unfoldedPiece));
        position += piece.size();
        length -= piece.size();
        return std::string_view(piece);
    });
}

std::string UnfoldedBytes(std::string_view bytes) {
    return Unfolded([&] { return std::exchange(bytes, {}); });
}

unsigned Paeth(unsigned left, unsigned up, unsigned upLeft) {
    const int estimate = static_cast<int>(left + up) - static_cast<int>(upLeft);
    const int toLeft = std::abs(estimate - static_cast<int>(left)),
              toUp = std::abs(estimate - static_cast<int>(up)),
              toUpLeft = std::abs(estimate - static_cast<int>(upLeft));
    if (toLeft <= toUp && toLeft <= toUpLeft)
        return left;
    return toUp <= toUpLeft ? up : upLeft;
}

// Rows of bytes, each after the number of the way in which it differs from what is to its left and above
// (PNG, 9.2). Becomes the rows themselves, in place.
void UndoPrediction(std::string& bytes, std::size_t rowBytes, std::size_t pixelBytes) {
    std::size_t from = 0, to = 0;
    const auto at = [&](std::size_t place) { return static_cast<unsigned char>(bytes[place]); };
    for (; from + 1 < bytes.size(); from += 1 + rowBytes) {
        const unsigned way = at(from);
        const std::size_t count = std::min(rowBytes, bytes.size() - from - 1);
        for (std::size_t i = 0; i < count; ++i, ++to) {
            const bool hasLeft = i >= pixelBytes, hasUp = to >= rowBytes;
            const unsigned left = hasLeft ? at(to - pixelBytes) : 0;
            const unsigned up = hasUp ? at(to - rowBytes) : 0;
            const unsigned upLeft = hasLeft && hasUp ? at(to - rowBytes - pixelBytes) : 0;
            const unsigned predicted[] = {0, left, up, (left + up) / 2, Paeth(left, up, upLeft)};
            bytes[to] = static_cast<char>(at(from + 1 + i) + (way < 5 ? predicted[way] : 0));
        }
    }
    bytes.resize(to);
}

bool UndoPredictor(std::string& bytes, const clsPdfValue& parameters) {
    constexpr std::int64_t most = 65536, none = 1, firstOfPng = 10;
    const std::int64_t predictor = parameters["Predictor"].IntegerOr(none);
    if (predictor == none)
        return true;
    const std::int64_t columns = parameters["Columns"].IntegerOr(1),
                       colors = parameters["Colors"].IntegerOr(1),
                       bits = parameters["BitsPerComponent"].IntegerOr(8);
    if (predictor < firstOfPng || columns < 1 || columns > most || colors < 1 || colors > 32 || bits < 1 ||
        bits > 16)
        return false;
    UndoPrediction(bytes, static_cast<std::size_t>((columns * colors * bits + 7) / 8),
                   static_cast<std::size_t>((colors * bits + 7) / 8));
    return true;
}

} // namespace

std::uint64_t UtilpReadPdfObject(clsPagedSource& source, std::uint64_t position, clsPdfObject& object) {
    return position + ReadGrowing(source, position, [&](std::string_view text, bool isAll) {
               return object.Parse(text, isAll);
           });
}

scPdfIndirect UtilpReadPdfIndirect(clsPagedSource& source, std::uint64_t position) {
    return ReadGrowing(source, position, [&](std::string_view text, bool isAll) {
        return ParseIndirect(text, isAll, position);
    });
}

std::optional<std::string> UtilpUnpackPdfStream(clsPagedSource& source, std::uint64_t position,
                                                const clsPdfValue& dictionary,
                                                std::optional<std::int64_t> length,
                                                const PdfDecipher& decipher) {
    const Packing packing = PackingOf(dictionary["Filter"]);
    if (packing == Packing::unknown)
        return {};
    const std::size_t bytes = StreamLength(source, position, length);
    std::string text;
    if (decipher || packing == Packing::none)
        text = source.Read(position, bytes);
    if (decipher)
        decipher(text);
    if (packing == Packing::none)
        return text;
    text = decipher ? UnfoldedBytes(text) : UnfoldedAt(source, position, bytes);
    const clsPdfValue parameters = dictionary["DecodeParms"];
    if (!UndoPredictor(text, parameters.Is(PdfKind::array) ? parameters.At(0) : parameters))
        return {};
    return text;
}

} // namespace tvut
