// One walk over the list takes what belongs to a person apart: words outside of brackets are the name, what
// is in them the address; a comment is the name of a bare address.
#include "docinfo/mail_people.h"

#include "docinfo/document_text.h"
#include "docinfo/mime_words.h"

namespace tvut {

namespace {

// What stands between marks, which may be escaped by a backslash; comments are nested.
std::string TakeQuoted(std::string_view& list, char open, char close) {
    std::string text;
    int depth = 1;
    std::size_t at = 1;
    for (; at < list.size(); ++at) {
        const char c = list[at];
        if (c == close && --depth == 0)
            break;
        depth += c == open && open != close ? 1 : 0;
        at += c == '\\' && at + 1 < list.size() ? 1 : 0;
        text += list[at];
    }
    list.remove_prefix(at < list.size() ? at + 1 : at);
    return text;
}

struct scPerson {
    std::string words, address, comment;
    bool hasBrackets = false;
};

// Up to the separator, which is passed. False at the end of the list.
bool Take(std::string_view& list, scPerson& person) {
    while (!list.empty()) {
        const char c = list.front();
        if (c == '"') {
            person.words += TakeQuoted(list, '"', '"');
        } else if (c == '(') {
            person.comment = TakeQuoted(list, '(', ')');
        } else if (c == '<') {
            person.address = TakeQuoted(list, '<', '>');
            person.hasBrackets = true;
        } else {
            list.remove_prefix(1);
            if (c == ',' || c == ';')
                return true;
            if (c == ':')
                person.words.clear(); // the name of a group
            else
                person.words += c;
        }
    }
    return false;
}

std::u16string Trimmed(const std::u16string& text) {
    constexpr std::u16string_view white = u" \t\r\n";
    const std::size_t start = text.find_first_not_of(white);
    return start == text.npos ? std::u16string()
                              : text.substr(start, text.find_last_not_of(white) + 1 - start);
}

std::u16string TextOf(const scPerson& person) {
    const std::u16string words = Trimmed(UtilpDecodeMimeWords(person.words));
    const bool isBare = !person.hasBrackets && words.find(u'@') != words.npos;
    std::u16string name = isBare ? std::u16string() : words;
    const std::u16string address = isBare ? words : Trimmed(UtilpDecodeLooseText(person.address));
    if (name.empty())
        name = Trimmed(UtilpDecodeMimeWords(person.comment));
    if (name.empty() || address.empty())
        return name.empty() ? address : name;
    return name + u" <" + address + u">";
}

} // namespace

std::u16string UtilpTakePerson(std::string_view& list) {
    for (bool isMore = true; isMore;) {
        scPerson person;
        isMore = Take(list, person);
        std::u16string text = TextOf(person);
        if (!text.empty())
            return text;
    }
    return {};
}

} // namespace tvut
