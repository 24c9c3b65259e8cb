// A plain INI file that a command changes: the one item or section in its text, and every other byte stays.
//
// Meanwhile the file is the command's alone, and it is replaced in one step, as a profile is.
#pragma once

#include "arguments.h"
#include "escapes.h"
#include "file_turn.h"
#include "ini_encoding.h"
#include "owned.h"
#include "plain_ini_edit.h"
#include "profile_tree.h"

#include <optional>
#include <set>
#include <string>

namespace tool::prof {

// Whether the command changes FILE itself, and FILE is a plain INI file or is to become one.
bool IsIniChangedInPlace(const scArguments& arguments);

class clsEditedIni {
  public:
    // Opens FILE, or begins an empty one when that is asked for. Throws Failure.
    explicit clsEditedIni(const scArguments& arguments);

    // As it was opened.
    ProfJob Job() const { return profile_.Job(); }

    // Throws Failure with usage for what an INI file cannot hold.
    void Set(const std::string& path, std::wstring_view value);
    // All of these paths, which lead to items, or to lists.
    void DeleteItems(const std::set<Names>& paths);
    void DeleteLists(const std::set<Names>& paths);

    // Once. Throws Failure; the file is as it was then.
    void Save();

  private:
    std::string Read(const scArguments& arguments);
    std::string ReadHeld();
    std::u16string Encoded(std::wstring_view text) const;
    void RequireReadBack(const std::string& bytes) const;

    std::string file_;
    std::optional<clsFileTurn> turn_; // none for standard input
    clsHandle held_;
    std::string bytes_;
    clsIniEncoding encoding_;
    clsPlainIniText text_;
    clsProfile profile_;
    clsProfileTree tree_; // with the same changes, to compare what is read from the text with it
};

} // namespace tool::prof
