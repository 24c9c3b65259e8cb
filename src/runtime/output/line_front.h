// The front of all sinks: asks who listens, counts and stamps a line, and hands it out.
//
// Everything here is called under the writer's lock.
#pragma once

#include "runtime/output/app_local_words.h"
#include "runtime/output/line_sink.h"

#include <array>

namespace tvut {

// A change of the nesting level that a line brings: only the sign counts.
struct scLevelChange {
    std::int32_t sign;
};

struct scLineSinks {
    IclsLineSink& viewer;                   // gets lines alone while it wants them
    std::array<IclsLineSink*, 2> listeners; // in this order
    IclsLineSink& reader; // reads what is written anyway, but nothing is written for it alone
};

class clsLineFront {
  public:
    explicit clsLineFront(const scLineSinks& sinks) noexcept : sinks_(sinks) {}

    // Whether any sink wants lines: to be asked before each line, because it tells where the line goes.
    bool HasListener() noexcept;

    // Whether a line is on its way right now: what a sink does with it may lead here again, and must not
    // come back to the sink.
    bool IsWriting() const noexcept { return writing_; }

    // Counts the line, completes its stamp by level and number, and hands it out.
    void Write(scAppLocalData& shared, scOutputLine& line, scLevelChange change) noexcept;

  private:
    void HandOut(scOutputLine& line) noexcept;

    scLineSinks sinks_;
    bool viewerWants_ = false;
    bool writing_ = false;
};

} // namespace tvut
