// Writes the XML form: UTF-16 little-endian with a byte-order mark, an element a line.
#include "prof/formats/form_frame.h"
#include "prof/formats/xml_form.h"
#include "prof/formats/xml_text.h"

#include <array>

namespace tvut {

namespace {

constexpr std::u16string_view itemMiddle = u"\">";
constexpr std::u16string_view listMiddle = u"\">\r\n";

class clsMeasure {
  public:
    void Item(const clsItem& item, std::uint32_t level) {
        units_ += ProfpIndentationLength(level) + xmlItemBegin.size() + itemMiddle.size() +
                  xmlItemEnd.size() + ProfpEscapedLength(item.Name()) + ProfpEscapedLength(item.Value());
    }
    void BeginList(const clsItem& entry, std::uint32_t level) {
        units_ += ProfpIndentationLength(level) + xmlListBegin.size() + listMiddle.size() +
                  ProfpEscapedLength(entry.Name());
    }
    void EndList(std::uint32_t level) { units_ += ProfpIndentationLength(level) + xmlListEnd.size(); }
    std::uint64_t Units() const { return units_; }

  private:
    std::uint64_t units_ = 0;
};

class clsWriter {
  public:
    explicit clsWriter(clsTextOutput& output) : output_(output) {}

    void Item(const clsItem& item, std::uint32_t level) {
        const std::u16string_view name = item.Name();
        const std::u16string_view value = item.Value();
        ProfpFetchAhead(value);
        const std::uint64_t most = ProfpIndentationLength(level) + xmlItemBegin.size() + itemMiddle.size() +
                                   xmlItemEnd.size() +
                                   clsXmlReference::longest * (std::uint64_t{name.size()} + value.size());
        ProfpPutInOnePiece(output_, most, [&](auto& line) {
            line.PutIndentation(level);
            line.Put(xmlItemBegin);
            ProfpPutEscaped(line, name);
            line.Put(itemMiddle);
            ProfpPutEscaped(line, value);
            line.Put(xmlItemEnd);
        });
    }
    void BeginList(const clsItem& entry, std::uint32_t level) {
        output_.PutIndentation(level);
        output_.Put(xmlListBegin);
        ProfpPutEscaped(output_, entry.Name());
        output_.Put(listMiddle);
    }
    void EndList(std::uint32_t level) {
        output_.PutIndentation(level);
        output_.Put(xmlListEnd);
    }

  private:
    clsTextOutput& output_;
};

struct scXmlForm {
    using Unit = char16_t;
    using Measure = clsMeasure;
    using Writer = clsWriter;
    static constexpr std::array head{std::u16string_view(u"\uFEFF"), xmlHeader, xmlProfileBegin};
    static constexpr std::u16string_view tail = xmlProfileEnd;
};

} // namespace

constexpr scFormWriter xmlWriter = formWriter<scXmlForm>;

} // namespace tvut
