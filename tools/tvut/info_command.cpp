// tvut info: the properties of documents.
#include "archive_input.h"
#include "command.h"
#include "declaration.h"
#include "found_paths.h"
#include "json_object.h"
#include "system_reason.h"
#include "text_io.h"

#include <tvut22/tvut22.hpp>

#include <oleauto.h>

#include <algorithm>

namespace tool::tvut {

namespace {

struct scProperty {
    std::wstring name, value;
};

// A property's text; empty when it is not there.
std::wstring ValueOf(const tvut22::document_info& info, const wchar_t* name) {
    BSTR text = nullptr;
    const INT result = UtilDocInfoGet(info.get(), name, &text);
    const std::wstring value = text ? std::wstring(text, SysStringLen(text)) : std::wstring();
    SysFreeString(text);
    if (result != UTIL_OK && result != UTIL_NOT_FOUND)
        throw std::bad_alloc();
    return value;
}

std::vector<scProperty> PropertiesOf(const tvut22::document_info& info) {
    std::vector<scProperty> properties;
    const std::wstring names = ValueOf(info, nullptr);
    for (std::size_t at = 0; at < names.size();) {
        const std::size_t end = std::min(names.find(L'\n', at), names.size());
        std::wstring name = names.substr(at, end - at);
        std::wstring value = ValueOf(info, name.c_str());
        properties.push_back({std::move(name), std::move(value)});
        at = end + 1;
    }
    return properties;
}

class clsInfoCommand final : public IclsCommand {
  public:
    const char* Name() const override { return "info"; }
    const char* Purpose() const override { return "Print the properties of documents"; }
    std::string Footer() const override {
        return "Formats: HTML, Office documents old and new, OpenDocument, PDF, RTF, TIFF, mail. Files\n"
               "that * or ? match are passed over where they are none of these.\n";
    }

    void Declare(clsDeclaration& arguments) override {
        arguments.Texts("FILE", files_, "Documents, * and ? in their names; - for standard input").Required();
        arguments.Text("--property", property_, "Print the value of this property alone");
        arguments.Flag("--json", json_, "Print each document as a JSON object");
    }

    ExitCode Run() override {
        for (const std::string& file : files_) {
            const std::optional<std::vector<std::string>> found = FoundPaths(file);
            several_ = several_ || found || files_.size() > 1;
            for (const std::string& path : found.value_or(std::vector<std::string>{file}))
                PrintOne(path, found.has_value());
            if (found && found->empty())
                Fail({ExitCode::notFound, file, "no file matches"});
        }
        return code_;
    }

  private:
    // What fails keeps nobody from seeing the others.
    void PrintOne(const std::string& file, bool isMatch) {
        try {
            const clsArchiveInput input(file);
            const tvut22::document_info info(UtilDocInfoOpen(input.Path().c_str()));
            const DWORD error = GetLastError();
            if (info)
                Print(input.Subject(), info);
            else if (error != ERROR_BAD_FORMAT)
                throw scFailure{ExitCode::cannotOpen, input.Subject(), SystemReason(error)};
            else if (!isMatch)
                throw scFailure{ExitCode::malformed, input.Subject(), "not a document of a known format"};
        } catch (const scFailure& failure) {
            if (failure.code == ExitCode::cannotSave)
                throw;
            Fail(failure);
        }
    }

    void Fail(const scFailure& failure) {
        clsOutput::Standard().Flush();
        PrintError("tvut", failure.subject, failure.reason);
        code_ = code_ == ExitCode::ok ? failure.code : code_;
    }

    void Print(const std::string& file, const tvut22::document_info& info) {
        std::vector<scProperty> properties;
        if (property_.empty())
            properties = PropertiesOf(info);
        else if (std::wstring value = ValueOf(info, ToWide(property_).c_str()); !value.empty())
            properties.push_back({ToWide(property_), std::move(value)});
        if (json_)
            return PrintJson(file, properties);
        if (properties.empty())
            code_ = code_ == ExitCode::ok ? ExitCode::notFound : code_;
        else if (property_.empty())
            PrintAll(file, properties);
        else
            PrintLine(several_ ? file + ": " : std::string(), properties.front().value);
    }

    static void PrintJson(const std::string& file, const std::vector<scProperty>& properties) {
        clsJsonObject json;
        json.AddText(L"file", ToWide(file));
        for (const scProperty& property : properties)
            json.AddText(property.name, property.value);
        clsOutput::Standard().WriteLine(ToUtf8(std::move(json).Close()));
    }

    void PrintAll(const std::string& file, const std::vector<scProperty>& properties) {
        constexpr std::size_t longestName = 24;
        std::size_t width = 0;
        for (const scProperty& property : properties)
            width = std::max(width, std::min(property.name.size(), longestName));
        if (several_)
            PrintLine(isFirst_ ? "" : "\n", ToWide(file));
        isFirst_ = false;
        for (const scProperty& property : properties) {
            std::string line = several_ ? "  " : "";
            AppendEscaped(line, property.name);
            line.append(width - std::min(width, property.name.size()), ' ');
            PrintLine(line + "  ", property.value);
        }
    }

    static void PrintLine(std::string line, std::wstring_view value) {
        AppendEscaped(line, value);
        clsOutput::Standard().WriteLine(line);
    }

    std::vector<std::string> files_;
    std::string property_;
    bool json_ = false;
    bool several_ = false, isFirst_ = true;
    ExitCode code_ = ExitCode::ok;
};

} // namespace

std::unique_ptr<IclsCommand> MakeInfoCommand() {
    return std::make_unique<clsInfoCommand>();
}

} // namespace tool::tvut
