// A directory is a count, entries of one size, and the position of the next directory: to count them only
// those two numbers of each are read. A chain of directories that runs in a circle is found like one of
// sectors (Brent): the ones at the places 0, 1, 3, 7, ... are kept, and who passes the last of them again is
// in a circle.
#include "docinfo/tiff_info.h"

#include "docinfo/document_text.h"
#include "docinfo/fields.h"
#include "docinfo/first_damage.h"

namespace tvut {

namespace {

constexpr std::uint64_t mostBytes = 64 * 1024 * 1024;
constexpr std::size_t mostDirectories = 65536, mostEntries = 65536, longestText = 64 * 1024,
                      mostTexts = 64; // of a field
constexpr std::uint16_t exifDirectory = 34665, originalDate = 36867;

enum class TagKind : std::uint8_t { text, wideText, date };

struct scTagRow {
    std::uint16_t tag;
    DocProperty property;
    TagKind kind = TagKind::text;
};
constexpr scTagRow rows[] = {
    {269, DocProperty::title},
    {270, DocProperty::comments},
    {305, DocProperty::application},
    {306, DocProperty::modified, TagKind::date},
    {315, DocProperty::author},
    {33432, DocProperty::copyright},
    {40091, DocProperty::title, TagKind::wideText},
    {40092, DocProperty::comments, TagKind::wideText},
    {40093, DocProperty::author, TagKind::wideText},
    {40094, DocProperty::keywords, TagKind::wideText},
    {40095, DocProperty::subject, TagKind::wideText},
};

// The sizes of the two forms of the format.
struct scTiffForm {
    unsigned countBytes, entryBytes, numberBytes; // numbers: counts of values, and positions
};
constexpr scTiffForm classic{2, 12, 4}, big{8, 20, 8};

struct scTag {
    std::uint16_t tag, type;
    std::uint64_t count;
    std::uint64_t valueAt; // where its value stands, or the position of its value
};

class clsTiffReader {
  public:
    clsTiffReader(clsPagedSource& source, ByteOrder order, clsDocInfo& info)
        : source_(source), fields_(source, order), info_(info) {}

    void Read() {
        constexpr std::uint16_t bigVersion = 43;
        form_ = fields_.At<std::uint16_t>(2) == bigVersion ? big : classic;
        const std::uint64_t first = Number(form_.numberBytes == 8 ? 8 : 4, form_.numberBytes);
        std::uint64_t exif = 0;
        damage_.Try([&] { ReadDirectory(first, [&](const scTag& tag) { Take(tag, exif); }); });
        damage_.Try([&] {
            if (exif != 0)
                ReadDirectory(exif, [&](const scTag& tag) { TakeExif(tag); });
        });
        damage_.Try([&] { info_.AddNumber(DocProperty::pages, CountDirectories(first)); });
        damage_.Throw();
    }

  private:
    std::uint64_t Number(std::uint64_t position, unsigned bytes) {
        if (bytes == 2)
            return fields_.At<std::uint16_t>(position);
        return bytes == 4 ? fields_.At<std::uint32_t>(position) : fields_.At<std::uint64_t>(position);
    }

    std::uint64_t EntryCount(std::uint64_t directory) {
        const std::uint64_t count = Number(directory, form_.countBytes);
        UtilpRequire(count <= mostEntries, "too many entries in a directory");
        return count;
    }

    template <class Visit>
    void ReadDirectory(std::uint64_t directory, Visit visit) {
        std::uint64_t left = EntryCount(directory);
        for (std::uint64_t at = directory + form_.countBytes; left > 0; --left, at += form_.entryBytes) {
            const scTag tag{fields_.At<std::uint16_t>(at), fields_.At<std::uint16_t>(at + 2),
                            Number(at + 4, form_.numberBytes), at + 4 + form_.numberBytes};
            damage_.Try([&] { visit(tag); });
        }
    }

    void Take(const scTag& tag, std::uint64_t& exif) {
        if (tag.tag == exifDirectory)
            exif = Number(tag.valueAt, form_.numberBytes);
        for (std::size_t row = 0; row < std::size(rows); ++row) {
            if (rows[row].tag == tag.tag &&
                !std::exchange(isTaken_[row], true)) // each once, whatever a file says
                Add(rows[row], BytesOf(tag));
        }
    }

    void TakeExif(const scTag& tag) {
        if (tag.tag == originalDate && !std::exchange(hasOriginalDate_, true))
            Add({tag.tag, DocProperty::created, TagKind::date}, BytesOf(tag));
    }

    // A field of bytes or of ASCII; nothing for one of another type.
    std::string BytesOf(const scTag& tag) {
        constexpr std::uint16_t typeByte = 1, typeAscii = 2, typeUndefined = 7;
        if (tag.type != typeByte && tag.type != typeAscii && tag.type != typeUndefined)
            return {};
        const std::uint64_t at =
            tag.count <= form_.numberBytes ? tag.valueAt : Number(tag.valueAt, form_.numberBytes);
        UtilpRequire(at <= source_.Size() && tag.count <= source_.Size() - at, "a text lies beyond the end");
        return source_.Read(at, static_cast<std::size_t>(std::min<std::uint64_t>(tag.count, longestText)));
    }

    // A field of ASCII holds several texts, each with a zero at its end.
    void Add(const scTagRow& row, std::string_view bytes) {
        if (row.kind == TagKind::wideText) {
            const std::u16string text = UtilpDecodeUtf16(bytes, false);
            return info_.Add(row.property, text.substr(0, text.find(u'\0')), DocRank::better);
        }
        for (std::size_t left = mostTexts; left > 0 && !bytes.empty(); --left) {
            const std::size_t end = std::min(bytes.find('\0'), bytes.size());
            const std::u16string text = UtilpDecodeLooseText(bytes.substr(0, end));
            if (row.kind == TagKind::date)
                info_.Add(row.property, UtilpReadTiffDate(text));
            else
                info_.Add(row.property, text);
            bytes.remove_prefix(std::min(end + 1, bytes.size()));
        }
    }

    std::int64_t CountDirectories(std::uint64_t directory) {
        std::size_t count = 0, markAt = 0;
        std::uint64_t mark = 0;
        while (directory != 0) {
            UtilpRequire(count == 0 || directory != mark, "directories run in a circle");
            UtilpRequire(count < mostDirectories, "too many directories");
            if (count == markAt) {
                mark = directory;
                markAt = 2 * markAt + 1;
            }
            ++count;
            directory = Number(directory + form_.countBytes + EntryCount(directory) * form_.entryBytes,
                               form_.numberBytes);
        }
        return static_cast<std::int64_t>(count);
    }

    clsPagedSource& source_;
    clsFields fields_;
    clsDocInfo& info_;
    clsFirstDamage damage_;
    scTiffForm form_ = classic;
    std::array<bool, std::size(rows)> isTaken_{};
    bool hasOriginalDate_ = false;
};

} // namespace

bool UtilpIsTiff(std::string_view head) {
    using namespace std::string_view_literals;
    head = head.substr(0, 4);
    return head == "II*\0"sv || head == "MM\0*"sv || head == "II+\0"sv || head == "MM\0+"sv;
}

bool UtilpReadTiff(clsPagedSource& source, clsDocInfo& info) {
    source.Allow(mostBytes);
    info.SetFormat(u"tiff");
    const bool isBigEndian = source.Read(0, 1) == "M";
    clsTiffReader(source, isBigEndian ? ByteOrder::big : ByteOrder::little, info).Read();
    return true;
}

} // namespace tvut
