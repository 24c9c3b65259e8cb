// Reasons in words for what the system refused.
#ifndef TOOL_SYSTEM_REASON_H
#define TOOL_SYSTEM_REASON_H

#include <string>

namespace tool {

// The common errors in the tools' own words (the system's depend on its language), the others in the
// system's, without its full stop and line end.
std::string systemReason(unsigned long error);

} // namespace tool

#endif
