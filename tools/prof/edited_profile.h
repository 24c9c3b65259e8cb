// A profile that a command changes: opened, and saved where the command line says.
//
// A file that the save will replace is the command's alone meanwhile: other prof wait for their turn, and
// other programs that hold it exclusively are waited for, as they wait for this one. The save replaces it in
// one step: a reader, or a crash, meets the old contents or the new ones and nothing between.
#ifndef PROF_TOOL_EDITED_PROFILE_H
#define PROF_TOOL_EDITED_PROFILE_H

#include "arguments.h"
#include "file_turn.h"
#include "profile.h"
#include "profile_kind.h"
#include "replacing.h"

#include <optional>

namespace tool::prof {

class EditedProfile {
  public:
    // Opens FILE, or begins an empty profile when that is asked for. Throws Failure, also when the save would
    // lose what FILE holds.
    EditedProfile(const Arguments& arguments, Replaceable replaceable);

    const Profile& profile() const { return profile_; }
    ProfJob job() const { return profile_.job(); }

    // Once. Throws Failure, also when it would lose what another file holds.
    void save(UINT flags);

    // As a text profile, compressed if it was.
    void saveAsText() { save(PROF_FORM_TEXT | PROF_SAVE_COMPRESSED_AS_READ); }

  private:
    Profile open(const Arguments& arguments, Replaceable replaceable);
    Profile openHeld(const Arguments& arguments, Replaceable replaceable);

    std::string target_;
    std::optional<FileTurn> turn_; // there when FILE is replaced
    FileKind kind_;
    Profile profile_;
};

} // namespace tool::prof

#endif
