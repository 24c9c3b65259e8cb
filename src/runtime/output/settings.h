// How diagnostic output is set up on this machine, or for this process.
#pragma once

#include <array>
#include <string>

namespace tvut {

struct scOutputSettings {
    std::array<std::wstring, 2> logFiles; // the first one that can be opened is used; empty: none
    bool flushLogFile = false;
    bool counterTime = false; // time stamps count from the performance counter's start
};

// The environment's "TVUT22_LOG" names a log file for the process and those it starts, before that of the
// machine's settings.
scOutputSettings UtilpReadOutputSettings();

} // namespace tvut
