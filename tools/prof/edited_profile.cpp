// A file that is held cannot be replaced. So what is saved is a copy, and the file is let go just before; the
// turn keeps other prof away even then.
#include "edited_profile.h"

#include "reading.h"
#include "text_io.h"

namespace tool::prof {

namespace {

std::optional<FileTurn> takeTurn(const std::string& file, const std::string& target) {
    if (target != file || target == standardStream)
        return std::nullopt;
    return std::optional<FileTurn>{target};
}

FileKind kindOf(const std::string& file) {
    return file == standardStream ? FileKind::unreadable : contentsOfFile(toWide(file)).kind;
}

} // namespace

EditedProfile::EditedProfile(const Arguments& arguments, Replaceable replaceable)
    : target_(arguments.output.empty() ? arguments.file : arguments.output),
      turn_(takeTurn(arguments.file, target_)), kind_(kindOf(arguments.file)),
      profile_(open(arguments, replaceable)) {}

Profile EditedProfile::open(const Arguments& arguments, Replaceable replaceable) {
    if (turn_)
        requireReplaceable(arguments.file, arguments.plainIni, replaceable);
    if (kind_ == FileKind::missing && arguments.create)
        return Profile::makeEmpty();
    if (turn_ && isTextProfile(kind_))
        return openHeld(arguments, replaceable);
    return Profile::open(arguments.file, arguments.plainIni);
}

Profile EditedProfile::openHeld(const Arguments& arguments, Replaceable replaceable) {
    Profile profile = Profile::openHeld(arguments.file);
    kind_ = kindOf(arguments.file); // others may have changed it while it was waited for
    requireReplaceable(arguments.file, arguments.plainIni, replaceable);
    return profile;
}

void EditedProfile::save(UINT flags) {
    if (!turn_ && target_ != standardStream)
        requireOverwritable(target_);
    if (turn_)
        profile_ = profile_.copy();
    if (turn_ && kind_ == FileKind::compressed && (flags & PROF_SAVE_COMPRESSED_AS_READ) != 0)
        flags |= PROF_SAVE_COMPRESSED;
    profile_.save(target_, flags);
}

} // namespace tool::prof
