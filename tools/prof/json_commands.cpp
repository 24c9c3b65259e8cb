// A list becomes JSON by way of a snapshot, in which what belongs together is known before it is written.
#include "json_commands.h"

#include "json_text.h"
#include "text_io.h"
#include "tree_walk.h"

namespace tool::prof {

JsonValues ValuesFor(const scArguments& arguments) {
    return arguments.strings ? JsonValues::texts : JsonValues::typed;
}

void PrintJsonList(const clsProfile& profile, ProfList list, const scArguments& arguments) {
    clsOutput::Standard().Write(JsonOf(clsSnapshot{profile, list}, ValuesFor(arguments)));
}

void PrintJsonItems(const clsProfile& profile, ProfList list, const scArguments& arguments) {
    clsOutput::Standard().Write(JsonOfItems(clsSnapshot{profile, list}, ValuesFor(arguments)));
}

void PrintJsonNames(const clsProfile& profile, ProfList list) {
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

} // namespace tool::prof
