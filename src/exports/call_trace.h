// The trace of a call on jobs and heaps, where its job asks for one: the call with its arguments, what it has
// to say, and its result.
#pragma once

#include "runtime/diagnostic_group.h"

namespace tvut {

// Under the global lock, for the time of the call.
class clsCallTrace {
  public:
    // `head` makes the first line, and is called only where the trace is wanted and somebody listens.
    template <class Head>
    clsCallTrace(bool wanted, Head head) noexcept
        : on_(wanted && UtilpDiagnosticsOn()), group_(on_, on_ ? head() : clsDiagnosticLine()) {}

    // Both pass the result on.
    std::int32_t Result(std::int32_t result) const noexcept {
        if (on_)
            group_.Line(clsDiagnosticLine().Put(u"->").Put(result));
        return result;
    }
    template <class Node>
    Node* Result(Node* result) const noexcept {
        if (on_)
            group_.Line(clsDiagnosticLine().Put(u"->").PutPointer(result));
        return result;
    }

  private:
    bool on_;
    clsDiagnosticGroup group_;
};

} // namespace tvut
