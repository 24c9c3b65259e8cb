// Temporary files beside a target, which they replace when they are complete: "~PRF0123ABCD.tmp".
#pragma once

#include "platform/owned.h"

#include <string>

namespace tvut {

// Makes a new one in a folder, whose path ends in a separator or is empty, and sets its name. Before the
// first one in a folder, those are removed that killed processes have left there: that nobody has open and
// nobody has written to for an hour. Throws std::bad_alloc.
clsFileHandle PlatformMakeReplacement(const std::wstring& folder, std::wstring& name);

// Gives one a name, "~PRF0123ABCD.sav", under which it is never removed as left: from now on it may be all
// there is of its contents. False when that cannot be.
bool PlatformKeepReplacement(std::wstring& name);

} // namespace tvut
