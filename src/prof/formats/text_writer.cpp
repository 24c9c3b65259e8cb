// Writes the text form: UTF-16 little-endian with a byte-order mark, CR LF after every line.
#include "prof/formats/form_frame.h"
#include "prof/formats/text_marks.h"

#include <array>

namespace tvut {

namespace {

constexpr std::u16string_view lineEnd = u"\r\n";

// Every character is written as one character, so lengths are all it takes.
class clsMeasure {
  public:
    void Item(const clsItem& item, std::uint32_t level) {
        units_ += ProfpIndentationLength(level) + item.Name().size() + item.Value().size() + 3;
    }
    void BeginList(const clsItem& entry, std::uint32_t level) {
        units_ += 2 * ProfpIndentationLength(level) + entry.Name().size() + 7;
    }
    void EndList(std::uint32_t level) { units_ += ProfpIndentationLength(level) + 3; }
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
        const std::uint64_t length = ProfpIndentationLength(level) + name.size() + value.size() + 3;
        ProfpPutInOnePiece(output_, length, [&](auto& line) {
            line.PutIndentation(level);
            line.PutBy(ProfpCopyMarked<true>, name);
            line.Put(u'=');
            line.PutBy(ProfpCopyMarked<false>, value);
            line.Put(lineEnd);
        });
    }
    void BeginList(const clsItem& entry, std::uint32_t level) {
        output_.PutIndentation(level);
        output_.Put(u'[');
        output_.Put(entry.Name());
        output_.Put(u"]\r\n");
        output_.PutIndentation(level);
        output_.Put(u"{\r\n");
    }
    void EndList(std::uint32_t level) {
        output_.PutIndentation(level);
        output_.Put(u"}\r\n");
    }

  private:
    clsTextOutput& output_;
};

struct scTextForm {
    using Unit = char16_t;
    using Measure = clsMeasure;
    using Writer = clsWriter;
    static constexpr std::array head{std::u16string_view(u"\uFEFF[/]\r\n{\r\n")};
    static constexpr std::u16string_view tail = u"}\r\n";
};

} // namespace

constexpr scFormWriter textWriter = formWriter<scTextForm>;

} // namespace tvut
