// A check reads what the system would look at when the file is opened, and lets the system judge it: the file
// itself is not touched. All rights are asked for at once, so that one answer serves for each of them.
#include "files/file_access.h"

#include "files/access_bits.h"
#include "files/access_entries.h"
#include "files/path_root.h"
#include "platform/access_list.h"
#include "platform/long_path.h"
#include "platform/wide.h"
#include "runtime/system_result.h"

namespace tvut {

namespace {

bool IsFolder(DWORD attributes) {
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

DWORD GrantedIn(const clsSecuredFile& file, DWORD& granted) {
    std::vector<std::byte> descriptor;
    if (const DWORD error = file.ReadDescriptor(descriptor))
        return error;
    clsAccessCheck check;
    const DWORD error = check.Begin();
    return error ? error : check.Granted(descriptor, granted);
}

// A full path without its last component; empty for a root.
std::wstring FolderOf(std::wstring path) {
    const std::size_t root = UtilpRootOf(FromWide(std::wstring_view(path))).length;
    while (path.size() > root && path.back() == L'\\')
        path.pop_back();
    if (path.size() <= root)
        return {};
    while (path.size() > root && path.back() != L'\\')
        path.pop_back();
    if (path.size() > root)
        path.pop_back(); // the separator
    return path;
}

bool HasAll(DWORD granted, DWORD mask) {
    return (granted & mask) == mask;
}

// Whoever may remove what is in a folder may remove all that is in it.
bool MayRemoveFrom(const std::wstring& folder) {
    clsSecuredFile parent;
    DWORD granted = 0;
    return !folder.empty() && parent.OpenToRead(folder) == ERROR_SUCCESS &&
           GrantedIn(parent, granted) == ERROR_SUCCESS && HasAll(granted, access::removeChild);
}

UtilResult CheckFile(const clsSecuredFile& file, std::wstring_view path, std::uint32_t rights) {
    DWORD attributes = 0, granted = 0;
    DWORD error = (rights & access::write) != 0 ? file.ReadAttributes(attributes) : ERROR_SUCCESS;
    if (!error && !IsFolder(attributes) && (attributes & FILE_ATTRIBUTE_READONLY) != 0)
        return UtilResult::ok;
    if (!error)
        error = GrantedIn(file, granted);
    if (error)
        return UtilpResultOfError(error);
    if (!HasAll(granted, UtilpAccessMask(rights & ~access::remove)))
        return UtilResult::ok;
    const bool mayRemove = (rights & access::remove) == 0 || HasAll(granted, access::removeThis) ||
                           MayRemoveFrom(FolderOf(PlatformFullPath(path)));
    return mayRemove ? UtilResult::yes : UtilResult::ok;
}

// Whether a path could be made: by a new file in its folder, or a new folder in the nearest that is there.
UtilResult CheckPlace(std::wstring_view path) {
    std::wstring folder = FolderOf(PlatformFullPath(path));
    for (DWORD needed = access::addFile; !folder.empty(); needed = access::addFolder) {
        clsSecuredFile nearest;
        DWORD attributes = 0, granted = 0;
        DWORD error = nearest.OpenToRead(folder);
        if (!error) {
            error = nearest.ReadAttributes(attributes);
            if (!error && !IsFolder(attributes))
                return UtilResult::notFound;
            if (!error)
                error = GrantedIn(nearest, granted);
            if (!error)
                return HasAll(granted, needed) ? UtilResult::yes : UtilResult::ok;
        }
        if (UtilpResultOfError(error) != UtilResult::notFound)
            return UtilpResultOfError(error);
        folder = FolderOf(std::move(folder));
    }
    return UtilResult::notFound;
}

} // namespace

UtilResult UtilpCheckAccess(std::u16string_view path, std::uint32_t rights) {
    const std::wstring_view wide(ToWide(path.data()), path.size());
    clsSecuredFile file;
    const DWORD error = file.OpenToRead(wide);
    if (!error)
        return CheckFile(file, wide, rights);
    const UtilResult opening = UtilpResultOfError(error);
    return opening == UtilResult::notFound && rights == access::write ? CheckPlace(wide) : opening;
}

UtilResult UtilpGrantAccess(std::u16string_view path, const scSid& account, std::uint32_t rights,
                            unsigned long& error) {
    clsSecuredFile file;
    DWORD attributes = 0;
    error = file.OpenToChange({ToWide(path.data()), path.size()});
    if (!error)
        error = file.ReadAttributes(attributes);
    if (error)
        return UtilpResultOfError(error);
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
        return UtilResult::badArgument;
    bool keepsRights = false;
    std::vector<std::byte> descriptor, changed;
    std::span<const std::byte> list;
    error = file.KeepsRights(keepsRights);
    if (!error && !keepsRights)
        return UtilResult::notSupported;
    if (!error)
        error = file.ReadDescriptor(descriptor);
    if (!error)
        error = PlatformListOf(descriptor, list);
    if (error)
        return UtilpResultOfError(error);
    if (list.empty()) // everyone may do everything
        return UtilResult::ok;
    const scGrant grant{account, UtilpAccessMask(rights), IsFolder(attributes)};
    if (UtilpGrantInList(list, grant, changed) != UtilResult::ok) {
        error = ERROR_INVALID_ACL;
        return UtilResult::failed;
    }
    error = file.ReplaceList(changed);
    return UtilpResultOfError(error);
}

} // namespace tvut
