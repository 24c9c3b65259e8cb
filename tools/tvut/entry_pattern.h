// Patterns that choose entries of an archive.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tool::tvut {

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
