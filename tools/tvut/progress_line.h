// How far a long command is, in one line that is written over again; only where somebody looks at a terminal.
#pragma once

#include <tvut22/zip.h>

#include <string_view>

namespace tool::tvut {

class clsProgressLine {
  public:
    clsProgressLine();
    clsProgressLine(const clsProgressLine&) = delete;
    clsProgressLine& operator=(const clsProgressLine&) = delete;
    ~clsProgressLine();

    void Show(const UtilZipEntry& entry) { Show(entry.name, entry.done, entry.bytes); }
    void Show(std::wstring_view name, unsigned long long done,
              unsigned long long total); // total 0: not known

  private:
    void* console_; // null without one
    ULONGLONG shownAt_ = 0;
    bool isShown_ = false;
};

} // namespace tool::tvut
