// Lines to a file.
#ifndef LOGPAN_SAVE_LINES_H
#define LOGPAN_SAVE_LINES_H

#include "shown_lines.h"

namespace tool::logpan {

// In UTF-8: JSON objects when the name ends in .json, else plain lines. What was in the file before stays
// when it cannot be written; throws Failure then.
void saveLines(const ShownLines& lines, const std::wstring& path);

} // namespace tool::logpan

#endif
