// prof check: loads a profile and says what it holds; opening reports the error line when it fails.
#include "commands.h"
#include "json_object.h"
#include "profile.h"
#include "text_io.h"
#include "tree_walk.h"

namespace tool::prof {

namespace {

void PrintJson(const scArguments& arguments, std::size_t lists, std::size_t items) {
    clsJsonObject json;
    json.AddText(L"file", ToWide(DisplayName(arguments.file)));
    json.AddFlag(L"good", true);
    json.AddNumber(L"lists", lists);
    json.AddNumber(L"items", items);
    clsOutput::Standard().WriteLine(ToUtf8(std::move(json).Close()));
}

void PrintJson(const scFailure& failure) {
    clsJsonObject json;
    json.AddText(L"file", ToWide(failure.subject));
    json.AddFlag(L"good", false);
    json.AddText(L"error", ToWide(failure.reason));
    clsOutput::Standard().WriteLine(ToUtf8(std::move(json).Close()));
}

ExitCode Check(const scArguments& arguments) {
    const clsProfile profile = clsProfile::Open(arguments.file, arguments.plainIni);
    std::size_t lists = 0;
    std::size_t items = 0;
    for (clsTreeWalk walk{profile.Job(), nullptr, clsTreeWalk::Scope::wholeTree}; walk.Next();)
        ++(walk.Entry().IsList() ? lists : items);
    if (arguments.json)
        PrintJson(arguments, lists, items);
    else
        clsOutput::Standard().WriteLine(DisplayName(arguments.file) + ": good, lists: " +
                                        std::to_string(lists) + ", items: " + std::to_string(items));
    return ExitCode::ok;
}

} // namespace

ExitCode RunCheck(const scArguments& arguments) {
    try {
        return Check(arguments);
    } catch (const scFailure& failure) {
        if (arguments.json)
            PrintJson(failure);
        throw;
    }
}

} // namespace tool::prof
