// Reasons in words for what the system refused.
#ifndef PROF_TOOL_SYSTEM_ERROR_H
#define PROF_TOOL_SYSTEM_ERROR_H

#include <string>

namespace prof_tool {

// The common errors in this tool's own words (the system's depend on its language), the others in the
// system's, without its full stop and line end.
std::string systemReason(unsigned long error);

// What stands in the way of reading a file; empty when nothing does.
std::string whyNotReadable(const std::wstring& path);

// What stands in the way of writing a file; empty when nothing can be said.
std::string whyNotWritable(const std::wstring& path);

} // namespace prof_tool

#endif
