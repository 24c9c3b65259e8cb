// The command table, declared to the argument parser.
#include "arguments.h"

#include "command_words.h"
#include "commands.h"
#include "parse_arguments.h"
#include "profile.h"
#include "value_types.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace tool::prof {

namespace {

constexpr const char* footer =
    "FILE, IN and OUT may be - for standard input and output. What has sections, but no root list [/], is\n"
    "a plain INI file: each section becomes a list of the root list. XFDF is read as any program's: a\n"
    "field that holds fields is a list. JSON is a profile, too. A value or path that begins with a dash is\n"
    "written after --.\n"
    "Exit codes: 0 done, 1 not found, or different, 2 wrong usage or a change that was refused,\n"
    "            3 cannot open, 4 malformed contents or no profile, 5 cannot save or write,\n"
    "            6 value not of the type, 7 out of memory.\n";

void AddFile(CLI::App& app, scArguments& arguments) {
    app.add_option("FILE", arguments.file, "The profile")->required();
    app.add_flag("--ini", arguments.plainIni, "Read it as a plain INI file, whatever its name and contents");
}

void AddItemPath(CLI::App& app, scArguments& arguments, const char* help) {
    app.add_option("PATH", arguments.path, help)->required();
}

void AddItemPaths(CLI::App& app, scArguments& arguments, const char* help) {
    app.add_option("PATH", arguments.paths, help)->required();
}

void AddListPath(CLI::App& app, scArguments& arguments) {
    app.add_option("PATH", arguments.path, "The list to begin with, like Print/Fonts; else the root");
}

void AddType(CLI::App& app, scArguments& arguments, const std::vector<std::string>& names) {
    app.add_option("--type", arguments.type, "The value's type")
        ->check(CLI::IsMember(names))
        ->capture_default_str();
}

void AddOutput(CLI::App& app, scArguments& arguments) {
    app.add_option("--output", arguments.output, "Where to save it instead; as a text profile")
        ->option_text("OUT");
}

void AddJson(CLI::App& app, scArguments& arguments) {
    app.add_flag("--json", arguments.json, "Print JSON");
}

void AddStrings(CLI::App& app, scArguments& arguments) {
    app.add_flag("--strings", arguments.strings, "In JSON, every value is a string");
}

void DeclareShow(CLI::App& app, scArguments& arguments) {
    AddFile(app, arguments);
    AddListPath(app, arguments);
    app.add_flag("--flat", arguments.flat, "One item a line with its full path: /Print/Copies=2");
    AddJson(app, arguments);
    AddStrings(app, arguments);
    app.get_option("--json")->excludes("--flat");
}

void DeclareGet(CLI::App& app, scArguments& arguments) {
    AddFile(app, arguments);
    AddItemPaths(app, arguments,
                 "The item, like Print/Copies; several, or with * and ?, print paths and values");
    AddType(app, arguments, FetchableTypes());
    app.add_option("--default", arguments.fallback, "What to print when there is no such item")
        ->option_text("V");
    AddJson(app, arguments);
    AddStrings(app, arguments);
}

void DeclareSet(CLI::App& app, scArguments& arguments) {
    AddFile(app, arguments);
    AddItemPath(app, arguments, "The item; lists on the way that are missing are made");
    app.add_option("VALUE", arguments.value, "Its value; must be of the type")->required();
    AddType(app, arguments, StorableTypes());
    AddOutput(app, arguments);
    app.add_flag("--create", arguments.create, "Begin with an empty profile when there is no such file");
}

void DeclareDelete(CLI::App& app, scArguments& arguments) {
    AddFile(app, arguments);
    AddItemPaths(app, arguments, "The item; all of that name are deleted; * and ? stand for any characters");
    app.add_flag("--list", arguments.list, "Delete lists of that path, with all that is in them");
    AddOutput(app, arguments);
}

void DeclareLists(CLI::App& app, scArguments& arguments) {
    AddFile(app, arguments);
    AddListPath(app, arguments);
    AddJson(app, arguments);
}

void DeclareCheck(CLI::App& app, scArguments& arguments) {
    AddFile(app, arguments);
    AddJson(app, arguments);
}

void DeclareItems(CLI::App& app, scArguments& arguments) {
    AddFile(app, arguments);
    app.add_option("PATH", arguments.paths,
                   "The list; several, or with * and ?, print whole paths; else the root");
    AddJson(app, arguments);
    AddStrings(app, arguments);
}

void DeclareFind(CLI::App& app, scArguments& arguments) {
    AddFile(app, arguments);
    app.add_option("TEXT", arguments.value, "What names or values hold, in letters of either case")
        ->required();
}

void DeclareConvert(CLI::App& app, scArguments& arguments) {
    app.add_option("IN", arguments.file, "The profile to read")->required();
    app.add_option("OUT", arguments.output, "Where to save it")->required();
    app.add_flag("--ini", arguments.plainIni, "Read IN as a plain INI file, whatever its name and contents");
    app.add_option("--form", arguments.form, "The form to save in; without it by the name of OUT")
        ->check(CLI::IsMember({"text", "xml", "xfdf", "json"}));
    app.add_flag("--compress", arguments.compress, "Save compressed");
    app.add_flag("--flat", arguments.flat, "IN holds lines as 'prof show --flat' prints them");
    AddStrings(app, arguments);
}

void DeclareDiff(CLI::App& app, scArguments& arguments) {
    app.add_option("A", arguments.file, "A profile")->required();
    app.add_option("B", arguments.other, "The one to compare it with")->required();
    app.add_flag("--ini", arguments.plainIni, "Read both as plain INI files");
    AddJson(app, arguments);
    AddStrings(app, arguments);
}

void DeclareMerge(CLI::App& app, scArguments& arguments) {
    app.add_option("BASE", arguments.file, "The profile to change")->required();
    app.add_option("FROM", arguments.other, "The profile whose items are set")->required();
    app.add_flag("--only-new", arguments.onlyNew, "Add what is missing, change nothing");
    app.add_flag("--ini", arguments.plainIni, "Read both as plain INI files");
    AddOutput(app, arguments);
}

void AddKey(CLI::App& app, scArguments& arguments) {
    app.add_option("--key", arguments.key, "The key that enciphers the files' contents")->option_text("K");
}

void DeclareAttach(CLI::App& app, scArguments& arguments) {
    AddFile(app, arguments);
    app.add_option("LIST", arguments.path, "The list to put the files into; made when missing; / is the root")
        ->required();
    app.add_option("PATTERN", arguments.patterns, "A file, or files with * and ? in the name")->required();
    AddKey(app, arguments);
    AddOutput(app, arguments);
    app.add_flag("--create", arguments.create, "Begin with an empty profile when there is no such file");
}

void DeclareExtract(CLI::App& app, scArguments& arguments) {
    AddFile(app, arguments);
    app.add_option("LIST", arguments.path, "The list that holds the files; / is the root")->required();
    app.add_option("FOLDER", arguments.folder, "Where to put them; made when missing")->required();
    AddKey(app, arguments);
}

void DeclarePaste(CLI::App& app, scArguments& arguments) {
    app.add_option("OUT", arguments.output, "Where to save it")->required();
    app.add_flag("--compress", arguments.compress, "Save compressed");
}

CLI::Option* AddMarkers(CLI::App& app, scArguments& arguments) {
    return app.add_flag("--markers", arguments.markers, "Tags are written [_[p]_] instead of <p>");
}

void DeclareHtmlToText(CLI::App& app, scArguments& arguments) {
    app.add_option("FILE", arguments.pages, "The pages; else standard input");
    app.add_option("--links", arguments.links,
                   "The addresses of links: nowhere, after their labels, at the end")
        ->check(CLI::IsMember({"none", "inline", "end"}))
        ->capture_default_str();
    app.add_option("--width", arguments.width,
                   "Break lines between words so that they have at most N columns")
        ->option_text("N")
        ->check(CLI::Range(10, 10000));
    AddMarkers(app, arguments)->excludes("--links")->excludes("--width");
}

void DeclareTextToHtml(CLI::App& app, scArguments& arguments) {
    AddMarkers(app, arguments);
}

constexpr scCommand commands[] = {
    {"show", "Print a profile as a tree", DeclareShow, RunShow},
    {"get", "Print items' values", DeclareGet, RunGet},
    {"set", "Give an item a value", DeclareSet, RunSet},
    {"delete", "Delete items or lists", DeclareDelete, RunDelete},
    {"lists", "Print the names of the lists in a list", DeclareLists, RunLists},
    {"items", "Print the items of a list", DeclareItems, RunItems},
    {"find", "Print what holds a text", DeclareFind, RunFind},
    {"convert", "Save a profile in another form or place", DeclareConvert, RunConvert},
    {"check", "Load a profile and report the first error", DeclareCheck, RunCheck},
    {"diff", "Print what differs between two profiles", DeclareDiff, RunDiff},
    {"merge", "Set the items of one profile into another", DeclareMerge, RunMerge},
    {"attach", "Put files into a list", DeclareAttach, RunAttach},
    {"extract", "Write the files of a list into a folder", DeclareExtract, RunExtract},
    {"copy", "Put a profile on the clipboard", AddFile, RunCopy},
    {"paste", "Save the profile on the clipboard", DeclarePaste, RunPaste},
    {"html2text", "Turn HTML into plain text", DeclareHtmlToText, RunHtmlToText},
    {"text2html", "Turn plain text from standard input into HTML", DeclareTextToHtml, RunTextToHtml},
};

std::string Version() {
    return "prof " + std::to_string(ProfGetVersion(1)) + "." + std::to_string(ProfGetVersion(2));
}

} // namespace

