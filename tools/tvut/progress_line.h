// How far a long command is, in one line that is written over again; only where somebody looks at a terminal.
#pragma once

#include <tvut22/zip.h>

namespace tool::tvut {

class clsProgressLine {
  public:
    clsProgressLine();
    clsProgressLine(const clsProgressLine&) = delete;
    clsProgressLine& operator=(const clsProgressLine&) = delete;
    ~clsProgressLine();

    void Show(const UtilZipEntry& entry);

  private:
    void* console_; // null without one
    ULONGLONG shownAt_ = 0;
    bool isShown_ = false;
};

} // namespace tool::tvut
