// Names come from machines of all kinds, and from people who mean harm. What could lead out of a folder is
// recognised on the name as it reads, before anything of it is changed; what Windows would read as another
// name is changed after that, so that nothing is dropped silently and no changed name can be unsafe again.
#include "zip/zip_names.h"

#include "files/file_name.h"
#include "files/path_root.h"
#include "platform/code_page.h"
#include "text/encoding/utf8.h"
#include "text/scan.h"

#include <algorithm>

namespace tvut {

namespace {

// True when a component is empty or begins with a dot: nearly no name has one, and all others need no second
// look at their components.
bool Decode(std::string_view bytes, ZipNameForm form, std::u16string& name) {
    name.resize(bytes.size());
    name.resize(form == ZipNameForm::utf8 ? UtilpDecodeUtf8(bytes, name.data())
                                          : PlatformDecode(PlatformOemCodePage(), bytes, name.data()));
    bool isOdd = false;
    char16_t before = u'/';
    for (char16_t& unit : name) {
        if (unit == u'\\')
            unit = u'/';
        else if (unit == u'\0')
            unit = u'\uFFFD';
        isOdd |= before == u'/' && (unit == u'/' || unit == u'.');
        before = unit;
    }
    return isOdd;
}

// Calls a function with each component of a path.
template <class Function>
void EachComponent(std::u16string_view path, Function function) {
    for (std::size_t start = 0; start <= path.size();) {
        const std::size_t end = std::min(path.find(u'/', start), path.size());
        function(path.substr(start, end - start));
        start = end + 1;
    }
}

bool IsDropped(std::u16string_view component) {
    return component.empty() || component == u".";
}

bool HasComponent(std::u16string_view path, std::u16string_view wanted) {
    bool found = false;
    EachComponent(path, [&](std::u16string_view component) { found = found || component == wanted; });
    return found;
}

// Whether a component may have to be dropped.
bool MayHoldDropped(std::u16string_view name) {
    return name.starts_with(u"./") || name.ends_with(u"/.") || name == u"." ||
           name.find(u"//") != name.npos || name.find(u"/./") != name.npos;
}

// In place: a component never moves towards the end.
void DropComponents(std::u16string& name) {
    const bool isFolder = name.ends_with(u'/') || name.ends_with(u"/.") || name == u".";
    name += u'/'; // after the last component, too
    char16_t* out = name.data();
    EachComponent(name, [&](std::u16string_view component) {
        if (IsDropped(component))
            return;
        out = std::ranges::copy(component, out).out;
        *out++ = u'/';
    });
    name.resize(static_cast<std::size_t>(out - name.data()));
    if (name.empty() && isFolder)
        name = u'/';
    else if (!name.empty() && !isFolder)
        name.pop_back();
}

// The trailing blanks and dots that the system would drop.
void PutPossible(std::u16string_view component, std::u16string& path) {
    const std::size_t start = path.size();
    const std::size_t kept = component.find_last_not_of(u" .") + 1; // nothing found: npos + 1 is 0
    for (const char16_t unit : component.substr(0, kept))
        path += UtilpIsNameCharacter(unit) ? unit : u'_';
    path.append(component.size() - kept, u'_');
    const std::size_t device = UtilpDeviceLength(std::u16string_view(path).substr(start));
    if (device != 0)
        path.insert(start + device, 1, u'_');
}

} // namespace

ZipNameKind UtilpReadZipName(std::string_view bytes, ZipNameForm form, std::u16string& name) {
    const bool isOdd = Decode(bytes, form, name);
    if (name.empty())
        return ZipNameKind::none;
    if (!isOdd)
        return UtilpBeginsWithDrive(name) ? ZipNameKind::unsafe : ZipNameKind::fine;
    if (name.front() == u'/' || UtilpBeginsWithDrive(name) || HasComponent(name, u".."))
        return ZipNameKind::unsafe;
    if (MayHoldDropped(name))
        DropComponents(name);
    if (name.empty())
        return ZipNameKind::none;
    return UtilpBeginsWithDrive(name) ? ZipNameKind::unsafe : ZipNameKind::fine;
}

bool UtilpIsPlainZipName(std::string_view bytes) noexcept {
    constexpr std::size_t blockBytes = sizeof(__m128i);
    char filled[blockBytes];
    const std::size_t size = bytes.size();
    if (size < blockBytes) {
        std::memset(filled, 'x', sizeof filled);
        bytes.copy(filled, size);
    }
    if (size == 0 || (size >= 2 && bytes[1] == ':'))
        return false;
    const char* const begin = size < blockBytes ? filled : bytes.data();
    const std::size_t last = std::max(size, blockBytes) - blockBytes; // may overlap the block before
    for (std::size_t at = 0;; at = std::min(at + blockBytes, last)) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(begin + at));
        const auto equal = [block](char c) { return UtilpEqualBytes(block, c); };
        const auto mask = [](__m128i bits) { return static_cast<unsigned>(_mm_movemask_epi8(bits)); };
        const unsigned slashes = mask(equal('/'));
        const unsigned starts = slashes << 1 | (at == 0 || begin[at - 1] == '/' ? 1 : 0); // of components
        if (mask(_mm_or_si128(block, _mm_or_si128(equal('\\'), equal('\0')))) != 0 ||
            (starts & (slashes | mask(equal('.')))) != 0)
            return false;
        if (at == last)
            return true;
    }
}

void UtilpMakePossiblePath(std::u16string_view name, std::u16string& path) {
    path.clear();
    if (name.ends_with(u'/'))
        name.remove_suffix(1);
    if (name.empty())
        return;
    EachComponent(name, [&](std::u16string_view component) {
        if (!path.empty())
            path += u'\\';
        PutPossible(component, path);
    });
}

bool UtilpCanBeEntryName(std::u16string_view name) noexcept {
    for (std::size_t start = 0; start <= name.size();) {
        const std::size_t end = std::min(name.find_first_of(u"/\\", start), name.size());
        if (!UtilpIsBareFileName(name.substr(start, end - start)))
            return false;
        start = end + 1;
    }
    return UtilpIsUtf16(name);
}

} // namespace tvut
