// What is done to a line once its text is whole.
#pragma once

#include "line.h"

namespace tool::logpan {

// Cuts a text that is longer than one is kept.
void CutText(std::wstring& text);

// Cuts its text, takes the line ends after it away, and counts and takes off the blanks that
// are its indentation.
void FinishLine(scLine& line);

} // namespace tool::logpan
