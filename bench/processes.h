// Programs that measure in a process of their own and answer with their exit code.
#pragma once

#include <cstddef>
#include <string>

namespace bench {

// The file of a module that this process has loaded; of the program itself for null.
std::wstring PathOfModule(const wchar_t* name);

// A path as an argument of a command line. A backslash before the closing quotation mark would hide that.
std::wstring Quoted(const std::wstring& path);

// Runs a command line to its end. Throws clsBenchError when it cannot be started, or ends with a negative
// code.
std::size_t ExitCodeOf(std::wstring commandLine);

} // namespace bench
