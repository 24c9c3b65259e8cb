// Writes a file whole or not at all.
#pragma once

#include <string>
#include <string_view>

namespace tool::prof {

// Makes a file of these bytes or replaces it in one step, as the library saves profiles: what its owner has
// set on it stays, and one that others have open is waited for. Throws Failure with cannotSave.
void WriteWholeFile(const std::string& file, std::string_view bytes);

} // namespace tool::prof
