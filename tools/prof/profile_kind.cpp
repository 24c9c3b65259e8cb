// Looks at a file's first header line.
#include "profile_kind.h"

#include "exit_code.h"
#include "input_file.h"
#include "text_io.h"

#include <algorithm>

namespace tool::prof {

namespace {

constexpr DWORD lookAhead = 64 * 1024;
constexpr std::string_view compressedMark = "ZZmQ";
constexpr std::string_view rootHeader = "[/]";
constexpr std::string_view blanks = " \t";
constexpr std::string_view lineEnds = "\r\n";

// The bytes that matter here are ASCII: without zero bytes all encodings look alike.
std::string asNarrow(std::string bytes) {
    std::erase(bytes, '\0');
    return bytes;
}

// The first line that begins with "[", without its indentation; a byte-order mark may stand before it.
std::string_view firstHeader(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of("\xef\xbb\xbf\xff\xfe"), text.size()));
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find_first_of(lineEnds));
        const std::size_t start = line.find_first_not_of(blanks);
        if (start != std::string_view::npos && line[start] == '[')
            return line.substr(start);
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return {};
}

bool endsWith(std::string_view name, std::string_view ending) {
    const auto same = [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + 32 : a) == b; };
    return name.size() >= ending.size() &&
           std::equal(ending.rbegin(), ending.rend(), name.rbegin(),
                      [&](char expected, char actual) { return same(actual, expected); });
}

} // namespace

FileKind kindOf(const std::wstring& path) {
    const InputFile file{path};
    if (!file.isOpen())
        return file.error() == ERROR_FILE_NOT_FOUND || file.error() == ERROR_PATH_NOT_FOUND
                   ? FileKind::missing
                   : FileKind::unreadable;
    const std::string bytes = file.read(lookAhead);
    const bool profile =
        bytes.empty() || bytes.starts_with(compressedMark) || firstHeader(asNarrow(bytes)) == rootHeader;
    return profile ? FileKind::profile : FileKind::other;
}

void requireReplaceable(const std::string& file, bool plainIni) {
    const FileKind kind = kindOf(toWide(file));
    if (kind == FileKind::unreadable)
        throw Failure{ExitCode::cannotOpen, file,
                      "cannot be looked at before it is replaced: in use or not permitted"};
    if (plainIni || (hasIniName(file) && kind != FileKind::profile))
        throw Failure{ExitCode::usage, file,
                      "a plain INI file would become a text profile and lose its comments; "
                      "name another file with --output"};
    if (kind == FileKind::other)
        throw Failure{ExitCode::usage, file,
                      "is not a text profile (its first list is not [/]) and would be replaced by one; "
                      "name another file with --output, or read it with --ini"};
}

bool hasIniName(std::string_view name) {
    return endsWith(name, ".ini") || endsWith(name, ".conf");
}

bool hasXfdfName(std::string_view name) {
    return endsWith(name, ".xfdf");
}

bool hasXmlName(std::string_view name) {
    return endsWith(name, ".xml");
}

} // namespace tool::prof
