// What holds for paths and names of any text, for the tests of random ones and for the fuzzers.
//
// Each function names the fault that it finds; null when there is none.
#pragma once

#include "files/file_name.h"
#include "files/make_name.h"
#include "files/path_merge.h"
#include "files/path_root.h"
#include "files/path_split.h"

#include <string>
#include <vector>

namespace tvut {

inline const char* FaultOfSplit(const std::u16string& path) {
    const scPathParts parts = UtilpSplitPath(path);
    const std::u16string joined = std::u16string(parts.root).append(parts.folder).append(parts.name);
    if (joined + std::u16string(parts.extension) != path)
        return "the parts do not join to the path";
    const scPathRoot root = UtilpRootOf(path);
    if (parts.root.size() != root.length || (!parts.folder.empty() && !root.Separates(parts.folder.back())))
        return "root or folder end at the wrong place";
    for (const char16_t unit : std::u16string(parts.name) + std::u16string(parts.extension)) {
        if (root.Separates(unit))
            return "a separator in the name";
    }
    return !parts.extension.empty() && (parts.extension[0] != u'.' || parts.name.empty())
               ? "no extension is one"
               : nullptr;
}

struct scMerged {
    UtilResult result;
    std::u16string path;
};

template <class Merge>
scMerged Merged(Merge* merge, std::u16string_view base, std::u16string_view path) {
    clsBoundedText text;
    const UtilResult result = merge(base, path, text);
    return {result, result == UtilResult::ok ? std::u16string(text.View()) : std::u16string()};
}

inline const char* FaultOfMerge(std::u16string_view base, std::u16string_view path) {
    const scMerged once = Merged(UtilpMergePaths, base, path);
    if (once.result != UtilResult::ok)
        return nullptr;
    if (once.path.empty())
        return "nothing merged";
    const scMerged again = Merged(UtilpMergePaths, {}, once.path);
    return again.result == UtilResult::ok && again.path == once.path ? nullptr : "merging again changes it";
}

// The components from a path's beginning to where it leads, by a walk that knows nothing of roots but how
// many components they have.
inline std::vector<std::u16string> Walk(std::u16string_view path, std::size_t rootComponents, bool slashes) {
    std::vector<std::u16string> stack;
    std::u16string component;
    for (const char16_t unit : std::u16string(path) + u"\\") {
        if (unit != u'\\' && (unit != u'/' || !slashes)) {
            component += unit;
            continue;
        }
        if (component == u".." && stack.size() > rootComponents)
            stack.pop_back();
        else if (!component.empty() && component != u"." && component != u"..")
            stack.push_back(component);
        component.clear();
    }
    return stack;
}

// For a base that is absolute, with the number of components that its root has.
inline const char* FaultOfInside(std::u16string_view base, std::size_t rootComponents,
                                 std::u16string_view path) {
    const scMerged inside = Merged(UtilpMergeInside, base, path);
    if (inside.result != UtilResult::ok)
        return nullptr;
    if (inside.path != Merged(UtilpMergePaths, base, path).path)
        return "another path than without the check";
    const bool slashes = !base.starts_with(u"\\\\?\\");
    const auto from = Walk(base, rootComponents, slashes), to = Walk(inside.path, rootComponents, slashes);
    if (to.size() < from.size() || !std::equal(from.begin(), from.end(), to.begin()))
        return "the result lies outside";
    for (std::size_t at = from.size(); at < to.size(); ++at) {
        if (!UtilpIsBareFileName(to[at]))
            return "a component is no name";
    }
    return nullptr;
}

inline std::u16string MadeName(std::u16string_view text) {
    clsBoundedText name;
    UtilpMakeFileName(text, name);
    return std::u16string(name.View());
}

inline bool IsWellFormed(std::u16string_view text) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char16_t unit = text[at];
        if (unit >= 0xDC00 && unit <= 0xDFFF)
            return false;
        if (unit >= 0xD800 && unit <= 0xDBFF && (++at == text.size() || (text[at] & 0xFC00) != 0xDC00))
            return false;
    }
    return true;
}

inline const char* FaultOfName(std::u16string_view text) {
    const std::u16string name = MadeName(text);
    if (!UtilpIsBareFileName(name) || name.size() > 200 || !IsWellFormed(name))
        return "no name was made";
    return MadeName(name) == name ? nullptr : "a name of the name is another one";
}

} // namespace tvut
