// prof attach and prof extract: whole files in a profile's list, and out of it again.
#include "commands.h"
#include "edited_profile.h"
#include "file_access.h"
#include "paths.h"
#include "text_io.h"
#include "tree_walk.h"

#include <new>

namespace tool::prof {

namespace {

constexpr const wchar_t* entryName = L"File.Entry";
constexpr std::size_t mostNamesTold = 5;

BOOL TVUT22_CALL CountEntry(ProfJob, const wchar_t* name, const wchar_t*, ProfList list, UINT_PTR count) {
    *reinterpret_cast<std::size_t*>(count) += list != nullptr && std::wstring_view{name} == entryName;
    return TRUE;
}

std::size_t FilesIn(ProfJob job, ProfList list) {
    std::size_t count = 0;
    ProfEnumW(job, list, CountEntry, reinterpret_cast<UINT_PTR>(&count));
    return count;
}

ProfList FindOrMakeList(const clsProfile& profile, const std::string& path) {
    if (path.empty() || path == "/")
        return nullptr;
    RequireStorablePath(path + "/File.Entry"); // its segments are the names of lists
    const Names names = NamesInPath(ToWide(path));
    ProfList list = nullptr;
    if (FindList(profile.Job(), names, list))
        return list;
    const std::optional<std::wstring> libraryPath = LibraryPath(names);
    if (!libraryPath)
        throw scFailure{ExitCode::usage, path, "a list whose name holds a slash is not made here"};
    list = ProfCreateListW(profile.Job(), nullptr, libraryPath->c_str());
    if (list == nullptr)
        throw std::bad_alloc{};
    return list;
}

void Attach(const clsProfile& profile, ProfList list, const std::string& pattern, const std::wstring& key) {
    const std::wstring widePattern = ToWide(pattern);
    const std::size_t before = FilesIn(profile.Job(), list);
    if (ProfAppendFilesW(profile.Job(), list, widePattern.c_str(), key.c_str()) != PROF_OK) {
        const bool oneFile = pattern.find_first_of("*?;") == std::string::npos;
        const std::string reason = oneFile ? WhyNotReadable(widePattern) : std::string{};
        throw scFailure{ExitCode::cannotOpen, pattern,
                        reason.empty() ? "a file cannot be read, or is too large for a profile" : reason};
    }
    if (FilesIn(profile.Job(), list) == before)
        throw scFailure{ExitCode::notFound, pattern, "no such file"};
}

std::string NameOf(ProfJob job, ProfList entry) {
    for (clsTreeWalk walk{job, entry, clsTreeWalk::Scope::oneList}; walk.Next();)
        if (!walk.Entry().IsList() && walk.Entry().name == L"Name")
            return ToUtf8(walk.Entry().value);
    return "(no name)";
}

bool ExtractAlone(ProfJob job, ProfList entry, const scArguments& arguments) {
    const clsProfile alone = clsProfile::MakeEmpty();
    const ProfList copy = ProfAppendListW(alone.Job(), nullptr, entryName);
    if (copy == nullptr || ProfCopyList(alone.Job(), copy, job, entry) != PROF_OK)
        throw std::bad_alloc{};
    return ProfExtractFilesW(alone.Job(), nullptr, ToWide(arguments.folder).c_str(),
                             ToWide(arguments.key).c_str()) == PROF_OK;
}

// The library goes on after an entry that fails and says only that there was one: which one shows when
// each is extracted alone.
std::string WhyNotExtracted(ProfJob job, ProfList list, const scArguments& arguments) {
    std::string names;
    std::size_t failed = 0;
    for (clsTreeWalk walk{job, list, clsTreeWalk::Scope::oneList}; walk.Next();) {
        const scEntry& entry = walk.Entry();
        if (!entry.IsList() || entry.name != entryName || ExtractAlone(job, entry.list, arguments))
            continue;
        if (++failed <= mostNamesTold)
            names += (failed == 1 ? "" : ", ") + NameOf(job, entry.list);
    }
    std::string escaped;
    AppendEscaped(escaped, ToWide(names));
    return "cannot be extracted: " + escaped + (failed > mostNamesTold ? " and others" : "") +
           " (no bare file name, another key, damaged, or not writable)";
}

} // namespace

ExitCode RunAttach(const scArguments& arguments) {
    clsEditedProfile edited{arguments, Replaceable::textProfiles};
    const ProfList list = FindOrMakeList(edited.Profile(), arguments.path);
    for (const std::string& pattern : arguments.patterns)
        Attach(edited.Profile(), list, pattern, ToWide(arguments.key));
    edited.SaveAsText();
    return ExitCode::ok;
}

ExitCode RunExtract(const scArguments& arguments) {
    const clsProfile profile = clsProfile::Open(arguments.file, arguments.plainIni);
    const ProfList list = FindList(profile, arguments.file, arguments.path);
    if (FilesIn(profile.Job(), list) == 0)
        throw scFailure{ExitCode::notFound, DisplayName(arguments.file),
                        "there are no files in " + arguments.path};
    if (ProfExtractFilesW(profile.Job(), list, ToWide(arguments.folder).c_str(),
                          ToWide(arguments.key).c_str()) != PROF_OK)
        throw scFailure{ExitCode::cannotSave, arguments.folder,
                        WhyNotExtracted(profile.Job(), list, arguments)};
    return ExitCode::ok;
}

} // namespace tool::prof
