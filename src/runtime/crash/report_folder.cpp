// The folder may be any that the program names, with others' files in it. So a file counts as a report only
// when its name is the host's with a time and a process number, and nothing else is ever listed or removed.
// The time comes first in it, so names in reverse order are the newest first. Whether the folder can be
// written in is found out by a file that goes with its handle.
#include "runtime/crash/report_folder.h"

#include "platform/exception.h"
#include "platform/file_finder.h"
#include "platform/host.h"
#include "platform/known_folders.h"
#include "platform/long_path.h"
#include "platform/owned.h"
#include "platform/wide.h"
#include "runtime/diagnostics.h"

#include <algorithm>
#include <functional>
#include <windows.h>

namespace tvut {

namespace {

constexpr std::u16string_view endings[] = {u".txt", u".dmp", u".dmp.part"};

bool IsDigit(char16_t unit) noexcept {
    return unit >= u'0' && unit <= u'9';
}

// "-20261121-221005-1234", and perhaps "-2" after it.
bool IsOwnTail(std::u16string_view tail) noexcept {
    constexpr std::u16string_view pattern = u"-00000000-000000-";
    if (tail.size() <= pattern.size() || !IsDigit(tail[pattern.size()]))
        return false;
    for (std::size_t i = 0; i < pattern.size(); ++i)
        if (pattern[i] == u'-' ? tail[i] != u'-' : !IsDigit(tail[i]))
            return false;
    return std::ranges::all_of(tail.substr(pattern.size()),
                               [](char16_t unit) { return IsDigit(unit) || unit == u'-'; });
}

// A name of ours without this ending; empty when it is none.
std::u16string_view OwnName(std::u16string_view file, std::u16string_view ending) noexcept {
    const std::u16string_view host = PlatformHostTag();
    if (!file.starts_with(host) || !file.ends_with(ending))
        return {};
    const std::u16string_view name = file.substr(0, file.size() - ending.size());
    return IsOwnTail(name.substr(host.size())) ? name : std::u16string_view();
}

// The names with this ending, the newest first: they begin with their time.
std::vector<std::u16string> OwnNames(const std::wstring& folder, std::u16string_view ending) {
    std::vector<std::u16string> names;
    const std::wstring path = PlatformLongPath(folder);
    for (const std::u16string& file : PlatformFindFiles(std::u16string(FromWide(std::wstring_view(path))) +
                                                        u"\\*" + std::u16string(ending)))
        if (const std::u16string_view name = OwnName(file, ending); !name.empty())
            names.emplace_back(name);
    std::ranges::sort(names, std::greater());
    return names;
}

void MakeFolders(const std::wstring& path) {
    if (CreateDirectoryW(PlatformLongPath(path).c_str(), nullptr) || GetLastError() != ERROR_PATH_NOT_FOUND)
        return;
    for (std::size_t end = path.find(L'\\', 3); end != std::wstring::npos; end = path.find(L'\\', end + 1))
        CreateDirectoryW(PlatformLongPath(path.substr(0, end)).c_str(), nullptr);
    CreateDirectoryW(PlatformLongPath(path).c_str(), nullptr);
}

} // namespace

clsReportFolder::clsReportFolder(std::u16string_view folder) {
    std::u16string wanted(folder);
    if (wanted.empty())
        wanted = clsKnownFolders().Folder(KnownFolder::localAppData) + u"\\" +
                 std::u16string(PlatformHostTag()) + u"\\Reports";
    path_ = PlatformFullPath(ToWide(wanted.c_str()));
    while (path_.size() > 3 && path_.ends_with(L'\\'))
        path_.pop_back();
}

bool clsReportFolder::Make() const {
    if (path_.empty())
        return false;
    MakeFolders(path_);
    // Of this process alone: others may make theirs at the same moment.
    clsDiagnosticLine name;
    name.Put(u"\\").PutHex(GetCurrentProcessId(), 8).Put(u".trial");
    std::wstring trial = path_;
    for (const char16_t unit : name.View())
        trial += static_cast<wchar_t>(unit);
    const clsFileHandle file(CreateFileW(PlatformLongPath(trial).c_str(), GENERIC_WRITE | DELETE, 0, nullptr,
                                         CREATE_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    return static_cast<bool>(file);
}

std::vector<std::u16string> clsReportFolder::Reports() const {
    return OwnNames(path_, endings[0]);
}

void clsReportFolder::Keep(std::size_t newest) const {
    const std::vector<std::u16string> names = Reports();
    for (std::size_t i = newest; i < names.size(); ++i)
        for (const std::u16string_view ending : endings) {
            const std::u16string file = names[i] + std::u16string(ending);
            DeleteFileW(PlatformLongPath(path_ + L"\\" + ToWide(file.c_str())).c_str());
        }
}

} // namespace tvut
