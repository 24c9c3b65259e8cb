// The commands: one function each, in a file of its own.
#pragma once

#include "arguments.h"

namespace tool::prof {

ExitCode RunShow(const scArguments& arguments);       // show.cpp
ExitCode RunGet(const scArguments& arguments);        // get.cpp
ExitCode RunFind(const scArguments& arguments);       // find.cpp
ExitCode RunSet(const scArguments& arguments);        // set.cpp
ExitCode RunDelete(const scArguments& arguments);     // delete.cpp
ExitCode RunLists(const scArguments& arguments);      // names.cpp
ExitCode RunItems(const scArguments& arguments);      // names.cpp
ExitCode RunConvert(const scArguments& arguments);    // convert.cpp
ExitCode RunCheck(const scArguments& arguments);      // check.cpp
ExitCode RunDiff(const scArguments& arguments);       // diff.cpp
ExitCode RunMerge(const scArguments& arguments);      // merge.cpp
ExitCode RunAttach(const scArguments& arguments);     // files.cpp
ExitCode RunExtract(const scArguments& arguments);    // files.cpp
ExitCode RunCopy(const scArguments& arguments);       // clipboard.cpp
ExitCode RunPaste(const scArguments& arguments);      // clipboard.cpp
ExitCode RunHtmlToText(const scArguments& arguments); // html.cpp
ExitCode RunTextToHtml(const scArguments& arguments); // html.cpp

} // namespace tool::prof
