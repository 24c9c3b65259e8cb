// tvut zip: files and folders into a new archive, which is there whole or not at all.
#include "archive_call.h"
#include "command.h"
#include "declaration.h"
#include "entry_text.h"
#include "interrupt.h"
#include "password.h"
#include "progress_line.h"
#include "system_reason.h"
#include "temporary.h"
#include "text_io.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace tool::tvut {

namespace {

struct scGiveUp {
    void operator()(UtilZip zip) const { UtilZIPClose(zip, FALSE); }
};
using OwnedZip = std::unique_ptr<UtilZipObject, scGiveUp>;

class clsZipCommand final : public IclsCommand {
  public:
    const char* Name() const override { return "zip"; }
    const char* Purpose() const override { return "Pack files and folders into an archive"; }

    void Declare(clsDeclaration& arguments) override {
        arguments.Text("ARCHIVE", archive_, "The archive to make; - for standard output").Required();
        arguments
            .Texts("SOURCE", sources_,
                   "A file, a folder with all below it, or files with * and ? in the "
                   "name; - for standard input")
            .Required();
        arguments.Text("--name", name_, "The name in the archive, for a single SOURCE");
        arguments.Text("--in", folder_, "The folder of the archive to put everything into");
        arguments.Flag("--store", store_, "Do not compress");
        DeclarePasswordFile(arguments, passwordFile_);
        arguments.Flag("--json", json_, "Print each entry as a JSON object once it is packed");
    }

    ExitCode Run() override {
        CheckWords();
        const clsLibraryLog log;
        const std::wstring password = PasswordFrom(passwordFile_);
        std::optional<clsTemporary> copy;
        if (archive_ == "-")
            copy.emplace(clsTemporary::Kind::file);
        clsArchiveOptions options(store_ ? UTIL_ZIP_STORE : 0, password,
                                  [this](const UtilZipEntry& entry) { return Show(entry); });
        Pack(copy ? copy->Path() : ToWide(archive_), options, log);
        if (copy)
            CopyToOutput(copy->Path());
        return ExitCode::ok;
    }

  private:
    void CheckWords() const {
        const bool readsInput = std::ranges::find(sources_, "-") != sources_.end();
        if (archive_.empty() || std::ranges::find(sources_, "") != sources_.end())
            throw scFailure{ExitCode::usage, "ARCHIVE, SOURCE", "must not be empty"};
        if (const DWORD there = GetFileAttributesW(ToWide(archive_).c_str());
            there != INVALID_FILE_ATTRIBUTES && (there & FILE_ATTRIBUTE_DIRECTORY) != 0)
            throw scFailure{ExitCode::cannotSave, archive_, "is a folder"};
        if (!name_.empty() && sources_.size() > 1)
            throw scFailure{ExitCode::usage, "--name", "is for a single SOURCE"};
        if (readsInput && name_.empty())
            throw scFailure{ExitCode::usage, "-", "standard input needs --name"};
        if (readsInput && passwordFile_ == "-")
            throw scFailure{ExitCode::usage, "-", "standard input cannot be two things"};
        if (archive_ == "-" && json_)
            throw scFailure{ExitCode::usage, "--json", "standard output cannot be two things"};
    }

    INT Show(const UtilZipEntry& entry) {
        if ((entry.flags & UTIL_ZIP_IS_QUESTION) != 0)
            return UTIL_ZIP_GO;
        progress_.Show(entry);
        if (json_ && entry.done == entry.bytes)
            clsOutput::Standard().WriteLine(ToUtf8(JsonLine(entry)));
        return UTIL_ZIP_GO;
    }

    void Pack(const std::wstring& path, clsArchiveOptions& options, const clsLibraryLog& log) {
        OwnedZip zip{UtilZIPCreate(path.c_str(), options.Get())};
        if (!zip)
            throw scFailure{ExitCode::cannotSave, archive_, SystemReason(GetLastError())};
        for (const std::string& source : sources_) {
            const INT result = Append(zip.get(), source);
            if (result == UTIL_OK)
                continue;
            options.Rethrow();
            scFailure failure = FailureOf(result, source, log);
            failure.subject = Subject(source, failure.subject);
            throw scFailure(std::move(failure));
        }
        TellPassedOver(log);
        StopIfInterrupted();
        const INT result = UtilZIPClose(zip.release(), TRUE);
        if (result == UTIL_OK)
            return;
        scFailure failure = FailureOf(result, archive_, log);
        failure.code = ExitCode::cannotSave;
        throw scFailure(std::move(failure));
    }

    // The source as it was typed, or the file below it that failed.
    static std::string Subject(const std::string& source, const std::string& file) {
        std::string typed = source.substr(source.starts_with("./") || source.starts_with(".\\") ? 2 : 0);
        std::ranges::replace(typed, '/', '\\');
        if (source == "-")
            return "standard input";
        return file.ends_with(typed) ? source : file;
    }

    static void TellPassedOver(const clsLibraryLog& log) {
        for (const std::string& line : log.Reports()) {
            if (line.starts_with("WRN: clsZIPFile("))
                PrintError("tvut", PackedFileIn(line), ReasonIn(line, "'): "));
        }
    }

    INT Append(UtilZip zip, const std::string& source) const {
        const std::wstring folder = ToWide(folder_);
        const std::wstring name = (folder.empty() ? L"" : folder + L"/") + ToWide(name_);
        if (source == "-")
            return AppendInput(zip, name);
        const std::wstring wide = ToWide(source);
        if (!name_.empty())
            return UtilZIPAppend(zip, wide.c_str(), name.c_str());
        const wchar_t* const list[] = {wide.c_str()};
        return UtilZIPAppendList(zip, list, 1, folder.c_str());
    }

    static INT AppendInput(UtilZip zip, const std::wstring& name) {
        const clsTemporary copy(clsTemporary::Kind::file);
        CopyInputTo(copy.Path());
        return UtilZIPAppend(zip, copy.Path().c_str(), name.c_str());
    }

    std::string archive_, name_, folder_, passwordFile_;
    std::vector<std::string> sources_;
    bool store_ = false, json_ = false;
    clsProgressLine progress_;
};

} // namespace

std::unique_ptr<IclsCommand> MakeZipCommand() {
    return std::make_unique<clsZipCommand>();
}

} // namespace tool::tvut
