// Why a file cannot be read, changed or written, in words.
#ifndef PROF_TOOL_FILE_ACCESS_H
#define PROF_TOOL_FILE_ACCESS_H

#include <string>

namespace tool::prof {

// What stands in the way of reading a file; empty when nothing does.
std::string whyNotReadable(const std::wstring& path);

// What stands in the way of reading and writing a file that nobody else writes meanwhile; empty when nothing
// does.
std::string whyNotChangeable(const std::wstring& path);

// What stands in the way of writing a file; empty when nothing can be said.
std::string whyNotWritable(const std::wstring& path);

} // namespace tool::prof

#endif
