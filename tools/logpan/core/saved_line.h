// Reads back what the viewer itself has written: see PlainLine and JsonLine.
#pragma once

#include "line.h"

#include <optional>
#include <string_view>

namespace tool::logpan {

// Nothing for any other text. Control characters stay as they were written, \n and \x1b; such a line has no
// date and no process.
std::optional<scLine> ParsePlainLine(std::wstring_view text);

// Nothing for what is no JSON object (RFC 8259) with a "text". Fields that are missing, or not of the kind
// that they are written in, are as in a line that has none; unknown fields are passed over.
std::optional<scLine> ParseJsonLine(std::wstring_view json);

} // namespace tool::logpan
