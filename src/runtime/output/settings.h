// How diagnostic output is set up on this machine, or for this process.
#pragma once

#include <string>

namespace tvut {

struct scOutputSettings {
    std::wstring logFile; // empty: none
    bool flushLogFile = false;
    bool counterTime = false; // time stamps count from the performance counter's start
};

// The environment's "TVUT22_LOG" names a log file for the process and those it starts; otherwise the
// machine's settings hold.
scOutputSettings UtilpReadOutputSettings();

} // namespace tvut
