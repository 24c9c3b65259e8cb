// tvut: a command line tool on the public interface of the families after the profile store.
#include "command.h"
#include "command_words.h"
#include "declaration.h"
#include "interrupt.h"
#include "parse_arguments.h"
#include "program.h"

#include <tvut22/prof.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <vector>

namespace {

using tool::ExitCode;

constexpr const char* exitCodes =
    "Exit codes: 0 done, 1 not found, 2 wrong usage, 3 cannot open, 4 damaged or refused contents,\n"
    "            5 cannot save or write, 6 password missing or wrong, 7 out of memory, 8 interrupted.\n";

std::string Version() {
    return "tvut " + std::to_string(ProfGetVersion(1)) + "." + std::to_string(ProfGetVersion(2));
}

ExitCode Run(std::vector<std::string> words) {
    std::vector<std::unique_ptr<tool::tvut::IclsCommand>> commands;
    for (const auto make :
         {tool::tvut::MakeZipCommand, tool::tvut::MakeUnzipCommand, tool::tvut::MakeListCommand,
          tool::tvut::MakeInfoCommand, tool::tvut::MakeDownloadCommand})
        commands.push_back(make());
    CLI::App app{"Packs, unpacks and lists ZIP archives; prints the properties of documents; fetches files.",
                 "tvut"};
    app.allow_windows_style_options(false); // paths of other systems begin with a slash
    app.set_version_flag("--version", Version());
    app.footer(exitCodes);
    app.require_subcommand(1);
    std::vector<std::string_view> names;
    for (const auto& command : commands) {
        CLI::App& declared = *app.add_subcommand(command->Name(), command->Purpose());
        declared.footer(command->Footer() + std::string{exitCodes});
        tool::tvut::clsDeclaration arguments(declared);
        command->Declare(arguments);
        names.emplace_back(command->Name());
    }
    words = tool::WithOptionsForWords(std::move(words), {"tvut", "list", names});
    if (!tool::ParseArguments(app, std::move(words), "Try 'tvut --help' or 'tvut COMMAND --help'."))
        return ExitCode::ok;
    const std::string chosen = app.get_subcommands().front()->get_name();
    return (*std::ranges::find_if(commands, [&](const auto& command) { return chosen == command->Name(); }))
        ->Run();
}

} // namespace

int main() {
    tool::tvut::WatchForInterrupt();
    return tool::RunProgram("tvut", Run);
}
