// One walk over the root's children finds the format, by the streams that its program writes, and the two
// streams that hold property sets; the tables say which numbers of a set are which property. Sets, values and
// the parts of a message are tried one by one, so that damage costs no more than what it has struck.
#include "docinfo/ole_info.h"

#include "docinfo/compound_file.h"
#include "docinfo/first_damage.h"
#include "docinfo/msg_info.h"
#include "docinfo/property_set.h"

namespace tvut {

namespace {

constexpr std::uint64_t mostBytes = 4 * 1024 * 1024;

// What a stream of this name makes of a file. Of several the last one counts.
struct scKnownStream {
    std::u16string_view name;
    std::u16string_view format;
};
constexpr scKnownStream knownStreams[] = {
    {u"__properties_version1.0", u"msg"},
    {u"PowerPoint Document", u"ppt"},
    {u"Book", u"xls"},
    {u"Workbook", u"xls"},
    {u"WordDocument", u"doc"},
    {u"EncryptedPackage", u"ooxml"},
};

enum class ValueKind : std::uint8_t { text, date, number, slides, security };

struct scSetRow {
    std::uint32_t number;
    DocProperty property;
    ValueKind kind = ValueKind::text;
};
constexpr scSetRow summaryRows[] = {
    {2, DocProperty::title},
    {3, DocProperty::subject},
    {4, DocProperty::author},
    {5, DocProperty::keywords},
    {6, DocProperty::comments},
    {8, DocProperty::lastAuthor},
    {9, DocProperty::revision},
    {11, DocProperty::printed, ValueKind::date},
    {12, DocProperty::created, ValueKind::date},
    {13, DocProperty::modified, ValueKind::date},
    {14, DocProperty::pages, ValueKind::number},
    {15, DocProperty::words, ValueKind::number},
    {16, DocProperty::characters, ValueKind::number},
    {18, DocProperty::application},
    {19, DocProperty::encrypted, ValueKind::security},
};
constexpr scSetRow documentRows[] = {
    {2, DocProperty::category},
    {7, DocProperty::pages, ValueKind::slides},
    {14, DocProperty::manager},
    {15, DocProperty::company},
};
constexpr std::int64_t wantsPassword = 1;

class clsOleReader {
  public:
    clsOleReader(clsPagedSource& source, clsDocInfo& info) : file_(source), info_(info), message_(file_) {}

    void Read() {
        damage_.Try([&] { file_.EachChild(file_.Root(), [&](const auto& entry) { Look(entry); }); });
        ReadSet(summary_, PropertySetKind::summary, summaryRows);
        ReadSet(documentSummary_, PropertySetKind::documentSummary, documentRows);
        damage_.Try([&] { ReadUserDefined(); });
        if (info_.Text(DocProperty::format) == u"msg")
            message_.Read(info_, damage_);
        damage_.Throw();
    }

  private:
    void Look(const scCompoundEntry& entry) {
        message_.Look(entry);
        if (entry.kind != scCompoundEntry::Kind::stream)
            return;
        if (entry.Name() == u"\5SummaryInformation")
            summary_.emplace(file_, entry);
        else if (entry.Name() == u"\5DocumentSummaryInformation")
            documentSummary_.emplace(file_, entry);
        else if (entry.Name() == u"EncryptedSummary" || entry.Name() == u"EncryptedPackage")
            info_.SetEncrypted();
        for (const scKnownStream& known : knownStreams) {
            if (entry.Name() == known.name && (!format_ || &known > format_)) {
                format_ = &known;
                info_.SetFormat(known.format);
            }
        }
    }

    // A row whose value is damaged leaves the others.
    void ReadSet(std::optional<clsCompoundStream>& stream, PropertySetKind kind,
                 std::span<const scSetRow> rows) {
        damage_.Try([&] {
            auto set = stream ? clsPropertySet::Find(*stream, kind) : std::nullopt;
            if (!set)
                return;
            for (const scSetRow& row : rows)
                damage_.Try([&] { Add(row, set->Value(row.number)); });
        });
    }

    void Add(const scSetRow& row, const scPropertyValue& value) {
        switch (row.kind) {
        case ValueKind::text:
            return info_.Add(row.property, value.text);
        case ValueKind::date:
            return info_.Add(row.property, value.date);
        case ValueKind::slides:
            if (info_.Text(DocProperty::format) != u"ppt")
                return;
            [[fallthrough]];
        case ValueKind::number:
            return info_.AddNumber(row.property, value.number.value_or(-1));
        case ValueKind::security:
            if (value.number.value_or(0) & wantsPassword)
                info_.SetEncrypted();
        }
    }

    void ReadUserDefined() {
        auto set = documentSummary_ ? clsPropertySet::Find(*documentSummary_, PropertySetKind::userDefined)
                                    : std::nullopt;
        if (set)
            set->EachNamed([&](std::u16string_view name, const scPropertyValue& value) {
                info_.AddCustom(name, value.text);
            });
    }

    clsCompoundFile file_;
    clsDocInfo& info_;
    clsMessageReader message_;
    clsFirstDamage damage_;
    const scKnownStream* format_ = nullptr;
    std::optional<clsCompoundStream> summary_, documentSummary_;
};

} // namespace

bool UtilpIsCompound(std::string_view head) {
    return clsCompoundFile::IsOne(head);
}

bool UtilpReadOle(clsPagedSource& source, clsDocInfo& info) {
    source.Allow(mostBytes);
    info.SetFormat(u"ole");
    clsOleReader(source, info).Read();
    return true;
}

} // namespace tvut
