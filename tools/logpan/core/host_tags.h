// Distinguishes the library's own reports from what programs write: a report bears no module's tag, but its
// text begins with the name of the host program, padded to eight columns, and a colon:
//
//     heaps   :Error: clsHeapNode['EXAMPLE'/'Documents']::FreeObject(0X0116035C)
//
// A name that is padded is one at once. A longer one could be the first word of any text; it counts once it
// is known, by the line with which a program's modules announce themselves, or by a report that is
// unmistakable.
#pragma once

#include "line.h"

#include <functional>
#include <set>
#include <string_view>

namespace tool::logpan {

class clsHostTags {
  public:
    // Makes the name the module of a report, and what stands after the colon its text and level. Other lines
    // stay as they are.
    void TakeFrom(scLine& line);

  private:
    void LearnFromAnnouncement(std::wstring_view text);
    bool IsOfReport(std::wstring_view tag, std::wstring_view rest);
    void Learn(std::wstring_view tag);

    std::set<std::wstring, std::less<>> known_;
};

} // namespace tool::logpan
