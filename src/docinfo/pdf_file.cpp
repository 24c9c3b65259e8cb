// The length of a stream may be an object of its own, and an object may lie in a stream: to keep that from
// going round, a length is only looked for where objects lie by themselves, and so are streams of objects.
#include "docinfo/pdf_file.h"

#include "docinfo/doc_info.h"

#include <algorithm>

namespace tvut {

void clsPdfFile::Open(std::uint64_t shift) {
    table_.emplace(source_, shift);
    table_->Read();
    OpenCipher();
}

void clsPdfFile::Repair() {
    table_.emplace(source_, 0);
    heads_.emplace();
    source_.Allow(2 * clsPdfHeads::mostBytes);
    heads_->Search(source_);
    source_.Allow(mostBytes);
    for (const std::uint64_t position : heads_->Trailers()) {
        clsPdfObject trailer;
        UtilpReadPdfObject(source_, position, trailer);
        table_->TakeTrailer(trailer);
    }
    for (const std::uint64_t position : heads_->CrossReferences())
        table_->TakeTrailer(UtilpReadPdfIndirect(source_, position).object);
    for (const std::uint64_t position : heads_->Catalogues())
        table_->TakeRoot(UtilpReadPdfIndirect(source_, position).reference);
    OpenCipher();
}

void clsPdfFile::OpenCipher() {
    const clsPdfObject& trailer = table_->Trailer();
    clsPdfValue encrypt = trailer["Encrypt"];
    isEncrypted_ = !encrypt.Is(PdfKind::none);
    cipher_.reset();
    scPdfLoaded loaded;
    if (encrypt.Is(PdfKind::reference)) {
        loaded = Load(encrypt.Reference());
        encrypt = loaded.object.Value();
    }
    leavesMetadata_ = clsPdfCipher::LeavesMetadata(encrypt);
    try {
        cipher_ = clsPdfCipher::Open(encrypt, trailer["ID"].At(0).Text());
    } catch (const clsException&) { // a system without cryptography
    }
}

scPdfLoaded clsPdfFile::Load(scPdfReference reference) {
    const std::uint32_t number = reference.number;
    if (number == 0)
        return {};
    UtilpRequire(++loads_ <= mostLoads, "too many objects");
    if (heads_)
        return LoadRepaired(number);
    const scPdfPlace place = table_->Find(number);
    if (place.kind == scPdfPlace::Kind::position)
        return LoadAt(place.number, number);
    if (place.kind == scPdfPlace::Kind::none || place.number > UINT32_MAX)
        return {};
    const auto stream = PositionOf(static_cast<std::uint32_t>(place.number));
    return stream && OpenPacked(*stream) ? LoadPacked(number) : scPdfLoaded{};
}

scPdfLoaded clsPdfFile::LoadAt(std::uint64_t position, std::uint32_t number) {
    scPdfLoaded loaded{UtilpReadPdfIndirect(source_, position), false};
    if (loaded.reference.number != number)
        return {};
    return loaded;
}

std::optional<std::uint64_t> clsPdfFile::PositionOf(std::uint32_t number) {
    if (heads_)
        return heads_->Find(number);
    const scPdfPlace place = table_->Find(number);
    return place.kind == scPdfPlace::Kind::position ? std::optional(place.number) : std::nullopt;
}

scPdfLoaded clsPdfFile::LoadRepaired(std::uint32_t number) {
    if (const auto position = heads_->Find(number))
        return LoadAt(*position, number);
    for (const std::uint64_t position : heads_->ObjectStreams()) {
        if (!OpenPacked(position))
            continue;
        scPdfLoaded loaded = LoadPacked(number);
        if (loaded.reference.number == number)
            return loaded;
    }
    return {};
}

bool clsPdfFile::OpenPacked(std::uint64_t position) {
    if (position == packedAt_ && !packed_.empty())
        return true;
    const scPdfLoaded stream{UtilpReadPdfIndirect(source_, position), false};
    const std::int64_t count = stream.object["N"].IntegerOr(0), first = stream.object["First"].IntegerOr(0);
    packed_ = Stream(stream).value_or(std::string());
    packedAt_ = position;
    if (count < 0 || first < 0 || static_cast<std::uint64_t>(first) > packed_.size())
        packed_.clear();
    packedCount_ = static_cast<std::size_t>(count);
    packedFirst_ = static_cast<std::size_t>(first);
    return !packed_.empty();
}

// The stream begins with numbers of objects and where they are, counted from the first one.
scPdfLoaded clsPdfFile::LoadPacked(std::uint32_t number) {
    clsPdfLexer head(std::string_view(packed_).substr(0, packedFirst_));
    for (std::size_t left = packedCount_; left > 0 && head.Next() == PdfToken::integer; --left) {
        const bool isIt = head.Number() == number;
        if (head.Next() != PdfToken::integer)
            break;
        const std::size_t room = packed_.size() - packedFirst_;
        if (!isIt || head.Number() < 0 || static_cast<std::uint64_t>(head.Number()) >= room)
            continue;
        scPdfLoaded loaded;
        loaded.isPacked = true;
        loaded.reference.number = number;
        loaded.object.Parse(std::string_view(packed_).substr(
                                packedFirst_ + static_cast<std::size_t>(head.Number()), mostPdfObjectBytes),
                            true);
        return loaded;
    }
    return {};
}

std::string clsPdfFile::Plain(const scPdfLoaded& owner, std::string_view text) const {
    std::string plain(text);
    if (!isEncrypted_ || owner.isPacked)
        return plain;
    if (!cipher_)
        return {};
    cipher_->DecipherString(owner.reference, plain);
    return plain;
}

std::optional<std::string> clsPdfFile::Stream(const scPdfLoaded& loaded) {
    if (loaded.streamAt == 0)
        return {};
    const clsPdfValue length = loaded.object["Length"];
    std::optional<std::int64_t> bytes = length.Integer();
    if (const std::uint32_t number = length.Reference().number; number != 0) {
        if (const auto position = PositionOf(number))
            bytes = LoadAt(*position, number).object.Value().Integer();
    }
    auto text = Unpack(loaded, bytes);
    unpacked_ += text ? text->size() : 0;
    UtilpRequire(unpacked_ <= mostUnpacked, "too much is packed");
    return text;
}

std::optional<std::string> clsPdfFile::Unpack(const scPdfLoaded& loaded, std::optional<std::int64_t> length) {
    const clsPdfValue dictionary = loaded.object.Value();
    if (!isEncrypted_ || IsClear(dictionary))
        return UtilpUnpackPdfStream(source_, loaded.streamAt, dictionary, length, nullptr);
    if (!cipher_)
        return {};
    return UtilpUnpackPdfStream(source_, loaded.streamAt, dictionary, length,
                                [&](std::string& text) { cipher_->DecipherStream(loaded.reference, text); });
}

// A cipher of a stream's own is only used to leave one open.
bool clsPdfFile::IsClear(const clsPdfValue& dictionary) const {
    const clsPdfValue filter = dictionary["Filter"];
    return filter.IsName("Crypt") || filter.At(0).IsName("Crypt") ||
           (leavesMetadata_ && dictionary["Type"].IsName("Metadata"));
}

} // namespace tvut
