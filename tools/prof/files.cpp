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

BOOL TVUT22_CALL countEntry(ProfJob, const wchar_t* name, const wchar_t*, ProfList list, UINT_PTR count) {
    *reinterpret_cast<std::size_t*>(count) += list != nullptr && std::wstring_view{name} == entryName;
    return TRUE;
}

std::size_t filesIn(ProfJob job, ProfList list) {
    std::size_t count = 0;
    ProfEnumW(job, list, countEntry, reinterpret_cast<UINT_PTR>(&count));
    return count;
}

ProfList findOrMakeList(const Profile& profile, const std::string& path) {
    if (path.empty() || path == "/")
        return nullptr;
    requireStorablePath(path + "/File.Entry"); // its segments are the names of lists
    const std::wstring widePath = toWide(path);
    ProfList list = ProfGetListW(profile.job(), nullptr, widePath.c_str());
    if (list == nullptr)
        list = ProfCreateListW(profile.job(), nullptr, widePath.c_str());
    if (list == nullptr)
        throw std::bad_alloc{};
    return list;
}

void attach(const Profile& profile, ProfList list, const std::string& pattern, const std::wstring& key) {
    const std::wstring widePattern = toWide(pattern);
    const std::size_t before = filesIn(profile.job(), list);
    if (ProfAppendFilesW(profile.job(), list, widePattern.c_str(), key.c_str()) != PROF_OK) {
        const bool oneFile = pattern.find_first_of("*?;") == std::string::npos;
        const std::string reason = oneFile ? whyNotReadable(widePattern) : std::string{};
        throw Failure{ExitCode::cannotOpen, pattern,
                      reason.empty() ? "a file cannot be read, or is too large for a profile" : reason};
    }
    if (filesIn(profile.job(), list) == before)
        throw Failure{ExitCode::notFound, pattern, "no such file"};
}

std::string nameOf(ProfJob job, ProfList entry) {
    for (TreeWalk walk{job, entry, TreeWalk::Scope::oneList}; walk.next();)
        if (!walk.entry().isList() && walk.entry().name == L"Name")
            return toUtf8(walk.entry().value);
    return "(no name)";
}

bool extractAlone(ProfJob job, ProfList entry, const Arguments& arguments) {
    const Profile alone = Profile::makeEmpty();
    const ProfList copy = ProfAppendListW(alone.job(), nullptr, entryName);
    if (copy == nullptr || ProfCopyList(alone.job(), copy, job, entry) != PROF_OK)
        throw std::bad_alloc{};
    return ProfExtractFilesW(alone.job(), nullptr, toWide(arguments.folder).c_str(),
                             toWide(arguments.key).c_str()) == PROF_OK;
}

// The library goes on after an entry that fails and says only that there was one: which one shows when
// each is extracted alone.
std::string whyNotExtracted(ProfJob job, ProfList list, const Arguments& arguments) {
    std::string names;
    std::size_t failed = 0;
    for (TreeWalk walk{job, list, TreeWalk::Scope::oneList}; walk.next();) {
        const Entry& entry = walk.entry();
        if (!entry.isList() || entry.name != entryName || extractAlone(job, entry.list, arguments))
            continue;
        if (++failed <= mostNamesTold)
            names += (failed == 1 ? "" : ", ") + nameOf(job, entry.list);
    }
    std::string escaped;
    appendEscaped(escaped, toWide(names));
    return "cannot be extracted: " + escaped + (failed > mostNamesTold ? " and others" : "") +
           " (no bare file name, another key, damaged, or not writable)";
}

} // namespace

ExitCode runAttach(const Arguments& arguments) {
    EditedProfile edited{arguments, Replaceable::textProfiles};
    const ProfList list = findOrMakeList(edited.profile(), arguments.path);
    for (const std::string& pattern : arguments.patterns)
        attach(edited.profile(), list, pattern, toWide(arguments.key));
    edited.saveAsText();
    return ExitCode::ok;
}

ExitCode runExtract(const Arguments& arguments) {
    const Profile profile = Profile::open(arguments.file, arguments.plainIni);
    const ProfList list = findList(profile, arguments.file, arguments.path);
    if (filesIn(profile.job(), list) == 0)
        throw Failure{ExitCode::notFound, displayName(arguments.file),
                      "there are no files in " + arguments.path};
    if (ProfExtractFilesW(profile.job(), list, toWide(arguments.folder).c_str(),
                          toWide(arguments.key).c_str()) != PROF_OK)
        throw Failure{ExitCode::cannotSave, arguments.folder,
                      whyNotExtracted(profile.job(), list, arguments)};
    return ExitCode::ok;
}

} // namespace tool::prof
