// Base and path are joined in the result and normalised there in one walk over the components. What is
// written is never ahead of what is read: a component moves towards the root or stays. "floor" is how far
// ".." may take components away: to the root, or to the last ".." that had to stay in a relative result.
#include "files/path_merge.h"

#include "files/file_name.h"
#include "files/path_root.h"

#include <algorithm>

namespace tvut {

namespace {

bool EndsWithSeparator(std::u16string_view path) {
    return !path.empty() && UtilpIsSeparator(path.back());
}

// ---- Joining -----------------------------------------------------------------------------------------

// Room for what joining and normalising add: a separator, and a "." with one where nothing is left.
constexpr std::size_t addedMost = 3;

void Join(std::u16string_view base, std::u16string_view path, clsBoundedText& result) {
    result.Begin(base.size() + path.size() + addedMost);
    result.Put(base);
    const scPathRoot root = UtilpRootOf(base);
    const bool driveOnly = root.kind == PathKind::relativeToDrive && root.length == base.size();
    if (!base.empty() && !path.empty() && !root.Separates(base.back()) && !driveOnly)
        result.Put(u'\\');
    result.Put(path);
}

// The path's letter when its root has a drive; 0 otherwise.
char16_t DriveOf(std::u16string_view path) {
    const scPathRoot root = UtilpRootOf(path);
    if (root.verbatim)
        path.remove_prefix(4);
    return UtilpBeginsWithDrive(path) ? static_cast<char16_t>(path[0] & ~0x20) : u'\0';
}

bool HasDriveOrShare(const scPathRoot& root) {
    return root.kind == PathKind::absolute || root.kind == PathKind::relativeToDrive;
}

// "\x" is meant from the root of the base; the separator that the root may end with is not doubled.
void JoinToRoot(std::u16string_view base, std::u16string_view path, clsBoundedText& result) {
    const scPathRoot root = UtilpRootOf(base);
    const std::u16string_view from = base.substr(0, HasDriveOrShare(root) ? root.length : 0);
    const bool doubled = !from.empty() && root.Separates(from.back());
    result.Begin(base.size() + path.size() + addedMost);
    result.Put(from);
    if (!doubled)
        result.Put(u'\\');
    result.Put(path.substr(1));
}

UtilResult JoinMeant(std::u16string_view base, std::u16string_view path, clsBoundedText& result) {
    const PathKind kind = UtilpRootOf(path).kind;
    if (kind == PathKind::absolute || base.empty())
        Join({}, path, result);
    else if (kind == PathKind::rooted)
        JoinToRoot(base, path, result);
    else if (kind == PathKind::relative)
        Join(base, path, result);
    else if (DriveOf(base) == DriveOf(path))
        Join(base, path.substr(2), result);
    else
        return UtilResult::badArgument;
    return UtilResult::ok;
}

// ---- Normalising -------------------------------------------------------------------------------------

class clsNormaliser {
  public:
    clsNormaliser(clsBoundedText& text, const scPathRoot& root)
        : text_(text.Characters()), root_(root), length_(root.length), floor_(root.length) {}

    std::size_t Run(std::size_t length, bool separatorAtEnd) {
        std::replace(text_, text_ + root_.length, u'/', u'\\');
        for (std::size_t at = root_.length; at < length;) {
            const std::size_t start = at;
            while (at < length && !UtilpIsSeparator(text_[at]))
                ++at;
            Take({text_ + start, at - start});
            ++at; // the separator
        }
        Finish(separatorAtEnd);
        return length_;
    }

  private:
    bool HasRoot() const { return root_.kind == PathKind::absolute || root_.kind == PathKind::rooted; }

    void Take(std::u16string_view component) {
        if (component.empty() || component == u".")
            return;
        if (component != u"..") {
            Append(component);
        } else if (length_ > floor_) {
            TakeLastAway();
        } else if (!HasRoot()) {
            Append(component);
            floor_ = length_;
        }
    }

    void Append(std::u16string_view component) {
        if (length_ > root_.length)
            text_[length_++] = u'\\';
        std::copy(component.begin(), component.end(), text_ + length_);
        length_ += component.size();
    }

    void TakeLastAway() {
        while (length_ > floor_ && text_[length_ - 1] != u'\\')
            --length_;
        if (length_ > floor_)
            --length_; // its separator
    }

    void Finish(bool separatorAtEnd) {
        if (root_.length == 0 && UtilpBeginsWithDrive({text_, length_})) { // it was no drive where it stood
            std::copy_backward(text_, text_ + length_, text_ + length_ + 2);
            std::copy_n(u".\\", 2, text_);
            length_ += 2;
        }
        if (length_ == root_.length && !HasRoot())
            text_[length_++] = u'.';
        if (separatorAtEnd && text_[length_ - 1] != u'\\')
            text_[length_++] = u'\\';
    }

    char16_t* text_;
    scPathRoot root_;
    std::size_t length_;
    std::size_t floor_;
};

UtilResult Normalise(clsBoundedText& text, bool separatorAtEnd) {
    const scPathRoot root = UtilpRootOf(text.View());
    if (!root.verbatim)
        text.Cut(clsNormaliser(text, root).Run(text.Length(), separatorAtEnd));
    return text.Length() > longestPath ? UtilResult::tooLarge : UtilResult::ok;
}

// ---- Staying inside ----------------------------------------------------------------------------------

// Where nothing is normalised, "." and an empty component stay, and are no names.
bool IsHarmless(std::u16string_view component, bool verbatim) {
    return ((component.empty() || component == u".") && !verbatim) || UtilpIsBareFileName(component);
}

bool AllComponentsAreNames(std::u16string_view path, const scPathRoot& base) {
    if (!path.empty() && base.Separates(path.back()))
        path.remove_suffix(1);
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t start = at;
        while (at < path.size() && !base.Separates(path[at]))
            ++at;
        if (!IsHarmless(path.substr(start, at - start), base.verbatim))
            return false;
        ++at;
    }
    return true;
}

} // namespace

UtilResult UtilpMergePaths(std::u16string_view base, std::u16string_view path, clsBoundedText& result) {
    if (base.empty() && path.empty())
        return UtilResult::badArgument;
    const UtilResult joined = JoinMeant(base, path, result);
    return joined == UtilResult::ok ? Normalise(result, EndsWithSeparator(path.empty() ? base : path))
                                    : joined;
}

UtilResult UtilpMergeInside(std::u16string_view base, std::u16string_view path, clsBoundedText& result) {
    const scPathRoot root = UtilpRootOf(base);
    if (root.kind != PathKind::absolute)
        return UtilResult::badArgument;
    // A base without its share would let the path name one.
    Join(base, u"x", result);
    if (UtilpRootOf(result.View()).length == result.Length())
        return UtilResult::badArgument;
    if (UtilpRootOf(path).kind != PathKind::relative || !AllComponentsAreNames(path, root))
        return UtilResult::unsafe;
    Join(base, path, result);
    return Normalise(result, EndsWithSeparator(path.empty() ? base : path));
}

} // namespace tvut
