// Tells profiles from plain INI files, and both from files that are neither.
//
// The library opens any text as a profile: what it does not understand is skipped and would be gone
// after a save. So a command that saves in place looks first at what it is about to replace.
#ifndef PROF_TOOL_PROFILE_KIND_H
#define PROF_TOOL_PROFILE_KIND_H

#include <string>
#include <string_view>

namespace tool::prof {

enum class FileKind {
    missing,    // there is no file of that name
    unreadable, // there is one, but it cannot be looked at: it may hold anything
    profile,    // begins with the root list, is compressed, or is empty
    other,      // anything else: an INI file, some other text
};

FileKind kindOf(const std::wstring& path);

// What is saved is a profile in text form: whatever else a file holds would be gone. Throws Failure for a
// file that a save must not replace.
void requireReplaceable(const std::string& file, bool plainIni);

// Ends in .ini or .conf, in any case.
bool hasIniName(std::string_view name);

// Ends in .xfdf, in any case: XFDF of any program, whose nested fields are lists.
bool hasXfdfName(std::string_view name);

// Ends in .xml, in any case.
bool hasXmlName(std::string_view name);

} // namespace tool::prof

#endif
