// Collapsing compares the path with every folder of the table and takes the longest that it begins with, by
// whole components: <Documents> mostly lies in <Profile>. Expanding takes the token's folder as it is now, so
// that a stored path follows its user. Neither asks the disk whether the rest is there.
#include "files/folder_tokens.h"

#include "files/path_root.h"
#include "platform/letter_case.h"

#include <algorithm>

namespace tvut {

namespace {

struct scFolderToken {
    std::u16string_view text;
    KnownFolder folder;
};

// Where folders are the same, the first one counts.
constexpr scFolderToken tokens[] = {
    {u"<Documents>", KnownFolder::documents},
    {u"<CommonAppData>", KnownFolder::commonAppData},
    {u"<Desktop>", KnownFolder::desktop},
    {u"<CommonDocuments>", KnownFolder::commonDocuments},
    {u"<Downloads>", KnownFolder::downloads},
    {u"<ProgramFiles>", KnownFolder::programFiles},
    {u"<Pictures>", KnownFolder::pictures},
    {u"<CommonFiles>", KnownFolder::commonFiles},
    {u"<AppData>", KnownFolder::appData},
    {u"<Fonts>", KnownFolder::fonts},
    {u"<LocalAppData>", KnownFolder::localAppData},
    {u"<System>", KnownFolder::system},
    {u"<Profile>", KnownFolder::profile},
    {u"<Windows>", KnownFolder::windows},
    {u"<Temp>", KnownFolder::temp},
    {u"<Program>", KnownFolder::program},
};

bool SameName(std::u16string_view a, std::u16string_view b) {
    return PlatformCompareIgnoringCase(a, b) == 0;
}

const scFolderToken* FindToken(std::u16string_view text) {
    const auto* const found =
        std::ranges::find_if(tokens, [&](const scFolderToken& token) { return SameName(token.text, text); });
    return found != std::end(tokens) ? found : nullptr;
}

// A folder's length without the separator that a drive's root ends with.
std::size_t LengthOf(std::u16string_view folder) {
    return folder.size() - (folder.ends_with(u'\\') ? 1 : 0);
}

// Whole components, either separator for the other. A drive's root needs its own.
bool BeginsWithFolder(std::u16string_view path, std::u16string_view folder) {
    const std::size_t length = LengthOf(folder);
    if (path.size() < folder.size() || (path.size() > length && !UtilpIsSeparator(path[length])))
        return false;
    for (std::size_t at = 0; at < length;) {
        const std::size_t end = std::min(folder.find(u'\\', at), length);
        if (!SameName(path.substr(at, end - at), folder.substr(at, end - at)))
            return false;
        if (end < length && !UtilpIsSeparator(path[end]))
            return false;
        at = end + 1;
    }
    return true;
}

UtilResult Finish(const std::u16string& result) {
    return result.size() > longestPath ? UtilResult::tooLarge : UtilResult::ok;
}

} // namespace

UtilResult UtilpExpandPath(std::u16string_view path, IclsFolders& folders, std::u16string& result) {
    if (path.empty() || path[0] != u'<') {
        result = path;
        return Finish(result);
    }
    const std::size_t end = std::min(path.find(u'>'), path.size() - 1) + 1;
    const scFolderToken* const token = FindToken(path.substr(0, end));
    std::u16string_view rest = path.substr(end);
    if (!token || !(rest.empty() || UtilpIsSeparator(rest[0])))
        return UtilResult::notFound;
    result = folders.Folder(token->folder);
    if (result.empty())
        return UtilResult::notFound;
    if (!rest.empty() && result.back() == u'\\')
        rest.remove_prefix(1);
    result += rest;
    return Finish(result);
}

UtilResult UtilpCollapsePath(std::u16string_view path, IclsFolders& folders, std::u16string& result) {
    std::u16string_view best;
    std::size_t replaced = 0;
    for (const scFolderToken& token : tokens) {
        const std::u16string folder = folders.Folder(token.folder);
        if (LengthOf(folder) > replaced && BeginsWithFolder(path, folder)) {
            best = token.text;
            replaced = LengthOf(folder);
        }
    }
    result = best;
    result += path.substr(replaced);
    return Finish(result);
}

} // namespace tvut
