// Lines to a file.
#pragma once

#include "shown_lines.h"

namespace tool::logpan {

// In UTF-8: JSON objects when the name ends in .json, else plain lines. What was in the file before stays
// when it cannot be written; throws Failure then.
void SaveLines(const clsShownLines& lines, const std::wstring& path);

} // namespace tool::logpan
