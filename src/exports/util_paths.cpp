// Exports of paths and the system's folders in them.
#include "exports/result_call.h"
#include "files/folder_tokens.h"
#include "files/make_name.h"
#include "files/path_merge.h"
#include "files/path_split.h"

#include <tvut22/files.h>

using namespace tvut;

namespace {

// Hands a text to the caller where the work on it went well.
UtilResult GiveIfOk(UtilResult result, BSTR* place, std::u16string_view text) {
    return result == UtilResult::ok ? UtilpGive({{place, text}}) : result;
}

template <class Replace>
INT WithFolders(const wchar_t* path, BSTR* result, Replace* replace) {
    if (!path)
        return UTIL_BAD_ARGUMENT;
    return UtilpResultOf([&] {
        clsKnownFolders folders;
        std::u16string replaced;
        const UtilResult outcome = replace(UtilpView(path), folders, replaced);
        return GiveIfOk(outcome, result, replaced);
    });
}

} // namespace

INT TVUT22_CALL UtilPathSplit(const wchar_t* path, BSTR* root, BSTR* folder, BSTR* name, BSTR* extension) {
    if (!path)
        return UTIL_BAD_ARGUMENT;
    return UtilpResultOf([&] {
        const scPathParts parts = UtilpSplitPath(UtilpView(path));
        return UtilpGive(
            {{root, parts.root}, {folder, parts.folder}, {name, parts.name}, {extension, parts.extension}});
    });
}

INT TVUT22_CALL UtilPathMerge(const wchar_t* base, const wchar_t* path, UINT flags, BSTR* result) {
    if (!UtilpOnly(flags, UTIL_PATH_INSIDE))
        return UTIL_BAD_ARGUMENT;
    return UtilpResultOf([&] {
        clsBoundedText merged;
        auto* const merge = (flags & UTIL_PATH_INSIDE) != 0 ? UtilpMergeInside : UtilpMergePaths;
        const UtilResult outcome = merge(UtilpView(base), UtilpView(path), merged);
        return GiveIfOk(outcome, result, merged.View());
    });
}

INT TVUT22_CALL UtilPathMakeName(const wchar_t* text, BSTR* name) {
    if (!text)
        return UTIL_BAD_ARGUMENT;
    return UtilpResultOf([&] {
        clsBoundedText made;
        UtilpMakeFileName(UtilpView(text), made);
        return UtilpGive({{name, made.View()}});
    });
}

INT TVUT22_CALL UtilPathExpand(const wchar_t* path, BSTR* result) {
    return WithFolders(path, result, UtilpExpandPath);
}

INT TVUT22_CALL UtilPathCollapse(const wchar_t* path, BSTR* result) {
    return WithFolders(path, result, UtilpCollapsePath);
}
