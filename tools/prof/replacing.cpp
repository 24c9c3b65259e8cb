// Looks at the file that would be replaced, not at the one that was read: a save may go elsewhere. Only a
// file whose whole contents the profile can hold is replaced; all others are refused with the way out in the
// message.
#include "replacing.h"

#include "exit_code.h"
#include "profile_kind.h"
#include "reading.h"
#include "text_io.h"

namespace tool::prof {

namespace {

void RequireLook(const std::string& file, FileKind kind) {
    if (kind == FileKind::unreadable)
        throw scFailure{ExitCode::cannotOpen, file,
                        "cannot be looked at before it is replaced: in use or not permitted"};
}

bool IsProfile(FileKind kind) {
    return IsTextProfile(kind) || kind == FileKind::xml || kind == FileKind::xfdf;
}

[[noreturn]] void Refuse(const std::string& file, std::string reason, Replaceable replaceable) {
    reason += "; save it under another name";
    throw scFailure{ExitCode::usage, file,
                    replaceable == Replaceable::textProfiles ? reason + " with --output" : reason};
}

} // namespace

void RequireReplaceable(const std::string& file, bool plainIni, Replaceable replaceable) {
    const scContents contents = ContentsOfFile(ToWide(file));
    RequireLook(file, contents.kind);
    HowToRead(file, contents, plainIni);
    const bool keepsAll =
        replaceable == Replaceable::textProfiles ? IsTextProfile(contents.kind) : IsProfile(contents.kind);
    const bool isNew = contents.kind == FileKind::missing;
    if (plainIni || contents.kind == FileKind::plainIni || (HasIniName(file) && (isNew || !keepsAll)))
        Refuse(file, "a plain INI file would become a text profile and lose its comments", replaceable);
    if (!isNew && !keepsAll)
        Refuse(file, "is not a text profile (its first list is not [/]) and would be replaced by one",
               replaceable);
}

void RequireOverwritable(const std::string& file) {
    const FileKind kind = ContentsOfFile(ToWide(file)).kind;
    RequireLook(file, kind);
    if (kind != FileKind::missing && !IsProfile(kind))
        throw scFailure{ExitCode::usage, file,
                        "holds no profile, and would be lost; delete it before, or save under another name"};
}

} // namespace tool::prof
