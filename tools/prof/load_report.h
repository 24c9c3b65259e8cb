// Learns why a profile could not be loaded, or not whole.
//
// ProfGetError says only that the contents are malformed. The line and the message go to the
// diagnostic output as
//
//     PROF load error line 3: 'closing tag expected'
//
// and what was passed over though loading went well as "WRN: ...". The tool gives the library a log file of
// its own for that, in the temporary folder, which vanishes with the process; where the user has named one by
// TVUT22_LOG, that one is read.
#pragma once

#include <string>

namespace tool::prof {

// Lives around a load. The first one must be made before the library writes its first line.
class clsLoadReport {
  public:
    clsLoadReport();

    // "line 3: closing tag expected", or the empty text when no load error was reported meanwhile.
    std::string Reason() const;

    // The first warning that the library wrote meanwhile: "XML: nothing is read behind the comment in line
    // 7". Empty without one.
    std::string Warning() const;

  private:
    long long start_; // where in the log file the load's own lines begin
};

} // namespace tool::prof
