// Lines appended to what may take only a part of one, such as a file on a full disk.
#pragma once

#include <string_view>

namespace tvut {

class clsWholeLines {
  public:
    // One line or several, each with its end. `append` takes bytes and returns how many of them were taken.
    // Where a part of a line was, the next that is taken begins after a line end of its own; until then none
    // is.
    template <class Append>
    void Write(std::string_view lines, Append append) noexcept {
        if (torn_)
            torn_ = append(lineEnd) < lineEnd.size();
        if (torn_)
            return;
        const std::string_view taken = lines.substr(0, append(lines));
        torn_ = !taken.empty() && !taken.ends_with(lineEnd);
    }

  private:
    static constexpr std::string_view lineEnd = "\r\n";

    bool torn_ = false; // what is there ends with a part of a line
};

} // namespace tvut
