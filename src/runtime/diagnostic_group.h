// Grouped diagnostic lines: a head line, and lines below it that are indented under it.
//
// Groups nest across functions through one depth for the whole process, so they are used under the
// global lock only.
#pragma once

#include "runtime/diagnostics.h"

namespace tvut {

// A group while it is open. A group that is not wanted writes nothing; whether it is wanted is decided
// once, so that a listener that comes meanwhile finds no half of it.
class clsDiagnosticGroup {
  public:
    clsDiagnosticGroup(bool wanted, const clsDiagnosticLine& head) noexcept;
    ~clsDiagnosticGroup();
    clsDiagnosticGroup(const clsDiagnosticGroup&) = delete;
    clsDiagnosticGroup& operator=(const clsDiagnosticGroup&) = delete;

    void Line(const clsDiagnosticLine& line) const noexcept;

  private:
    bool wanted_;
};

// A report of one line, at the depth of the groups that are open.
void UtilpReport(const clsDiagnosticLine& line) noexcept;

// A line about a call, and one below it that says what of it.
void UtilpReportCall(const clsDiagnosticLine& call, const clsDiagnosticLine& what) noexcept;

} // namespace tvut
