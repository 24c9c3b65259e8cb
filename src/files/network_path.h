// Paths as other computers reach them, and back.
#pragma once

#include "platform/connections.h"
#include "runtime/result.h"

#include <string>
#include <string_view>

namespace tvut {

// The path by which another computer reaches what a path leads to: that of a share stays, "\\?\UNC\" at its
// beginning goes, a drive becomes what it leads to. notFound for all that only this computer has, badArgument
// for an empty path, one without server or share, and beyond longestPath. Throws std::bad_alloc.
UtilResult UtilpPathToNetwork(std::u16string_view path, IclsConnections& connections,
                              std::u16string& network);

// The reverse: by the drive that leads nearest to it, else by what this computer shares. A local path stays.
UtilResult UtilpPathToLocal(std::u16string_view network, IclsConnections& connections, std::u16string& path);

} // namespace tvut
