#include "replacing.h"

#include "exit_code.h"
#include "profile_kind.h"
#include "reading.h"
#include "text_io.h"

namespace tool::prof {

namespace {

void requireLook(const std::string& file, FileKind kind) {
    if (kind == FileKind::unreadable)
        throw Failure{ExitCode::cannotOpen, file,
                      "cannot be looked at before it is replaced: in use or not permitted"};
}

bool isProfile(FileKind kind) {
    return isTextProfile(kind) || kind == FileKind::xml || kind == FileKind::xfdf;
}

[[noreturn]] void refuse(const std::string& file, std::string reason, Replaceable replaceable) {
    reason += "; save it under another name";
    throw Failure{ExitCode::usage, file,
                  replaceable == Replaceable::textProfiles ? reason + " with --output" : reason};
}

} // namespace

void requireReplaceable(const std::string& file, bool plainIni, Replaceable replaceable) {
    const Contents contents = contentsOfFile(toWide(file));
    requireLook(file, contents.kind);
    howToRead(file, contents, plainIni);
    const bool keepsAll =
        replaceable == Replaceable::textProfiles ? isTextProfile(contents.kind) : isProfile(contents.kind);
    const bool isNew = contents.kind == FileKind::missing;
    if (plainIni || contents.kind == FileKind::plainIni || (hasIniName(file) && (isNew || !keepsAll)))
        refuse(file, "a plain INI file would become a text profile and lose its comments", replaceable);
    if (!isNew && !keepsAll)
        refuse(file, "is not a text profile (its first list is not [/]) and would be replaced by one",
               replaceable);
}

void requireOverwritable(const std::string& file) {
    const FileKind kind = contentsOfFile(toWide(file)).kind;
    requireLook(file, kind);
    if (kind != FileKind::missing && !isProfile(kind))
        throw Failure{ExitCode::usage, file,
                      "holds no profile, and would be lost; delete it before, or save under another name"};
}

} // namespace tool::prof
