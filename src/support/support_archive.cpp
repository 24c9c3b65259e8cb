// The archive's class keeps what is whole and takes back what fails, so a file that cannot be read costs a
// line and nothing else. Only when the archive itself cannot be written its end fails, and with it the whole.
#include "support/support_archive.h"

#include "files/path_split.h"
#include "platform/exception.h"
#include "platform/letter_case.h"
#include "platform/long_path.h"
#include "platform/wide.h"
#include "runtime/crash/protection.h"
#include "runtime/crash/report_folder.h"
#include "runtime/output/settings.h"
#include "runtime/system_result.h"
#include "support/system_text.h"
#include "text/encoding/utf8.h"
#include "zip/zip_file.h"

#include <algorithm>
#include <bit>
#include <string>
#include <vector>
#include <windows.h>

namespace tvut {

namespace {

std::u16string_view WordsOf(UtilResult result) {
    switch (result) {
    case UtilResult::notFound:
        return u"not found";
    case UtilResult::noAccess:
        return u"no access";
    case UtilResult::tooLarge:
        return u"too large";
    default:
        return u"cannot be read";
    }
}

std::string Utf8(std::u16string_view text) {
    std::string bytes(text.size() * longestUtf8, '\0');
    bytes.resize(UtilpEncodeUtf8(text, bytes.data()));
    return bytes;
}

std::uint64_t Now() {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return std::bit_cast<std::uint64_t>(now);
}

bool IsThere(const std::u16string& path) {
    return GetFileAttributesW(PlatformLongPath(ToWide(path.c_str())).c_str()) != INVALID_FILE_ATTRIBUTES;
}

// "same.ini" as "same-2.ini".
std::u16string Numbered(std::u16string_view name, std::size_t number) {
    const std::size_t extensionAt = UtilpExtensionStart(name);
    std::u16string numbered(name.substr(0, extensionAt));
    numbered += u'-';
    for (const char digit : std::to_string(number))
        numbered += static_cast<char16_t>(digit);
    return numbered += name.substr(extensionAt);
}

class clsSupportArchive {
  public:
    explicit clsSupportArchive(std::u16string_view archive)
        : zip_(archive, ZipCompression::deflate, {}, nullptr) {}

    void AddText(std::string_view text, std::u16string_view name) {
        clsSpanSource source(text.data(), text.size());
        zip_.AppendStream(source, name, Now());
    }

    // Returns whether the file is in the archive now; else there is a line about it.
    bool Add(const std::u16string& path, const std::u16string& name) {
        const UtilResult result = zip_.Append(path, name);
        if (result != UtilResult::ok)
            missing_ += Utf8(path) + ": " + Utf8(WordsOf(result)) + "\r\n";
        return result == UtilResult::ok;
    }

    void AddReports() {
        const std::wstring path = UtilpReportFolder();
        if (path.empty())
            return;
        const std::u16string folder(FromWide(std::wstring_view(path)));
        for (const std::u16string& report : clsReportFolder(folder).Reports()) {
            for (const std::u16string_view ending : {u".txt", u".dmp"}) {
                const std::u16string name = report + std::u16string(ending);
                const std::u16string file = folder + u"\\" + name;
                if (IsThere(file) && Add(file, u"reports/" + name))
                    reports_.push_back(file);
            }
        }
    }

    void AddLog() {
        for (const std::wstring& name : UtilpReadOutputSettings().logFiles) {
            const std::u16string path(FromWide(std::wstring_view(name)));
            if (path.empty() || !IsThere(path))
                continue;
            Add(path, u"log/" + std::u16string(LastComponent(path)));
            return;
        }
    }

    void AddFiles(std::span<const std::u16string> files) {
        std::vector<std::u16string> taken;
        for (const std::u16string& path : files) {
            const auto isTaken = [&](std::u16string_view name) {
                return std::ranges::any_of(
                    taken, [&](const auto& other) { return PlatformCompareIgnoringCase(other, name) == 0; });
            };
            const std::u16string_view wanted = LastComponent(path);
            std::u16string name(wanted);
            for (std::size_t number = 2; isTaken(name); ++number)
                name = Numbered(wanted, number);
            if (Add(path, u"files/" + name))
                taken.push_back(name);
        }
    }

    UtilResult Finish() {
        if (!missing_.empty())
            AddText(missing_, u"missing.txt");
        return zip_.Close();
    }

    void RemoveReports() const {
        for (const std::u16string& report : reports_)
            DeleteFileW(PlatformLongPath(ToWide(report.c_str())).c_str());
    }

  private:
    static std::u16string_view LastComponent(std::u16string_view path) {
        while (path.ends_with(u'\\') || path.ends_with(u'/'))
            path.remove_suffix(1);
        return path.substr(path.find_last_of(u"\\/:") + 1); // nothing found: npos + 1 is 0
    }

    clsZIPFile zip_;
    std::vector<std::u16string> reports_; // paths of those in the archive
    std::string missing_;                 // lines
};

} // namespace

UtilResult UtilpWriteSupportArchive(std::u16string_view archive, std::span<const std::u16string> files,
                                    bool takesReports) try {
    clsSupportArchive support(archive);
    support.AddText(UtilpSystemText(), u"system.txt");
    support.AddReports();
    support.AddLog();
    support.AddFiles(files);
    const UtilResult result = support.Finish();
    if (result == UtilResult::ok && takesReports)
        support.RemoveReports();
    return result;
} catch (const clsException& error) {
    const UtilResult result = UtilpResultOfError(error.Reason());
    return result == UtilResult::notFound ? UtilResult::noAccess : result; // a folder that is not there
}

} // namespace tvut
