// A header is lines; a line that begins with white space belongs to the one before. An empty line ends it.
#include "docinfo/mail_info.h"

#include "docinfo/document_head.h"
#include "docinfo/document_text.h"
#include "docinfo/mail_people.h"
#include "docinfo/mime_words.h"

#include <algorithm>
#include <iterator>

namespace tvut {

namespace {

using enum DocProperty;

constexpr std::size_t mostBytes = 1024 * 1024;
constexpr std::size_t longestText = 6 * clsDocInfo::longestValue; // bytes that could become one

bool IsSame(std::string_view name, std::string_view lower) {
    return std::ranges::equal(name, lower, {}, UtilpLowerAscii);
}

// A field without its line end, or what is none.
struct scField {
    std::string_view name, value;
    bool isField = false;
};

scField FieldOf(std::string_view line) {
    std::size_t length = 0;
    while (length < line.size() && line[length] > ' ' && line[length] < 0x7F && line[length] != ':')
        ++length;
    const std::size_t colon = line.find_first_not_of(" \t", length);
    if (length == 0 || colon == line.npos || line[colon] != ':')
        return {};
    return {line.substr(0, length), line.substr(colon + 1), true};
}

// Takes the next line with those that continue it off the front of a header; empty at the header's end.
std::string_view TakeLine(std::string_view& header) {
    std::size_t end = 0;
    do
        end = std::min(header.find('\n', end), header.size() - 1) + 1;
    while (end < header.size() && (header[end] == ' ' || header[end] == '\t'));
    std::string_view line = header.substr(0, end);
    header.remove_prefix(end);
    while (line.ends_with('\n') || line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

// The line that mailboxes of Unix have in front of a message.
bool IsEnvelope(std::string_view line) {
    return line.starts_with("From ") || line.starts_with(">From ");
}

enum class FieldKind { text, people, mailDate, received };

struct scMailField {
    std::string_view name; // in lower case
    DocProperty property;
    FieldKind kind = FieldKind::text;
    DocRank rank = DocRank::usual;
};
constexpr scMailField fields[] = {
    {"subject", title},
    {"subject", subject},
    {"from", author, FieldKind::people},
    {"keywords", keywords},
    {"comments", comments},
    {"organization", company},
    {"user-agent", application},
    {"x-mailer", application, FieldKind::text, DocRank::lesser},
    {"content-language", language},
    {"date", created, FieldKind::mailDate},
    {"received", received, FieldKind::received},
    {"to", to, FieldKind::people},
    {"cc", cc, FieldKind::people},
    {"message-id", messageId},
};

void AddDate(DocProperty property, std::string_view value, clsDocInfo& info) {
    info.Add(property, UtilpReadMailDate(UtilpWidenLatin(value)));
}

void Add(const scMailField& field, std::string_view value, clsDocInfo& info) {
    switch (field.kind) {
    case FieldKind::text:
        return info.Add(field.property, UtilpDecodeMimeWords(value.substr(0, longestText)), field.rank);
    case FieldKind::people:
        for (std::u16string person; !(person = UtilpTakePerson(value)).empty();)
            info.Add(field.property, person);
        return;
    case FieldKind::mailDate:
        return AddDate(field.property, value, info);
    case FieldKind::received: // the last server wrote the first one
        if (!info.Has(field.property))
            AddDate(field.property, value.substr(value.rfind(';') + 1), info);
        return;
    }
}

// Where the header ends: before an empty line.
std::size_t HeaderEnd(clsDocumentHead& head) {
    for (std::size_t at = 0; !head.IsAtEnd(at);) {
        if (head.At(at) == '\n' || head.StartsWith(at, "\r\n"))
            return at;
        at = head.Find("\n", at) + 1;
    }
    return head.Find("\n", mostBytes);
}

} // namespace

bool UtilpIsMail(std::string_view head) noexcept {
    constexpr std::string_view known[] = {"from",     "to",          "date",       "subject",
                                          "received", "return-path", "message-id", "mime-version"};
    if (head.starts_with("\xEF\xBB\xBF"))
        head.remove_prefix(3);
    if (IsEnvelope(head))
        TakeLine(head);
    bool isKnown = false;
    for (int count = 1; !head.empty(); ++count) {
        const scField field = FieldOf(TakeLine(head));
        if (!field.isField)
            return false;
        isKnown |=
            std::ranges::any_of(known, [&](std::string_view name) { return IsSame(field.name, name); });
        if (isKnown && count >= 2)
            return true;
    }
    return false;
}

bool UtilpReadMail(clsPagedSource& source, clsDocInfo& info) {
    clsDocumentHead head(source, mostBytes);
    const std::size_t end = HeaderEnd(head);
    std::string_view header = head.Between(0, end);
    info.SetFormat(u"eml");
    if (IsEnvelope(header))
        TakeLine(header);
    while (!header.empty()) {
        const scField given = FieldOf(TakeLine(header));
        for (const scMailField& field : fields) {
            if (IsSame(given.name, field.name))
                Add(field, given.value, info);
        }
    }
    UtilpRequire(end < mostBytes, "the header is too long");
    return true;
}

} // namespace tvut
