// tvut download: a file from the web, which is there whole or as it was.
#include "archive_call.h"
#include "command.h"
#include "declaration.h"
#include "interrupt.h"
#include "json_object.h"
#include "progress_line.h"
#include "text_io.h"

#include <tvut22/download.h>

#include <algorithm>

namespace tool::tvut {

namespace {

constexpr struct {
    INT result;
    ExitCode code;
} exitCodes[] = {
    {UTIL_BAD_ARGUMENT, ExitCode::usage},    {UTIL_NO_ACCESS, ExitCode::cannotSave},
    {UTIL_CANCELLED, ExitCode::interrupted}, {UTIL_TOO_LARGE, ExitCode::malformed},
    {UTIL_UNSAFE, ExitCode::malformed},      {UTIL_SERVER_REFUSED, ExitCode::malformed},
    {UTIL_MISMATCH, ExitCode::malformed},    {UTIL_TIMEOUT, ExitCode::cannotOpen},
    {UTIL_FAILED, ExitCode::cannotOpen},
};

// The codes of the service that users meet, in words.
constexpr struct {
    std::string_view code, words;
} serviceReasons[] = {
    {"0x800c0004", "server closed the connection"},  {"0x800c0005", "server not found or not reached"},
    {"0x800c0007", "server sent nothing"},           {"0x800c0008", "server not found or not reached"},
    {"0x800c000b", "server did not answer in time"},
};

std::string ReasonOf(const clsLibraryLog& log) {
    const std::vector<std::string> lines = log.Reports();
    const auto line = std::ranges::find_if(
        lines, [](const std::string& text) { return text.starts_with("ERR: UtilDownloadFile("); });
    if (line == lines.end())
        return "failed";
    constexpr std::string_view mark = "'): ";
    std::string reason = line->substr(line->find(mark) + mark.size());
    if (reason.starts_with("cannot be written"))
        return ReasonIn(*line, mark); // with the system's words
    const auto* const known = std::ranges::find(serviceReasons, reason, [](auto& row) { return row.code; });
    return known == std::end(serviceReasons) ? reason : std::string(known->words);
}

class clsDownloadCommand final : public IclsCommand {
  public:
    const char* Name() const override { return "download"; }
    const char* Purpose() const override { return "Fetch a file over http or https"; }
    std::string Footer() const override {
        return "FILE is made or replaced once all of it is there; whatever fails leaves it as it was.\n";
    }

    void Declare(clsDeclaration& arguments) override {
        arguments.Text("URL", url_, "The address, http://... or https://...").Required();
        arguments.Text("FILE", file_, "The file to make or replace").Required();
        arguments.Text("--sha256", sha256_, "The checksum that the file must have, 64 hexadecimal digits");
        arguments.Flag("--https-only", httpsOnly_, "Refuse http, also where the server leads");
        arguments.Flag("--json", json_, "Print what came of it as a JSON object");
    }

    ExitCode Run() override {
        const clsLibraryLog log;
        const std::wstring sha256 = ToWide(sha256_);
        UtilDownloadOptions options{};
        options.size = sizeof options;
        options.flags = httpsOnly_ ? UTIL_DOWNLOAD_HTTPS_ONLY : 0;
        options.sha256 = sha256.c_str();
        options.callback = Call;
        options.user = reinterpret_cast<UINT_PTR>(this);
        if (!sha256_.empty() && !IsChecksum())
            throw scFailure{ExitCode::usage, "--sha256", "must be 64 hexadecimal digits"};
        const INT result = UtilDownloadFile(ToWide(url_).c_str(), ToWide(file_).c_str(), &options);
        const std::string reason = result == UTIL_OK ? std::string() : ReasonOf(log);
        if (json_)
            PrintJson(options.status, reason);
        if (result != UTIL_OK)
            throw scFailure{CodeOf(result, reason), SubjectOf(result, reason), reason};
        return ExitCode::ok;
    }

  private:
    bool IsChecksum() const {
        return sha256_.size() == 64 &&
               sha256_.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
    }

    static ExitCode CodeOf(INT result, const std::string& reason) {
        if (reason.starts_with("cannot be written"))
            return ExitCode::cannotSave;
        if (reason.ends_with(" bytes")) // too many, or not all that were announced
            return ExitCode::malformed;
        const auto* const row =
            std::ranges::find(exitCodes, result, [](auto& known) { return known.result; });
        return row == std::end(exitCodes) ? ExitCode::cannotOpen : row->code;
    }

    // Without what may be secret in an address.
    std::string SubjectOf(INT result, const std::string& reason) const {
        if (result == UTIL_NO_ACCESS || reason == "no file name" || reason.starts_with("cannot be written"))
            return file_;
        if (result == UTIL_BAD_ARGUMENT)
            return "URL";
        return url_.substr(0, url_.find_first_of("?#"));
    }

    void PrintJson(UINT status, const std::string& reason) const {
        clsJsonObject json;
        json.AddText(L"url", ToWide(url_));
        json.AddText(L"file", ToWide(file_));
        json.AddNumber(L"status", status);
        json.AddNumber(L"bytes", done_);
        if (!reason.empty())
            json.AddText(L"error", ToWide(reason));
        clsOutput::Standard().WriteLine(ToUtf8(std::move(json).Close()));
    }

    static BOOL TVUT22_CALL Call(ULONGLONG done, ULONGLONG total, UINT_PTR user) {
        auto& self = *reinterpret_cast<clsDownloadCommand*>(user);
        self.done_ = done;
        self.progress_.Show(ToWide(self.file_), done, total);
        return !IsInterrupted();
    }

    std::string url_, file_, sha256_;
    bool httpsOnly_ = false, json_ = false;
    ULONGLONG done_ = 0;
    clsProgressLine progress_;
};

} // namespace

std::unique_ptr<IclsCommand> MakeDownloadCommand() {
    return std::make_unique<clsDownloadCommand>();
}

} // namespace tool::tvut
