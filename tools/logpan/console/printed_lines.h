// Prints the lines that the filter lets through, until there are enough.
#pragma once

#include "arguments.h"

namespace tool::logpan {

class clsPrintedLines {
  public:
    explicit clsPrintedLines(const scArguments& arguments)
        : arguments_(arguments), filter_(MakeFilter(FilterTextOf(arguments))) {}

    // Enough were printed, or whoever read them has gone: "logpan --console | more" ends when it is closed.
    bool IsDone() const { return gone_ || (arguments_.maxLines > 0 && shown_ >= arguments_.maxLines); }

    void Show(const scLine& line);
    void Flush();

    std::uint64_t Shown() const { return shown_; }

  private:
    template <class Write>
    void UnlessGone(Write write);

    const scArguments& arguments_;
    scFilter filter_;
    std::uint64_t shown_ = 0;
    bool gone_ = false;
};

} // namespace tool::logpan
