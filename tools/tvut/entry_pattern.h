// Patterns that choose entries of an archive: * stands for any characters, ? for one, and case is ignored.
// One with a slash is held against the whole name, another one against the last component. What matches a
// folder chooses all that is in it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tool::tvut {

constexpr const char* patternHelp =
    "A PATTERN compares with the whole name of an entry, or with its last component where it has no slash;\n"
    "* stands for any characters, ? for one, and case is ignored. A folder's means all that is in it, too.\n";

class clsEntryPatterns {
  public:
    explicit clsEntryPatterns(const std::vector<std::string>& patterns);

    // Whether one of them matches an entry's name; all entries match where there are none.
    bool Match(std::wstring_view name);
    // The first that has matched nothing; null when there is none.
    const std::wstring* FirstUnused() const;

  private:
    std::vector<std::wstring> patterns_;
    std::vector<bool> used_;
};

} // namespace tool::tvut
