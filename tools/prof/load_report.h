// Learns why a profile could not be loaded.
//
// ProfGetError says only that the contents are malformed. The line and the message go to the
// diagnostic output, that is to OutputDebugString, as
//
//     PROF load error line 3: 'closing tag expected'
//
// OutputDebugString raises an exception that a debugger would take; with none attached, a vectored
// handler of this process sees it first. A LoadReport listens while it lives. One at a time.
#ifndef PROF_TOOL_LOAD_REPORT_H
#define PROF_TOOL_LOAD_REPORT_H

#include <string>

namespace prof_tool {

class LoadReport {
  public:
    LoadReport();
    ~LoadReport();
    LoadReport(const LoadReport&) = delete;
    LoadReport& operator=(const LoadReport&) = delete;

    // "line 3: closing tag expected", or the empty text when no load error was reported.
    std::string reason() const;

  private:
    void* handler_;
};

} // namespace prof_tool

#endif