void RequireOneStandardInput(const scArguments& arguments) {
    if (arguments.file == standardStream && arguments.other == standardStream)
        throw scFailure{ExitCode::usage, "", "standard input cannot be both profiles"};
}

ExitCode Dispatch(std::vector<std::string> words) {
    scArguments arguments;
    CLI::App app{"Shows, changes and converts profiles; converts HTML.", "prof"};
    app.allow_windows_style_options(false); // /Print/Copies is a path
    app.set_version_flag("--version", Version());
    app.footer(footer);
    app.require_subcommand(1);
    std::vector<std::string_view> names;
    for (const scCommand& command : commands) {
        CLI::App& declared = *app.add_subcommand(command.name, command.purpose);
        command.declare(declared, arguments);
        declared.add_flag("--quiet", arguments.quiet, "No messages: the exit code tells");
        names.emplace_back(command.name);
    }
    words = WithOptionsForWords(std::move(words), {"prof", "show", names});
    if (!ParseArguments(app, std::move(words), "Try 'prof --help' or 'prof COMMAND --help'."))
        return ExitCode::ok;
    if (arguments.quiet)
        SetStdHandle(STD_ERROR_HANDLE, nullptr);
    const std::string chosen = app.get_subcommands().front()->get_name();
    return std::find_if(std::begin(commands), std::end(commands),
                        [&](const scCommand& command) { return chosen == command.name; })
        ->run(arguments);
}

} // namespace tool::prof
