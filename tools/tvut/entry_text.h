// Entries of an archive as people and programs read them.
#pragma once

#include <tvut22/zip.h>

#include <string>

namespace tool::tvut {

// The time of an entry: "2026-11-22 13:05:00" in local time, or "2026-11-22T12:05:00Z"; empty when it is not
// known.
std::wstring LocalTimeText(const FILETIME& time);
std::wstring UtcTimeText(const FILETIME& time);

// One JSON object: name, sizes, time, and what else there is to say, such as an error.
std::wstring JsonLine(const UtilZipEntry& entry, const std::wstring& error = {});

} // namespace tool::tvut
