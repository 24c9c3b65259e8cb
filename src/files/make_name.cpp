// The order of the steps makes the result a name, and the same name when it is made again: first each
// character that no name may hold, then the edges, then the mark of a device's name, and the cut last,
// because all of the steps before can change the length. A cut never divides a character, and what it bares
// at the end goes, too.
#include "files/make_name.h"

#include "files/file_name.h"
#include "files/path_split.h"

#include <algorithm>

namespace tvut {

namespace {

bool IsWhiteSpace(char16_t unit) {
    return (unit >= u'\t' && unit <= u'\r') || unit == u' ' || unit == u'\u0085' || unit == u'\u00A0' ||
           unit == u'\u1680' || (unit >= u'\u2000' && unit <= u'\u200A') || unit == u'\u2028' ||
           unit == u'\u2029' || unit == u'\u202F' || unit == u'\u205F' || unit == u'\u3000';
}

bool IsHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}
bool IsLowSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

bool IsPairAt(std::u16string_view text, std::size_t at) {
    return IsHighSurrogate(text[at]) && at + 1 < text.size() && IsLowSurrogate(text[at + 1]);
}

std::size_t AfterAll(std::u16string_view text, std::size_t at, bool (*is)(char16_t)) {
    while (at < text.size() && is(text[at]))
        ++at;
    return at;
}

bool IsNoNameCharacter(char16_t unit) {
    return !UtilpIsNameCharacter(unit) && !IsWhiteSpace(unit);
}

// Each character, or run of characters, as it may be in a name.
void PutPossible(std::u16string_view text, clsBoundedText& name) {
    for (std::size_t at = 0; at < text.size();) {
        if (IsWhiteSpace(text[at])) {
            name.Put(u' ');
            at = AfterAll(text, at, IsWhiteSpace);
        } else if (IsNoNameCharacter(text[at])) {
            name.Put(u'_');
            at = AfterAll(text, at, IsNoNameCharacter);
        } else if (IsPairAt(text, at)) {
            name.Put(text.substr(at, 2));
            at += 2;
        } else {
            name.Put((text[at] & 0xF800) == 0xD800 ? u'_' : text[at]);
            ++at;
        }
    }
}

std::u16string_view WithoutEnd(std::u16string_view name) {
    return name.substr(0, name.find_last_not_of(u" .") + 1); // nothing found: npos + 1 is 0
}

std::u16string_view WithoutEdges(std::u16string_view name) {
    name.remove_prefix(AfterAll(name, 0, IsWhiteSpace));
    return WithoutEnd(name);
}

// The longest beginning of at most this many units that ends with a whole character.
std::u16string_view Beginning(std::u16string_view text, std::size_t most) {
    if (most < text.size() && most > 0 && IsPairAt(text, most - 1))
        --most;
    return text.substr(0, most);
}

// The device's "_" is in it already: cutting leaves the part before the first dot as it is, or too long to
// be a device's.
void PutCut(std::u16string_view name, clsBoundedText& cut) {
    std::u16string_view extension = name.substr(UtilpExtensionStart(name));
    if (name.size() <= longestMadeName || extension.size() > longestKeptExtension)
        extension = {};
    const std::u16string_view stem = name.substr(0, name.size() - extension.size());
    cut.Put(Beginning(stem, longestMadeName - extension.size()));
    cut.Put(extension);
}

} // namespace

void UtilpMakeFileName(std::u16string_view text, clsBoundedText& name) {
    clsBoundedText possible;
    possible.Begin(text.size());
    PutPossible(text, possible);
    const std::u16string_view all = WithoutEdges(possible.View());
    const std::size_t device = UtilpDeviceLength(all);
    clsBoundedText named;
    named.Begin(all.size() + 1);
    named.Put(all.substr(0, device));
    named.Put(device != 0 ? u"_" : u"");
    named.Put(all.substr(device));
    name.Begin(longestMadeName);
    PutCut(named.View(), name);
    name.Cut(WithoutEnd(name.View()).size());
    if (name.Length() == 0)
        name.Put(u'_');
}

} // namespace tvut
