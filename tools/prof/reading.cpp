// The order of the questions is the rule: the caller's word, then the contents, then the name. Binary
// contents are refused whatever the caller says, because a profile would take them for text and lose them at
// the next save.
#include "reading.h"

#include "exit_code.h"
#include "profile.h"

namespace tool::prof {

namespace {

std::string WhyNoProfile(const scContents& contents) {
    if (contents.kind == FileKind::binary)
        return "is no profile: its contents are binary";
    if (contents.kind == FileKind::other)
        return "is no profile: it has neither a list [/] nor the sections of an INI file; --ini reads it as "
               "one";
    if (contents.root == "html" || contents.root == "HTML")
        return "is HTML, but no profile";
    return "is XML, but no profile" +
           (contents.root.empty() ? "" : ": its root element is <" + contents.root + ">");
}

bool IsNoProfile(FileKind kind) {
    return kind == FileKind::binary || kind == FileKind::markup || kind == FileKind::other;
}

// An array looks like sections or like any other text.
bool MayBeJson(FileKind kind) {
    return kind == FileKind::plainIni || kind == FileKind::other;
}

} // namespace

scReading HowToRead(const std::string& name, const scContents& contents, bool plainIni) {
    const bool named = HasIniName(name);
    if (plainIni && contents.kind != FileKind::binary)
        return {PROF_READ_PLAIN_INI, nullptr};
    if (contents.kind == FileKind::json || (HasJsonName(name) && MayBeJson(contents.kind)))
        return {0, nullptr, true};
    if (contents.kind == FileKind::plainIni)
        return {PROF_READ_PLAIN_INI,
                named ? nullptr : "is no profile; read as a plain INI file, as with --ini"};
    if (named && contents.kind == FileKind::other)
        return {PROF_READ_PLAIN_INI, "has lines that INI files do not have; read as one because of its name"};
    if (IsNoProfile(contents.kind))
        throw scFailure{ExitCode::malformed, DisplayName(name), WhyNoProfile(contents)};
    if (contents.kind == FileKind::xml || contents.kind == FileKind::otherXml)
        return {PROF_READ_FOREIGN_XML, nullptr, false, contents.kind == FileKind::xml};
    const bool xfdf = contents.kind == FileKind::xfdf || contents.kind == FileKind::otherXfdf;
    return {xfdf || HasXfdfName(name) ? PROF_READ_FOREIGN_XFDF : 0u, nullptr};
}

} // namespace tool::prof
