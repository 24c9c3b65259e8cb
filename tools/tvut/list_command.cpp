// tvut list: what is in an archive.
#include "archive_call.h"
#include "archive_input.h"
#include "command.h"
#include "entry_pattern.h"
#include "entry_text.h"
#include "text_io.h"

#include <CLI/CLI.hpp>

#include <cstdint>

namespace tool::tvut {

namespace {

constexpr std::size_t numberWidth = 12;

std::wstring Right(std::uint64_t number) {
    const std::wstring text = std::to_wstring(number);
    return std::wstring(numberWidth - std::min(numberWidth, text.size()), L' ') + text;
}

class clsListCommand final : public IclsCommand {
  public:
    const char* Name() const override { return "list"; }
    const char* Purpose() const override { return "Print what is in an archive"; }

    void Declare(CLI::App& app) override {
        app.add_option("ARCHIVE", archive_, "The archive; - for standard input")->required();
        app.add_option("PATTERN", patterns_, "Entries to print; without any, all of them");
        app.add_flag("--json", json_, "Print each entry as a JSON object");
    }

    ExitCode Run() override {
        const clsLibraryLog log;
        const clsArchiveInput archive(archive_);
        clsEntryPatterns patterns(patterns_);
        clsArchiveOptions options(0, {}, [&](const UtilZipEntry& entry) {
            if (patterns.Match(entry.name))
                Print(entry);
            return UTIL_ZIP_SKIP;
        });
        const INT result = UtilExtractZip(archive.Path().c_str(), nullptr, options.Get());
        options.Rethrow();
        if (result != UTIL_OK)
            throw FailureOf(result, archive.Subject(), log);
        if (const std::wstring* const unused = patterns.FirstUnused())
            throw Failure{ExitCode::notFound, archive.Subject(), "no entry matches " + toUtf8(*unused)};
        if (!json_)
            PrintSums();
        return ExitCode::ok;
    }

  private:
    void Print(const UtilZipEntry& entry) {
        if (json_)
            return Output::standard().writeLine(toUtf8(JsonLine(entry)));
        const bool isEncrypted = (entry.flags & UTIL_ZIP_IS_ENCRYPTED) != 0;
        std::wstring time = LocalTimeText(entry.modified);
        time.resize(19, L' ');
        std::string line = toUtf8(Right(entry.bytes) + L" " + Right(entry.packed) + L"  " + time +
                                  (isEncrypted ? L" * " : L"   "));
        appendEscaped(line, entry.name);
        Output::standard().writeLine(line);
        ++count_;
        bytes_ += entry.bytes;
        packed_ += entry.packed;
    }

    void PrintSums() const {
        Output::standard().writeLine(toUtf8(Right(bytes_) + L" " + Right(packed_) + L"  in " +
                                            std::to_wstring(count_) + (count_ == 1 ? L" entry" : L" entries")));
    }

    std::string archive_;
    std::vector<std::string> patterns_;
    bool json_ = false;
    std::uint64_t count_ = 0, bytes_ = 0, packed_ = 0;
};

} // namespace

std::unique_ptr<IclsCommand> MakeListCommand() {
    return std::make_unique<clsListCommand>();
}

} // namespace tool::tvut
