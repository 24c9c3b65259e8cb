#include "json_commands.h"

#include "file_access.h"
#include "file_turn.h"
#include "json_profile.h"
#include "json_text.h"
#include "replacing.h"
#include "stream.h"
#include "text_io.h"
#include "tree_walk.h"

#include <new>
#include <optional>

namespace tool::prof {

namespace {

JsonValues ValuesFor(const scArguments& arguments) {
    return arguments.strings ? JsonValues::texts : JsonValues::typed;
}

// The library replaces files in one step: an item's bytes are put there as it does with profiles.
void SaveBytes(const std::string& name, std::string_view bytes) {
    const std::wstring path = ToWide(name);
    const clsProfile carrier = clsProfile::MakeEmpty();
    ProfAppendStreamW(carrier.Job(), nullptr, L"bytes", nullptr, MemoryStream(bytes).get());
    if (ProfGetStringLengthW(carrier.Job(), nullptr, L"bytes") < 0)
        throw std::bad_alloc{};
    if (ProfGetFileW(carrier.Job(), nullptr, L"bytes", nullptr, path.c_str()) == PROF_OK)
        return;
    const std::string reason = WhyNotWritable(path);
    throw scFailure{ExitCode::cannotSave, name, reason.empty() ? "cannot be written" : reason};
}

} // namespace

void PrintJsonList(const clsProfile& profile, ProfList list, const scArguments& arguments) {
    clsOutput::Standard().Write(JsonOf(clsSnapshot{profile, list}, ValuesFor(arguments)));
}

void PrintJsonItems(const clsProfile& profile, ProfList list, const scArguments& arguments) {
    clsOutput::Standard().Write(JsonOfItems(clsSnapshot{profile, list}, ValuesFor(arguments)));
}

void PrintJsonNames(const clsProfile& profile, ProfList list, const scArguments&) {
    std::wstring json;
    for (clsTreeWalk walk{profile.Job(), list, clsTreeWalk::Scope::oneList}; walk.Next();) {
        if (!walk.Entry().IsList())
            continue;
        json += json.empty() ? L"[" : L", ";
        AppendJsonText(json, walk.Entry().name);
    }
    clsOutput::Standard().WriteLine(json.empty() ? "[]" : ToUtf8(json + L"]"));
}

// A double may have any digits: what --type prints of one is exact.
void PrintJsonValue(std::string_view value, const scArguments& arguments) {
    const std::wstring text = ToWide(value);
    std::wstring json;
    if (arguments.type == "double" && !arguments.strings && IsJsonNumber(text))
        json = text;
    else
        AppendJsonValue(json, text, ValuesFor(arguments));
    clsOutput::Standard().WriteLine(ToUtf8(json));
}

ExitCode ConvertToJson(const scArguments& arguments) {
    if (arguments.compress)
        throw scFailure{ExitCode::usage, "", "JSON is not compressed"};
    const bool isFile = arguments.output != standardStream;
    std::optional<clsFileTurn> turn;
    if (isFile)
        turn.emplace(arguments.output);
    if (arguments.output == arguments.file && isFile)
        RequireReplaceable(arguments.file, arguments.plainIni, Replaceable::allProfiles);
    else if (isFile)
        RequireOverwritable(arguments.output);
    const clsProfile profile = clsProfile::Open(arguments.file, arguments.plainIni);
    if (isFile)
        SaveBytes(arguments.output, JsonOf(clsSnapshot{profile, nullptr}, ValuesFor(arguments)));
    else
        PrintJsonList(profile, nullptr, arguments);
    return ExitCode::ok;
}

} // namespace tool::prof
