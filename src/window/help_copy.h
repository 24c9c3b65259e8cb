// Copies of help files that the system's viewer shows from this machine only.
#pragma once

#include <string>

namespace tvut {

// The file to show in place of one, given by its full path: a copy in the user's temporary folder for a file
// on a network, on a removable drive, or with a mark that it came from the internet; where that cannot be
// made, and for all others, the file itself. Throws std::bad_alloc.
std::wstring UtilpHelpFileToShow(const std::wstring& file);

} // namespace tvut
