// Distinguishes profiles, plain INI files, and files that are neither.
//
// The library opens any text as a profile: what it does not understand is skipped, and would be gone after a
// save. So the tool looks at the beginning of a file itself, before it calls it a profile and before it
// replaces it.
#pragma once

#include <string>
#include <string_view>

namespace tool::prof {

enum class FileKind {
    missing,    // there is no file of that name
    unreadable, // there is one, but it cannot be looked at: it may hold anything
    empty,      // nothing, or blanks
    text,       // the first header is the root list
    compressed, // a profile in the compressed wrapper
    xml,        // an XML profile as it is saved here
    otherXml,   // one that another program has laid out anew
    xfdf,       // XFDF as it is saved here
    otherXfdf,  // of any program
    json,       // begins as a JSON object, or an array of them
    comments,   // lines that begin with # or ; and no others
    plainIni,   // items and sections
    markup,     // other XML, HTML
    binary,
    other, // some other text
};

// What a file is, and for markup the name of its root element.
struct scContents {
    FileKind kind;
    std::string root;
};

// Whether a text profile that takes its place would hold all that it holds: it is one, or empty.
constexpr bool IsTextProfile(FileKind kind) {
    return kind == FileKind::empty || kind == FileKind::text || kind == FileKind::compressed;
}

// The bytes may be the beginning of a file; more than 64 KB of them are not looked at.
scContents ContentsOfBytes(std::string_view bytes);
scContents ContentsOfFile(const std::wstring& path);

// Ends in .ini or .conf, in any case.
bool HasIniName(std::string_view name);

// Ends in .xfdf, in any case: XFDF of any program, whose nested fields are lists.
bool HasXfdfName(std::string_view name);

// Ends in .xml, in any case.
bool HasXmlName(std::string_view name);

// Ends in .json, in any case.
bool HasJsonName(std::string_view name);

} // namespace tool::prof
