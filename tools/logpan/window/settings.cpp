// The library's own profile store in a few calls:
//
//     [/]
//     {
//       Theme=dark
//       Window=10,20,1210,720
//       [Columns]
//       {
//         Time=116
//       }
//       [Filters]
//       {
//         1=errors: severity=error
//       }
//     }
#include "settings.h"

#include "highlights.h"

#include <tvut22/tvut22.hpp>

#include <iterator>
#include <new>

namespace tool::logpan {

namespace {

constexpr const wchar_t* folderName = L"\\tvUT22";
constexpr const wchar_t* fileName = L"\\logpan.prf";
constexpr const wchar_t* themeNames[] = {L"system", L"light", L"dark"};
constexpr int widestColumn = 4000;

std::wstring TextAt(ProfJob job, const std::wstring& path) {
    const INT length = ProfGetStringLengthW(job, nullptr, path.c_str());
    std::wstring text(length > 0 ? static_cast<std::size_t>(length) : 0, L'\0');
    if (!text.empty())
        ProfGetStringW(job, nullptr, path.c_str(), text.data(), static_cast<UINT>(text.size() + 1), nullptr);
    return text;
}

ThemeChoice ThemeAt(ProfJob job) {
    const std::wstring name = TextAt(job, L"Theme");
    for (std::size_t at = 0; at < std::size(themeNames); ++at)
        if (name == themeNames[at])
            return static_cast<ThemeChoice>(at);
    return ThemeChoice::system;
}

struct scItem {
    std::wstring name;
    std::wstring text;
};

BOOL TVUT22_CALL TakeItem(ProfJob, const wchar_t* name, const wchar_t* text, ProfList, UINT_PTR user) {
    try {
        reinterpret_cast<std::vector<scItem>*>(user)->push_back({name, text});
        return TRUE;
    } catch (const std::bad_alloc&) { // which may not leave a callback
        return FALSE;
    }
}

// None where there is no such list; for the library that would be the root.
std::vector<scItem> ItemsAt(ProfJob job, const wchar_t* list) {
    std::vector<scItem> items;
    if (const ProfList found = ProfGetListW(job, nullptr, list))
        ProfEnumW(job, found, TakeItem, reinterpret_cast<UINT_PTR>(&items));
    return items;
}

std::map<std::wstring, int> ColumnsAt(ProfJob job) {
    std::map<std::wstring, int> columns;
    for (const scItem& item : ItemsAt(job, L"Columns")) {
        INT width = 0;
        const std::wstring path = L"Columns/" + item.name;
        if (ProfGetIntW(job, nullptr, path.c_str(), &width, 0) == PROF_OK && width >= 0 &&
            width <= widestColumn)
            columns.emplace(item.name, width);
    }
    return columns;
}

// Each by itself: one that is none, or that the check refuses, takes no other along.
std::vector<scNamedFilter> FiltersAt(ProfJob job, const wchar_t* list,
                                     void (*check)(const std::vector<scNamedFilter>& filters)) {
    std::vector<scNamedFilter> good;
    for (const scItem& item : ItemsAt(job, list))
        try {
            const std::vector<scNamedFilter> filters = ParseNamedFilters(item.text);
            check(filters);
            good.insert(good.end(), filters.begin(), filters.end());
        } catch (const scBadPattern&) {
            continue;
        }
    return good;
}

void SetFilters(ProfJob job, const wchar_t* list, const std::vector<scNamedFilter>& filters) {
    const ProfList made = ProfCreateListW(job, nullptr, list);
    UINT number = 0;
    for (const scNamedFilter& filter : filters)
        ProfAppendStringW(job, made, std::to_wstring(++number).c_str(),
                          (filter.name + L": " + filter.text).c_str());
}

void Read(ProfJob job, scSettings& settings) {
    BOOL maximized = FALSE;
    const RECT none{};
    ProfGetRectW(job, nullptr, L"Window", &settings.window, &none);
    ProfGetBoolW(job, nullptr, L"Maximized", &maximized, FALSE);
    settings.maximized = maximized != FALSE;
    settings.theme = ThemeAt(job);
    settings.columns = ColumnsAt(job);
    settings.filters = FiltersAt(job, L"Filters", [](const std::vector<scNamedFilter>&) {});
    settings.highlights =
        FiltersAt(job, L"Highlights", [](const std::vector<scNamedFilter>& rules) { clsHighlights{rules}; });
}

void Write(const scSettings& settings, ProfJob job) {
    ProfSetRectW(job, nullptr, L"Window", &settings.window);
    ProfSetBoolW(job, nullptr, L"Maximized", settings.maximized);
    ProfSetStringW(job, nullptr, L"Theme", themeNames[static_cast<std::size_t>(settings.theme)]);
    const ProfList columns = ProfCreateListW(job, nullptr, L"Columns");
    for (const auto& [name, width] : settings.columns)
        ProfAppendIntW(job, columns, name.c_str(), width);
    SetFilters(job, L"Filters", settings.filters);
    SetFilters(job, L"Highlights", settings.highlights);
}

} // namespace

std::wstring clsSettingsFile::UsualPath() {
    std::wstring path(GetEnvironmentVariableW(L"APPDATA", nullptr, 0), L'\0');
    path.resize(GetEnvironmentVariableW(L"APPDATA", path.data(), static_cast<DWORD>(path.size())));
    return path.empty() ? path : path + folderName + fileName;
}

clsSettingsFile::clsSettingsFile(std::wstring path) : path_(std::move(path)) {
    if (path_.empty())
        return;
    const tvut22::profile profile{ProfJobOpenW(path_.c_str())};
    const INT error = ProfGetError(profile.get());
    if (error == PROF_LOAD_FAILED)
        MoveFileExW(path_.c_str(), (path_ + L".bad").c_str(), MOVEFILE_REPLACE_EXISTING);
    else if (error == PROF_LOCKED)
        path_.clear(); // what cannot be read now is not written over
    else
        Read(profile.get(), settings);
}

void clsSettingsFile::Save() const {
    if (path_.empty())
        return;
    if (const std::size_t name = path_.find_last_of(L"\\/"); name != std::wstring::npos)
        CreateDirectoryW(path_.substr(0, name).c_str(), nullptr);
    const tvut22::profile profile{ProfJobOpenW(path_.c_str())}; // what others keep there stays
    const INT error = ProfGetError(profile.get());
    if (error == PROF_LOCKED || error == PROF_LOAD_FAILED) // what they have written since is not lost
        return;
    Write(settings, profile.get());
    ProfSaveW(profile.get(), nullptr, PROF_FORM_TEXT);
}

} // namespace tool::logpan
