// Lines appended to what may take only a part of one, such as a file on a full disk.
#pragma once

#include <string_view>

namespace tvut {

class clsWholeLines {
  public:
    // `append` takes bytes and returns how many of them were taken. Where a part of a line was, the next line
    // that is taken begins after a line end of its own; until then none is.
    template <class Append>
    void Write(std::string_view line, Append append) noexcept {
        if (torn_)
            torn_ = append(lineEnd) < lineEnd.size();
        if (torn_)
            return;
        const std::size_t taken = append(line);
        torn_ = taken > 0 && taken < line.size();
    }

  private:
    static constexpr std::string_view lineEnd = "\r\n";

    bool torn_ = false; // what is there ends with a part of a line
};

} // namespace tvut
