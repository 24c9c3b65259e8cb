// A file that is held cannot be replaced. So what is saved is a copy, and the file is closed just before; the
// turn keeps other prof away even then.
#include "edited_profile.h"

#include "reading.h"
#include "text_io.h"

namespace tool::prof {

namespace {

std::optional<clsFileTurn> TakeTurn(const std::string& file, const std::string& target) {
    if (target != file || target == standardStream)
        return std::nullopt;
    return std::optional<clsFileTurn>{target};
}

FileKind KindOf(const std::string& file) {
    return file == standardStream ? ContentsOfBytes(StandardInput()).kind : ContentsOfFile(ToWide(file)).kind;
}

} // namespace

clsEditedProfile::clsEditedProfile(const scArguments& arguments, Replaceable replaceable)
    : target_(arguments.output.empty() ? arguments.file : arguments.output),
      turn_(TakeTurn(arguments.file, target_)), kind_(KindOf(arguments.file)),
      profile_(Open(arguments, replaceable)) {}

clsProfile clsEditedProfile::Open(const scArguments& arguments, Replaceable replaceable) {
    if (turn_)
        RequireReplaceable(arguments.file, arguments.plainIni, replaceable);
    if (kind_ == FileKind::missing && arguments.create)
        return clsProfile::MakeEmpty();
    if (turn_ && IsTextProfile(kind_))
        return OpenHeld(arguments, replaceable);
    return clsProfile::Open(arguments.file, arguments.plainIni);
}

clsProfile clsEditedProfile::OpenHeld(const scArguments& arguments, Replaceable replaceable) {
    clsProfile profile = clsProfile::OpenHeld(arguments.file);
    kind_ = KindOf(arguments.file); // others may have changed it while it was waited for
    RequireReplaceable(arguments.file, arguments.plainIni, replaceable);
    return profile;
}

void clsEditedProfile::Save(UINT flags) {
    if (!turn_ && target_ != standardStream)
        RequireOverwritable(target_);
    if (turn_)
        profile_ = profile_.Copy();
    if (kind_ == FileKind::compressed && (flags & PROF_SAVE_COMPRESSED_AS_READ) != 0)
        flags |= PROF_SAVE_COMPRESSED;
    profile_.Save(target_, flags);
}

} // namespace tool::prof
