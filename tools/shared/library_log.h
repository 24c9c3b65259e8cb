// What the library says in its diagnostic output while a tool runs: reasons that a result code cannot hold.
//
// The tool has the library write a log file of its own for that, in the temporary folder, which vanishes with
// the process; where the user has named one by TVUT22_LOG, that one is read.
#pragma once

#include <string>
#include <vector>

namespace tool {

// Lives around calls of the library. The first one must be made before the library writes its first line.
class clsLibraryLog {
  public:
    clsLibraryLog();

    // What was written meanwhile, in UTF-8, its lines ended by CR LF; of a flood, the first 16 MB.
    std::string Text() const;

    // The lines that were written meanwhile, in UTF-8, without their stamps: from "ERR: " or "WRN: " on.
    // Others are left out.
    std::vector<std::string> Reports() const;

  private:
    long long start_; // where in the log file the object's own lines begin
};

} // namespace tool
