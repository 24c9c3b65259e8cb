// Reasons in words for what the system refused.
#pragma once

#include <string>

namespace tool {

// The common errors in the tools' own words (the system's depend on its language), the others in the
// system's, without its full stop and line end.
std::string SystemReason(unsigned long error);

} // namespace tool
