#include "edited_profile.h"

#include "profile_kind.h"
#include "text_io.h"

namespace tool::prof {

namespace {

constexpr UINT sameWrapping = PROF_FORM_TEXT | PROF_SAVE_COMPRESSED_AS_READ;

bool isInPlace(const Arguments& arguments) {
    return arguments.output.empty() && arguments.file != standardStream;
}

bool isToBeCreated(const Arguments& arguments) {
    return arguments.create && arguments.file != standardStream &&
           kindOf(toWide(arguments.file)) == FileKind::missing;
}

} // namespace

Profile openForEdit(const Arguments& arguments) {
    Profile profile =
        isToBeCreated(arguments) ? Profile::makeEmpty() : Profile::open(arguments.file, arguments.plainIni);
    if (isInPlace(arguments))
        requireReplaceable(arguments.file, arguments.plainIni);
    return profile;
}

void saveEdited(const Profile& profile, const Arguments& arguments) {
    profile.save(arguments.output.empty() ? arguments.file : arguments.output, sameWrapping);
}

} // namespace tool::prof
