// A table's entries have 20 bytes each, so they are looked up where they lie; of those in streams, the
// unpacked stream is kept. The newest part stands at the end of the file, each names the one before. An
// object is where the newest part that has it says.
//
// A hybrid file has both: objects that readers of tables alone shall not see are free in the table, and in
// the stream that its trailer names.
#include "docinfo/pdf_table.h"

#include "docinfo/doc_info.h"

#include <algorithm>
#include <span>

namespace tvut {

namespace {

constexpr std::size_t tailBytes = 1024, mostParts = 64, mostSections = 16384;
constexpr std::uint64_t entryBytes = 20;
constexpr std::int64_t none = -1;

std::uint64_t FieldOf(std::string_view bytes) {
    std::uint64_t number = 0;
    for (const char byte : bytes)
        number = number << 8 | static_cast<unsigned char>(byte);
    return number;
}

} // namespace

void clsPdfTable::Read() {
    std::vector<std::int64_t> seen;
    for (auto position = static_cast<std::int64_t>(Start()); position != none;) {
        UtilpRequire(std::ranges::find(seen, position) == seen.end(), "cross references run in a circle");
        UtilpRequire(seen.size() < mostParts, "too many parts of cross references");
        seen.push_back(position);
        position = ReadPart(static_cast<std::uint64_t>(position));
    }
    UtilpRequire(root_.number != 0, "no catalogue");
}

std::uint64_t clsPdfTable::Start() {
    constexpr std::string_view word = "startxref";
    const std::uint64_t tailAt = source_.Size() - std::min<std::uint64_t>(source_.Size(), tailBytes);
    const std::string tail = source_.Read(tailAt, tailBytes);
    const std::size_t at = tail.rfind(word);
    UtilpRequire(at != tail.npos, "no cross references");
    clsPdfLexer lexer(tail, at + word.size());
    UtilpRequire(lexer.Next() == PdfToken::integer && lexer.Number() >= 0, "no cross references");
    return static_cast<std::uint64_t>(lexer.Number());
}

// Returns the position of the part before, or none.
std::int64_t clsPdfTable::ReadPart(std::uint64_t position) {
    UtilpRequire(position < source_.Size() - shift_, "cross references beyond the end");
    const std::string text = source_.Read(position + shift_, 64);
    clsPdfLexer lexer(text);
    if (lexer.IsKeyword("xref"))
        return ReadTable(position + shift_ + lexer.At());
    const scPdfIndirect stream = UtilpReadPdfIndirect(source_, position + shift_);
    UtilpRequire(stream.object["Type"].IsName("XRef") && stream.streamAt != 0,
                 "no cross references at their place");
    return ReadStream(stream);
}

std::int64_t clsPdfTable::ReadTable(std::uint64_t position) {
    const std::size_t firstSection = sections_.size();
    for (;;) {
        const std::string text = source_.Read(position, 64);
        clsPdfLexer lexer(text);
        PdfToken token = lexer.Next();
        if (token == PdfToken::keyword && lexer.Text() == "trailer") {
            position += lexer.At();
            break;
        }
        const std::int64_t first = lexer.Number();
        UtilpRequire(token == PdfToken::integer && lexer.Next() == PdfToken::integer,
                     "a table of cross references");
        const std::int64_t count = lexer.Number();
        const std::size_t start = std::min(text.find_first_not_of(" \t\r\n", lexer.At()), text.size());
        // A table that begins with the entry of object 0 and calls it 1.
        const bool isLate = first == 1 && text.substr(start).starts_with("0000000000 65535 f");
        if (count != 0)
            AddSection(isLate ? 0 : first, count, {0, 0, position + start, {}, false});
        position += start + entryBytes * static_cast<std::uint64_t>(std::max<std::int64_t>(count, 0));
        UtilpRequire(position < source_.Size(), "a table of cross references");
    }
    clsPdfObject trailer;
    UtilpReadPdfObject(source_, position, trailer);
    TakeTrailer(trailer);
    if (const auto hybrid = trailer["XRefStm"].Integer(); hybrid && *hybrid >= 0) {
        for (std::size_t section = firstSection; section < sections_.size(); ++section)
            sections_[section].goesOn = true;
        const scPdfIndirect stream =
            UtilpReadPdfIndirect(source_, static_cast<std::uint64_t>(*hybrid) + shift_);
        if (stream.object["Type"].IsName("XRef") && stream.streamAt != 0)
            ReadStream(stream);
    }
    return trailer["Prev"].IntegerOr(none);
}

std::int64_t clsPdfTable::ReadStream(const scPdfIndirect& stream) {
    const clsPdfObject& object = stream.object;
    const auto text =
        UtilpUnpackPdfStream(source_, stream.streamAt, object.Value(), object["Length"].Integer(), nullptr);
    UtilpRequire(text.has_value() && streams_.size() + text->size() <= mostPdfStreamBytes,
                 "a stream of cross references");
    scSection section{0, 0, streams_.size(), {}, false};
    std::size_t width = 0;
    for (std::size_t field = 0; field < 3; ++field) {
        const std::int64_t bytes = object["W"].At(field).IntegerOr(-1);
        UtilpRequire(bytes >= 0 && bytes <= 8, "a stream of cross references");
        section.widths[field] = static_cast<std::uint8_t>(bytes);
        width += section.widths[field];
    }
    UtilpRequire(width > 0, "a stream of cross references");
    streams_ += *text;
    TakeTrailer(object);
    const clsPdfValue index = object["Index"];
    std::size_t left = text->size() / width;
    const auto add = [&](std::int64_t first, std::int64_t count) {
        count = std::min<std::int64_t>(count, static_cast<std::int64_t>(left));
        AddSection(first, count, section);
        section.at += width * static_cast<std::size_t>(count);
        left -= static_cast<std::size_t>(count);
    };
    if (!index.Is(PdfKind::array))
        add(0, object["Size"].IntegerOr(0));
    std::optional<std::int64_t> first;
    index.EachItem([&](const clsPdfValue& item) {
        if (first && left > 0)
            add(*first, item.IntegerOr(none));
        first = first ? std::nullopt : std::optional(item.IntegerOr(none));
    });
    return object["Prev"].IntegerOr(none);
}

void clsPdfTable::AddSection(std::int64_t first, std::int64_t count, const scSection& section) {
    UtilpRequire(first >= 0 && count >= 0 && first + count <= UINT32_MAX, "a section of cross references");
    UtilpRequire(sections_.size() < mostSections, "too many sections of cross references");
    sections_.push_back(section);
    sections_.back().first = static_cast<std::uint32_t>(first);
    sections_.back().count = static_cast<std::uint32_t>(count);
}

scPdfPlace clsPdfTable::Find(std::uint32_t number) {
    for (const scSection& section : sections_) {
        if (number < section.first || number - section.first >= section.count)
            continue;
        const scPdfPlace place = FindIn(section, number - section.first);
        if (place.kind != scPdfPlace::Kind::none || !section.goesOn)
            return place;
    }
    return {};
}

scPdfPlace clsPdfTable::FindIn(const scSection& section, std::uint32_t place) {
    const std::size_t widths[] = {section.widths[0], section.widths[1], section.widths[2]};
    const std::size_t width = widths[0] + widths[1] + widths[2];
    if (width == 0) {
        const std::string entry = source_.Read(section.at + entryBytes * place, entryBytes);
        clsPdfLexer lexer(entry);
        const bool isNumber = lexer.Next() == PdfToken::integer;
        const std::int64_t position = lexer.Number();
        if (!isNumber || position <= 0 || lexer.Next() != PdfToken::integer || !lexer.IsKeyword("n"))
            return {};
        return {scPdfPlace::Kind::position, static_cast<std::uint64_t>(position) + shift_};
    }
    const std::string_view entry =
        std::string_view(streams_).substr(static_cast<std::size_t>(section.at) + width * place, width);
    const std::uint64_t kind = widths[0] == 0 ? 1 : FieldOf(entry.substr(0, widths[0]));
    const std::uint64_t number = FieldOf(entry.substr(widths[0], widths[1]));
    if (kind == 1)
        return {scPdfPlace::Kind::position, number + shift_};
    return {kind == 2 ? scPdfPlace::Kind::packed : scPdfPlace::Kind::none, number};
}

void clsPdfTable::TakeTrailer(const clsPdfObject& trailer) {
    TakeRoot(trailer["Root"].Reference());
    if (info_.number == 0)
        info_ = trailer["Info"].Reference();
    const bool isBetter =
        !trailer_["Encrypt"].Is(PdfKind::dictionary) && !trailer_["Encrypt"].Is(PdfKind::reference);
    if (!hasTrailer_ || (isBetter && !trailer["Encrypt"].Is(PdfKind::none)))
        trailer_ = trailer;
    hasTrailer_ = true;
}

} // namespace tvut
