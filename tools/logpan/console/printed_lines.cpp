// A closed pipe is an end like others; what cannot be written for another reason is a failure.
#include "printed_lines.h"

#include "columns.h"
#include "text_io.h"

namespace tool::logpan {

template <class Write>
void clsPrintedLines::UnlessGone(Write write) {
    try {
        write();
    } catch (const scReaderGone&) {
        gone_ = true;
    }
}

void clsPrintedLines::Show(const scLine& line) {
    if (IsDone() || !filter_.Shows(line))
        return;
    UnlessGone([&] {
        clsOutput::Standard().WriteLine(ToUtf8(arguments_.json ? JsonLine(line) : PlainLine(line)));
        ++shown_;
    });
}

void clsPrintedLines::Flush() {
    UnlessGone([] { clsOutput::Standard().Flush(); });
}

} // namespace tool::logpan
