// What the window keeps from one day to the next, in a profile that people may read and change.
#pragma once

#include "named_filters.h"

#include <windows.h>

#include <map>

namespace tool::logpan {

enum class ThemeChoice { system, light, dark };

struct scSettings {
    RECT window{}; // empty: where the system puts it
    bool maximized = false;
    ThemeChoice theme = ThemeChoice::system;
    std::map<std::wstring, int> columns; // their widths, of 96 dots an inch; 0: hidden
    std::vector<scNamedFilter> filters;
    std::vector<scNamedFilter> highlights;
};

class clsSettingsFile {
  public:
    // Reads what is in the file, which need not exist. Nothing in it keeps the window from opening: what
    // cannot be understood is as if it were not there, and a file that is no profile is put aside as
    // "....bad".
    explicit clsSettingsFile(std::wstring path);

    // Beside the settings of other programs, where those of this user are; empty where there is no such
    // folder.
    static std::wstring UsualPath();

    // Nobody is told when they cannot be saved: the user has not asked for it.
    void Save() const;

    scSettings settings;

  private:
    std::wstring path_; // empty: nothing is kept
};

} // namespace tool::logpan
