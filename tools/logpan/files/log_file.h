// A file of lines: what the viewer saved, a log file of the library, or any text.
#pragma once

#include "log_reader.h"

#include <atomic>
#include <string>

namespace tool::logpan {

// Gives the lines out one by one, until the end or until it shall stop. The file is UTF-16LE with a
// byte-order mark, else UTF-8; a line that is not is in the code page of this system. A file that a program
// writes to is read as far as it is written. Throws Failure with the reason when it cannot be read.
void ReadLogFile(const std::wstring& path, const std::atomic<bool>& stop, clsLogReader::Take take);

} // namespace tool::logpan
