// What commands print with --json.
#pragma once

#include "arguments.h"
#include "json_profile.h"
#include "profile.h"

#include <string_view>

namespace tool::prof {

// What --strings says of values.
JsonValues ValuesFor(const scArguments& arguments);

void PrintJsonList(const clsProfile& profile, ProfList list, const scArguments& arguments);
void PrintJsonItems(const clsProfile& profile, ProfList list, const scArguments& arguments);
void PrintJsonNames(const clsProfile& profile, ProfList list);

// A value that --type has made of an item's.
void PrintJsonValue(std::string_view value, const scArguments& arguments);

} // namespace tool::prof
