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

namespace tool::logpan {

namespace {

constexpr const wchar_t* folderName = L"\\tvUT22";
constexpr const wchar_t* fileName = L"\\logpan.prf";
constexpr const wchar_t* themeNames[] = {L"system", L"light", L"dark"};
constexpr UINT mostFilters = 1000;
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

// Numbered from 1. One that is no filter is left out.
std::vector<scNamedFilter> FiltersAt(ProfJob job, const std::wstring& list) {
    std::vector<scNamedFilter> filters;
    for (UINT number = 1; number <= mostFilters; ++number) {
        const std::wstring text = TextAt(job, list + L"/" + std::to_wstring(number));
        if (text.empty())
            break;
        try {
            for (scNamedFilter& filter : ParseNamedFilters(text))
                filters.push_back(std::move(filter));
        } catch (const scBadPattern&) {
            continue;
        }
    }
    return filters;
}

void SetFilters(ProfJob job, const wchar_t* list, const std::vector<scNamedFilter>& filters) {
    const ProfList made = ProfCreateListW(job, nullptr, list);
    UINT number = 0;
    for (const scNamedFilter& filter : filters)
        ProfAppendStringW(job, made, std::to_wstring(++number).c_str(),
                          (filter.name + L": " + filter.text).c_str());
}

BOOL TVUT22_CALL TakeColumn(ProfJob job, const wchar_t* name, const wchar_t*, ProfList, UINT_PTR user) {
    auto& columns = *reinterpret_cast<std::map<std::wstring, int>*>(user);
    INT width = 0;
    const std::wstring path = std::wstring{L"Columns/"} + name;
    if (ProfGetIntW(job, nullptr, path.c_str(), &width, 0) == PROF_OK && width >= 0 && width <= widestColumn)
        columns.emplace(name, width);
    return TRUE;
}

void Read(ProfJob job, scSettings& settings) {
    BOOL maximized = FALSE;
    const RECT none{};
    ProfGetRectW(job, nullptr, L"Window", &settings.window, &none);
    ProfGetBoolW(job, nullptr, L"Maximized", &maximized, FALSE);
    settings.maximized = maximized != FALSE;
    settings.theme = ThemeAt(job);
    ProfEnumW(job, ProfGetListW(job, nullptr, L"Columns"), TakeColumn,
              reinterpret_cast<UINT_PTR>(&settings.columns));
    settings.filters = FiltersAt(job, L"Filters");
    settings.highlights = FiltersAt(job, L"Highlights");
    try {
        clsHighlights(settings.highlights);
    } catch (const scBadPattern&) {
        settings.highlights.clear();
    }
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
    Write(settings, profile.get());
    ProfSaveW(profile.get(), nullptr, PROF_FORM_TEXT);
}

} // namespace tool::logpan
