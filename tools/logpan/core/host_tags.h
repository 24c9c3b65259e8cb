// Tells the library's own reports from what programs write: a report bears no module's tag, but its text
// begins with the name of the host program, padded to eight columns, and a colon:
//
//     heaps   :Error: clsHeapNode['EXAMPLE'/'Documents']::FreeObject(0X0116035C)
//
// A name that is padded is one at once. A longer one could be the first word of any text; it counts once it
// is known, by the line with which a program's modules announce themselves, or by a report that is
// unmistakable.
#ifndef LOGPAN_HOST_TAGS_H
#define LOGPAN_HOST_TAGS_H

#include "line.h"

#include <functional>
#include <set>
#include <string_view>

namespace tool::logpan {

class HostTags {
  public:
    // Makes the name the module of a report, and what stands behind the colon its text and level. Other lines
    // stay as they are.
    void takeFrom(Line& line);

  private:
    void learnFromAnnouncement(std::wstring_view text);
    bool isOfReport(std::wstring_view tag, std::wstring_view rest);
    void learn(std::wstring_view tag);

    std::set<std::wstring, std::less<>> known_;
};

} // namespace tool::logpan

#endif
