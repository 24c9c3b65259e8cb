// What commands print with --json.
#pragma once

#include "arguments.h"
#include "profile.h"

#include <string_view>

namespace tool::prof {

void PrintJsonList(const clsProfile& profile, ProfList list, const scArguments& arguments);
void PrintJsonItems(const clsProfile& profile, ProfList list, const scArguments& arguments);
void PrintJsonNames(const clsProfile& profile, ProfList list, const scArguments& arguments);

// A value that --type has made of an item's.
void PrintJsonValue(std::string_view value, const scArguments& arguments);

// Saves as JSON to a file, in one step, or standard output. Throws Failure.
ExitCode ConvertToJson(const scArguments& arguments);

} // namespace tool::prof
