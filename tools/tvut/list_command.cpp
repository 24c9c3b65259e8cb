// tvut list: what is in an archive.
#include "archive_call.h"
#include "archive_input.h"
#include "command.h"
#include "declaration.h"
#include "entry_pattern.h"
#include "entry_text.h"
#include "text_io.h"

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
    std::string Footer() const override {
        return patternHelp +
               std::string{"Before a name, * marks an entry that is enciphered, @ a symbolic link.\n"};
    }

    void Declare(clsDeclaration& arguments) override {
        arguments.Text("ARCHIVE", archive_, "The archive; - for standard input").Required();
        arguments.Texts("PATTERN", patterns_, "Entries to print; without any, all of them");
        arguments.Flag("--json", json_, "Print each entry as a JSON object");
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
            throw scFailure{ExitCode::notFound, archive.Subject(), "no entry matches " + ToUtf8(*unused)};
        if (!json_)
            PrintSums();
        return ExitCode::ok;
    }

  private:
    void Print(const UtilZipEntry& entry) {
        if (json_)
            return clsOutput::Standard().WriteLine(ToUtf8(JsonLine(entry)));
        if (count_ == 0)
            clsOutput::Standard().WriteLine("       Bytes       Packed  Modified               Name");
        std::wstring time = LocalTimeText(entry.modified);
        time.resize(19, L' ');
        std::string line = ToUtf8(Right(entry.bytes) + L" " + Right(entry.packed) + L"  " + time + L" " +
                                  Mark(entry) + L" ");
        AppendEscaped(line, entry.name);
        clsOutput::Standard().WriteLine(line);
        ++count_;
        bytes_ += entry.bytes;
        packed_ += entry.packed;
    }

    static wchar_t Mark(const UtilZipEntry& entry) {
        if ((entry.flags & UTIL_ZIP_IS_LINK) != 0)
            return L'@';
        return (entry.flags & UTIL_ZIP_IS_ENCRYPTED) != 0 ? L'*' : L' ';
    }

    void PrintSums() const {
        clsOutput::Standard().WriteLine(ToUtf8(Right(bytes_) + L" " + Right(packed_) + L"  in " +
                                               std::to_wstring(count_) +
                                               (count_ == 1 ? L" entry" : L" entries")));
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
