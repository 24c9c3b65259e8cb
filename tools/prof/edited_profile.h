// A profile that a command changes: opened, and saved where the command line says.
//
// A file that the save will replace is the command's alone meanwhile: other prof wait for their turn, and
// other programs that hold it exclusively are waited for, as they wait for this one. The save replaces it in
// one step: a reader, or a crash, meets the old contents or the new ones and nothing between.
#pragma once

#include "arguments.h"
#include "file_turn.h"
#include "profile.h"
#include "profile_kind.h"
#include "replacing.h"

#include <optional>

namespace tool::prof {

class clsEditedProfile {
  public:
    // Opens FILE, or begins an empty profile when that is asked for. Throws Failure, also when the save would
    // lose what FILE holds.
    clsEditedProfile(const scArguments& arguments, Replaceable replaceable);

    const clsProfile& Profile() const { return profile_; }
    ProfJob Job() const { return profile_.Job(); }

    // Takes a changed profile in its place; the file is saved as it was opened.
    void Become(clsProfile profile) { profile_ = std::move(profile); }

    // Once. Throws Failure, also when it would lose what another file holds.
    void Save(UINT flags);

    // As a text profile, compressed if it was.
    void SaveAsText() { Save(PROF_FORM_TEXT | PROF_SAVE_COMPRESSED_AS_READ); }

  private:
    clsProfile Open(const scArguments& arguments, Replaceable replaceable);
    clsProfile OpenHeld(const scArguments& arguments, Replaceable replaceable);

    std::string target_;
    std::optional<clsFileTurn> turn_; // there when FILE is replaced
    FileKind kind_;
    clsProfile profile_;
};

} // namespace tool::prof
