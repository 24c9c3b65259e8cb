// One file that a customer can send: what the system is, the reports of crashes, the log, and what the
// product adds.
#pragma once

#include "runtime/result.h"

#include <span>
#include <string>
#include <string_view>

namespace tvut {

// Writes the archive, which takes the place of a file of that name when it is whole. What cannot be read is a
// line in its "missing.txt". takesReports: reports that are in the finished archive are removed from their
// folder. noAccess, failed, badArgument. Throws std::bad_alloc.
UtilResult UtilpWriteSupportArchive(std::u16string_view archive, std::span<const std::u16string> files,
                                    bool takesReports);

} // namespace tvut
