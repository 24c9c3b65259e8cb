// tvut unzip: an archive into a folder, into standard output, or nowhere, to see whether it is sound.
#include "archive_call.h"
#include "archive_input.h"
#include "command.h"
#include "declaration.h"
#include "entry_pattern.h"
#include "entry_text.h"
#include "password.h"
#include "progress_line.h"
#include "text_io.h"

#include <cstdint>
#include <map>

namespace tool::tvut {

namespace {

// An entry that is wanted, as it was asked about.
struct scWanted {
    UtilZipEntry entry;
    std::wstring name, target;
    bool isDone = false;

    explicit scWanted(const UtilZipEntry& shown)
        : entry(shown), name(shown.name), target(shown.target ? shown.target : L"") {}

    // What the callback was shown, again.
    UtilZipEntry Shown() const {
        UtilZipEntry shown = entry;
        shown.name = name.c_str();
        shown.target = target.empty() ? nullptr : target.c_str();
        return shown;
    }
    bool Is(UINT flag) const { return (entry.flags & flag) != 0; }
};

std::string InWords(const std::string& reason) {
    return reason.starts_with("method ") ? "compressed by " + reason + ", which is not read" : reason;
}

bool IsThere(const wchar_t* path) {
    return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

class clsUnzipCommand final : public IclsCommand {
  public:
    const char* Name() const override { return "unzip"; }
    const char* Purpose() const override { return "Unpack or test an archive"; }
    std::string Footer() const override { return patternHelp; }

    void Declare(clsDeclaration& arguments) override {
        arguments.Text("ARCHIVE", archive_, "The archive; - for standard input").Required();
        arguments.Texts("PATTERN", patterns_, "Entries to unpack; without any, all of them");
        arguments
            .Text("--to", folder_,
                  "Where to unpack, made when it is missing; - for "
                  "standard output, one file after the other. Without it, here")
            .TypeName("FOLDER");
        arguments.Flag("--test", test_, "Write nothing: only look whether everything could be unpacked")
            .Excludes("--to");
        arguments.Flag("--keep", keep_, "Leave files alone that are there");
        arguments.Size("--limit", limit_, "Bytes that may be unpacked in all, else 4 GiB; like 100MB");
        DeclarePasswordFile(arguments, passwordFile_);
        arguments.Flag("--json", json_, "Print each entry as a JSON object once it is unpacked");
    }

    ExitCode Run() override {
        if (folder_ == "-" && json_)
            throw scFailure{ExitCode::usage, "--json", "standard output cannot be two things"};
        if (archive_ == "-" && passwordFile_ == "-")
            throw scFailure{ExitCode::usage, "-", "standard input cannot be two things"};
        if (const DWORD there = GetFileAttributesW(ToWide(folder_).c_str());
            folder_ != "-" && there != INVALID_FILE_ATTRIBUTES && (there & FILE_ATTRIBUTE_DIRECTORY) == 0)
            throw scFailure{ExitCode::cannotSave, folder_, "is no folder"};
        const clsLibraryLog log;
        const std::wstring password = PasswordFrom(passwordFile_);
        hasPassword_ = !password.empty();
        const clsArchiveInput archive(archive_);
        std::optional<clsTemporary> passage;
        if (folder_ == "-")
            passage.emplace(clsTemporary::Kind::folder);
        Unpack(archive, passage ? passage->Path() : ToWide(folder_), password, log);
        if (passage)
            PassOn();
        if (test_ && !json_)
            PrintGood(archive.Subject());
        return ExitCode::ok;
    }

  private:
    void Unpack(const clsArchiveInput& archive, const std::wstring& folder, const std::wstring& password,
                const clsLibraryLog& log) {
        clsEntryPatterns patterns(patterns_);
        clsArchiveOptions options(
            keep_ ? UTIL_ZIP_KEEP_EXISTING : 0, password, [&](const UtilZipEntry& entry) {
                return (entry.flags & UTIL_ZIP_IS_QUESTION) != 0 ? Choose(entry, patterns) : Show(entry);
            });
        options.Get()->limit = limit_;
        const INT result =
            UtilExtractZip(archive.Path().c_str(), test_ ? nullptr : folder.c_str(), options.Get());
        options.Rethrow();
        if (result != UTIL_OK)
            Fail(result, archive, log);
        if (const std::wstring* const unused = patterns.FirstUnused())
            throw scFailure{ExitCode::notFound, archive.Subject(), "no entry matches " + ToUtf8(*unused)};
    }

    INT Choose(const UtilZipEntry& entry, clsEntryPatterns& patterns) {
        if (!patterns.Match(entry.name))
            return UTIL_ZIP_SKIP;
        const bool isFolder = (entry.flags & UTIL_ZIP_IS_FOLDER) != 0;
        if (keep_ && entry.target && !isFolder && IsThere(entry.target))
            return UTIL_ZIP_SKIP;
        if ((entry.flags & UTIL_ZIP_IS_ENCRYPTED) != 0 && !hasPassword_)
            throw scFailure{ExitCode::wrongType, archive_,
                            "is enciphered: --password-file names the password's file"};
        wanted_.emplace(entry.index, entry);
        return UTIL_ZIP_GO;
    }

    INT Show(const UtilZipEntry& entry) {
        progress_.Show(entry);
        if (entry.done != entry.bytes)
            return UTIL_ZIP_GO;
        scWanted& wanted = wanted_.at(entry.index);
        wanted.isDone = true;
        if (json_)
            clsOutput::Standard().WriteLine(ToUtf8(JsonLine(entry)));
        else if (wanted.Is(UTIL_ZIP_IS_RENAMED) && entry.target && folder_ != "-")
            Say(wanted.name, "unpacked as " + Printable(wanted.target));
        return UTIL_ZIP_GO;
    }

    // The library's lines about entries stand in the order in which these failed.
    [[noreturn]] void Fail(INT result, const clsArchiveInput& archive, const clsLibraryLog& log) {
        std::vector<std::string> reasons;
        for (const std::string& line : log.Reports()) {
            if (line.starts_with("ERR: UtilExtractZip(") && line.find("')['") != std::string::npos)
                reasons.push_back(InWords(ReasonIn(line, "']: ")));
        }
        if (reasons.empty()) {
            scFailure failure = FailureOf(result, archive.Subject(), log);
            if (failure.code == ExitCode::cannotSave)
                failure.subject = folder_;
            throw failure;
        }
        std::size_t failed = 0;
        for (const auto& [index, wanted] : wanted_) {
            if (wanted.isDone || failed == reasons.size())
                continue;
            const std::string& reason = reasons[failed++];
            if (json_)
                clsOutput::Standard().WriteLine(ToUtf8(JsonLine(wanted.Shown(), ToWide(reason))));
            else
                Say(wanted.name, reason);
        }
        throw scFailure{result == UTIL_NO_ACCESS ? ExitCode::cannotSave : ExitCodeOf(result),
                        archive.Subject(),
                        std::to_string(failed) + " of " + std::to_string(wanted_.size()) +
                            " entries could not be unpacked"};
    }

    // The files in the archive's order; others may have made the same folder, but not the same archive.
    void PassOn() const {
        for (const auto& [index, wanted] : wanted_) {
            if (!wanted.Is(UTIL_ZIP_IS_FOLDER))
                CopyToOutput(wanted.target);
        }
    }

    void PrintGood(const std::string& archive) const {
        std::uint64_t bytes = 0;
        for (const auto& [index, wanted] : wanted_)
            bytes += wanted.entry.bytes;
        clsOutput::Standard().WriteLine(archive + ": good, entries: " + std::to_string(wanted_.size()) +
                                        ", bytes: " + std::to_string(bytes));
    }

    static std::string Printable(const std::wstring& text) {
        std::string printable;
        AppendEscaped(printable, text);
        return printable;
    }
    static void Say(const std::wstring& name, const std::string& what) {
        PrintError("tvut", Printable(name), what);
    }

    std::string archive_, folder_ = ".", passwordFile_;
    std::vector<std::string> patterns_;
    std::uint64_t limit_ = 0;
    bool test_ = false, keep_ = false, json_ = false, hasPassword_ = false;
    std::map<UINT, scWanted> wanted_; // by their index
    clsProgressLine progress_;
};

} // namespace

std::unique_ptr<IclsCommand> MakeUnzipCommand() {
    return std::make_unique<clsUnzipCommand>();
}

} // namespace tool::tvut
