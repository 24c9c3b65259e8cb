// Writes the XFDF form: UTF-8 without a byte-order mark, the texts as they are.
//
// Nothing is escaped and a list's start tag has no name attribute: the programs that read these files
// expect them so. docs/profile-forms.md says what of it can be read again.
#include "prof/formats/form_frame.h"
#include "prof/formats/xml_form.h"
#include "text/encoding/utf8.h"

#include <array>

namespace tvut {

namespace {

constexpr std::string_view itemBegin = "<field name=\"";
constexpr std::string_view listBegin = "<field=\"";
constexpr std::string_view nameEnd = "\">\r\n";
constexpr std::string_view valueBegin = " <value>";
constexpr std::string_view valueEnd = "</value>\r\n";
constexpr std::string_view fieldEnd = "</field>\r\n";

constexpr std::uint64_t ItemFrame(std::uint32_t level) {
    return 3 * ProfpIndentationLength(level) + itemBegin.size() + nameEnd.size() + valueBegin.size() +
           valueEnd.size() + fieldEnd.size();
}

class clsMeasure {
  public:
    void Item(const clsItem& item, std::uint32_t level) {
        bytes_ += ItemFrame(level) + UtilpUtf8Length(item.Name()) + UtilpUtf8Length(item.Value());
    }
    void BeginList(const clsItem& entry, std::uint32_t level) {
        bytes_ +=
            ProfpIndentationLength(level) + listBegin.size() + nameEnd.size() + UtilpUtf8Length(entry.Name());
    }
    void EndList(std::uint32_t level) { bytes_ += ProfpIndentationLength(level) + fieldEnd.size(); }
    std::uint64_t Units() const { return bytes_; }

  private:
    std::uint64_t bytes_ = 0;
};

class clsWriter {
  public:
    explicit clsWriter(clsByteOutput& output) : output_(output) {}

    void Item(const clsItem& item, std::uint32_t level) {
        const std::u16string_view name = item.Name();
        const std::u16string_view value = item.Value();
        ProfpFetchAhead(value);
        const std::uint64_t most =
            ItemFrame(level) + longestUtf8 * (std::uint64_t{name.size()} + value.size());
        ProfpPutInOnePiece(output_, most, [&](auto& lines) {
            lines.PutIndentation(level);
            lines.Put(itemBegin);
            PutText(lines, name);
            lines.Put(nameEnd);
            lines.PutIndentation(level);
            lines.Put(valueBegin);
            PutText(lines, value);
            lines.Put(valueEnd);
            lines.PutIndentation(level);
            lines.Put(fieldEnd);
        });
    }
    void BeginList(const clsItem& entry, std::uint32_t level) {
        output_.PutIndentation(level);
        output_.Put(listBegin);
        PutText(output_, entry.Name());
        output_.Put(nameEnd);
    }
    void EndList(std::uint32_t level) {
        output_.PutIndentation(level);
        output_.Put(fieldEnd);
    }

  private:
    // The room of a whole item has been reserved.
    static void PutText(clsReservedOutput<char>& lines, std::u16string_view text) {
        lines.Took(UtilpEncodeUtf8(text, lines.Next()));
    }
    static void PutText(clsByteOutput& output, std::u16string_view text) {
        constexpr std::size_t pieceLength = 1024;
        while (!text.empty()) {
            std::size_t length = std::min(text.size(), pieceLength);
            if (length < text.size() && UtilpIsHighSurrogate(text[length - 1]))
                --length; // a pair stays together, in the next piece
            output.Took(UtilpEncodeUtf8(text.substr(0, length), output.Reserve(longestUtf8 * pieceLength)));
            text.remove_prefix(length);
        }
    }

    clsByteOutput& output_;
};

struct scXfdfForm {
    using Unit = char;
    using Measure = clsMeasure;
    using Writer = clsWriter;
    static constexpr std::array head{xfdfHeader, std::string_view("<fields>\r\n")};
    static constexpr std::string_view tail = "</fields>\r\n</xfdf>\r\n";
};

} // namespace

constexpr scFormWriter xfdfWriter = formWriter<scXfdfForm>;

} // namespace tvut
