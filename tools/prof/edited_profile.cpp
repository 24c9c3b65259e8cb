#include "edited_profile.h"

#include "reading.h"
#include "text_io.h"

namespace tool::prof {

EditedProfile::EditedProfile(const Arguments& arguments, Replaceable replaceable)
    : target_(arguments.output.empty() ? arguments.file : arguments.output),
      inPlace_(target_ == arguments.file && target_ != standardStream),
      profile_(open(arguments, replaceable)) {}

Profile EditedProfile::open(const Arguments& arguments, Replaceable replaceable) {
    if (inPlace_)
        requireReplaceable(arguments.file, arguments.plainIni, replaceable);
    if (arguments.create && arguments.file != standardStream &&
        contentsOfFile(toWide(arguments.file)).kind == FileKind::missing)
        return Profile::makeEmpty();
    return Profile::open(arguments.file, arguments.plainIni);
}

void EditedProfile::save(UINT flags) {
    if (!inPlace_ && target_ != standardStream)
        requireOverwritable(target_);
    profile_.save(target_, flags);
}

} // namespace tool::prof
