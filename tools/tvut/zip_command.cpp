// tvut zip: files and folders into a new archive, which is there whole or not at all.
#include "archive_call.h"
#include "command.h"
#include "entry_text.h"
#include "password.h"
#include "progress_line.h"
#include "system_reason.h"
#include "temporary.h"
#include "text_io.h"

#include <CLI/CLI.hpp>

#include <optional>

namespace tool::tvut {

namespace {

class clsZipCommand final : public IclsCommand {
  public:
    const char* Name() const override { return "zip"; }
    const char* Purpose() const override { return "Pack files and folders into an archive"; }

    void Declare(CLI::App& app) override {
        app.add_option("ARCHIVE", archive_, "The archive to make; - for standard output")->required();
        app.add_option("SOURCE", sources_, "A file, a folder with all below it, or files with * and ? in the "
                                           "name; - for standard input")
            ->required();
        app.add_option("--name", name_, "The name in the archive, for a single SOURCE");
        app.add_option("--in", folder_, "The folder of the archive to put everything into");
        app.add_flag("--store", store_, "Do not compress");
        DeclarePasswordFile(app, passwordFile_);
        app.add_flag("--json", json_, "Print each entry as a JSON object once it is packed");
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
        Pack(copy ? copy->Path() : toWide(archive_), options, log);
        if (copy)
            CopyToOutput(copy->Path());
        return ExitCode::ok;
    }

  private:
    void CheckWords() const {
        const bool readsInput = std::ranges::find(sources_, "-") != sources_.end();
        if (!name_.empty() && sources_.size() > 1)
            throw Failure{ExitCode::usage, "--name", "is for a single SOURCE"};
        if (readsInput && name_.empty())
            throw Failure{ExitCode::usage, "-", "standard input needs --name"};
        if (readsInput && passwordFile_ == "-")
            throw Failure{ExitCode::usage, "-", "standard input cannot be two things"};
        if (archive_ == "-" && json_)
            throw Failure{ExitCode::usage, "--json", "standard output cannot be two things"};
    }

    INT Show(const UtilZipEntry& entry) {
        if ((entry.flags & UTIL_ZIP_IS_QUESTION) != 0)
            return UTIL_ZIP_GO;
        progress_.Show(entry);
        if (json_ && entry.done == entry.bytes)
            Output::standard().writeLine(toUtf8(JsonLine(entry)));
        return UTIL_ZIP_GO;
    }

    void Pack(const std::wstring& path, clsArchiveOptions& options, const clsLibraryLog& log) {
        const UtilZip zip = UtilZIPCreate(path.c_str(), options.Get());
        if (!zip)
            throw Failure{ExitCode::cannotSave, archive_, systemReason(GetLastError())};
        for (const std::string& source : sources_) {
            const INT result = Append(zip, source);
            if (result == UTIL_OK)
                continue;
            UtilZIPClose(zip, FALSE);
            options.Rethrow();
            throw FailureOf(result, source, log);
        }
        const INT result = UtilZIPClose(zip, TRUE);
        if (result == UTIL_OK)
            return;
        Failure failure = FailureOf(result, archive_, log);
        failure.code = ExitCode::cannotSave;
        throw failure;
    }

    INT Append(UtilZip zip, const std::string& source) const {
        const std::wstring folder = toWide(folder_);
        const std::wstring name = (folder.empty() ? L"" : folder + L"/") + toWide(name_);
        if (source == "-")
            return AppendInput(zip, name);
        const std::wstring wide = toWide(source);
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
