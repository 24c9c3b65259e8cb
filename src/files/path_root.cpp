// A root is found by its first characters alone, since the system decides by them, too: a drive, one
// separator, or two. After two come a share, of which server and name belong to the root, or \\?\ and
// \\.\ with one component, where \\?\UNC\ stands for the two of a share.
#include "files/path_root.h"

namespace tvut {

namespace {

constexpr std::size_t prefixLength = 4; // of \\?\ and \\.\ .
constexpr std::size_t shareStart = 2;   // after \\ .
constexpr std::size_t verbatimShareStart = 8;

// What stands for "UNC\" after \\?\ , letters without regard to case.
bool IsShareMark(std::u16string_view text) {
    return text.size() >= 4 && (text[0] | 0x20) == u'u' && (text[1] | 0x20) == u'n' &&
           (text[2] | 0x20) == u'c' && text[3] == u'\\';
}

// The end of the component that begins somewhere: the place of its separator, or the path's end.
std::size_t EndOfComponent(std::u16string_view path, std::size_t at, const scPathRoot& root) {
    while (at < path.size() && !root.Separates(path[at]))
        ++at;
    return at;
}

// After the separator at a place, or the path's end.
std::size_t After(std::u16string_view path, std::size_t separator) {
    return separator < path.size() ? separator + 1 : separator;
}

std::size_t AfterShare(std::u16string_view path, std::size_t server, const scPathRoot& root) {
    const std::size_t serverEnd = EndOfComponent(path, server, root);
    const std::size_t share = After(path, serverEnd);
    const std::size_t shareEnd = EndOfComponent(path, share, root);
    return serverEnd == server || shareEnd == share ? path.size() : After(path, shareEnd);
}

// After two separators: a share, or a device and what the system keeps below it.
scPathRoot NetworkRoot(std::u16string_view path) {
    scPathRoot root{0, PathKind::absolute, false};
    const bool prefixed =
        path.size() >= prefixLength && (path[2] == u'?' || path[2] == u'.') && UtilpIsSeparator(path[3]);
    root.verbatim = prefixed && path[2] == u'?';
    if (!prefixed)
        root.length = AfterShare(path, shareStart, root);
    else if (root.verbatim && IsShareMark(path.substr(prefixLength)))
        root.length = AfterShare(path, verbatimShareStart, root);
    else
        root.length = After(path, EndOfComponent(path, prefixLength, root));
    return root;
}

} // namespace

bool UtilpBeginsWithDrive(std::u16string_view text) noexcept {
    return text.size() >= 2 && text[1] == u':' && (text[0] | 0x20) >= u'a' && (text[0] | 0x20) <= u'z';
}

scPathRoot UtilpRootOf(std::u16string_view path) noexcept {
    if (UtilpBeginsWithDrive(path)) {
        if (path.size() > 2 && UtilpIsSeparator(path[2]))
            return {3, PathKind::absolute, false};
        return {2, PathKind::relativeToDrive, false};
    }
    if (path.empty() || !UtilpIsSeparator(path[0]))
        return {0, PathKind::relative, false};
    if (path.size() > 1 && UtilpIsSeparator(path[1]))
        return NetworkRoot(path);
    return {1, PathKind::rooted, false};
}

} // namespace tvut
