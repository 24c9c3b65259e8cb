// Which option of a <select> is shown: the one that is said to be selected, else the first one.
#pragma once

#include "page_writer.h"

namespace tool::html {

class clsChosenOption {
  public:
    void BeginSelect(const clsPageWriter& writer) {
        shown_ = Shown::none;
        start_ = writer.Place();
    }
    // Takes back the option that was shown until now where this one is shown in its place.
    void BeginOption(bool isSaid, clsPageWriter& writer) {
        hidesText_ = shown_ == Shown::said || (shown_ == Shown::first && !isSaid);
        if (hidesText_)
            return;
        if (shown_ == Shown::first)
            writer.Return(start_);
        shown_ = isSaid ? Shown::said : Shown::first;
    }
    void EndSelect() { hidesText_ = false; }

    // Whether the text that comes next belongs to an option that is not shown.
    bool HidesText() const { return hidesText_; }

  private:
    enum class Shown { none, first, said };

    Shown shown_ = Shown::none;
    bool hidesText_ = false;
    clsPageWriter::scPlace start_;
};

} // namespace tool::html
