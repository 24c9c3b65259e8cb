// The commands: one function each, in a file of its own.
#ifndef PROF_TOOL_COMMANDS_H
#define PROF_TOOL_COMMANDS_H

#include "arguments.h"

namespace tool::prof {

ExitCode runShow(const Arguments& arguments);       // show.cpp
ExitCode runGet(const Arguments& arguments);        // get.cpp
ExitCode runSet(const Arguments& arguments);        // edit.cpp
ExitCode runDelete(const Arguments& arguments);     // edit.cpp
ExitCode runLists(const Arguments& arguments);      // names.cpp
ExitCode runItems(const Arguments& arguments);      // names.cpp
ExitCode runConvert(const Arguments& arguments);    // convert.cpp
ExitCode runCheck(const Arguments& arguments);      // check.cpp
ExitCode runAttach(const Arguments& arguments);     // files.cpp
ExitCode runExtract(const Arguments& arguments);    // files.cpp
ExitCode runCopy(const Arguments& arguments);       // clipboard.cpp
ExitCode runPaste(const Arguments& arguments);      // clipboard.cpp
ExitCode runHtmlToText(const Arguments& arguments); // html.cpp
ExitCode runTextToHtml(const Arguments& arguments); // html.cpp

} // namespace tool::prof

#endif
