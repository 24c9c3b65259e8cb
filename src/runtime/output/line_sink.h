// Where lines go: one interface for the viewer, the mailslot, the log file and the debugger.
#pragma once

#include "platform/time_zone.h"
#include "runtime/line_stamp.h"

namespace tvut {

struct scOutputLine {
    scDateTime time{}; // local
    std::u16string_view tag;
    scLineStamp stamp;
    std::u16string_view text;    // as the caller wrote it
    std::u16string_view stamped; // stamp and text; empty for the viewer, which makes them a packet's header
};

// A sink keeps its failures to itself. It is called by one thread at a time.
class IclsLineSink {
  public:
    // Whether lines arrive anywhere at the moment.
    virtual bool Wants() noexcept = 0;

    virtual void Take(const scOutputLine& line) noexcept = 0;

  protected:
    ~IclsLineSink() = default;
};

} // namespace tvut
