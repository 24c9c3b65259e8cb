// Why a file cannot be read, changed or written, in words.
#pragma once

#include <string>

namespace tool::prof {

// What stands in the way of reading a file; empty when nothing does.
std::string WhyNotReadable(const std::wstring& path);

// What stands in the way of reading and writing a file that nobody else writes meanwhile; empty when nothing
// does.
std::string WhyNotChangeable(const std::wstring& path);

// What stands in the way of writing a file; empty when nothing can be said.
std::string WhyNotWritable(const std::wstring& path);

} // namespace tool::prof
