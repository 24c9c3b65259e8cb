// Each change is made twice: in the text, and in the tree that was read from it. Before the file is replaced
// the new text is read, and has to give the changed tree. So whatever a file's encoding or contents may do to
// a change, it is made as it was meant or not at all.
#include "edited_ini.h"

#include "exit_code.h"
#include "file_access.h"
#include "input_file.h"
#include "profile_kind.h"
#include "reading.h"
#include "replaced_file.h"
#include "system_reason.h"
#include "text_io.h"

namespace tool::prof {

namespace {

constexpr DWORD patience = 10'000; // milliseconds, as the library has for a file that others hold
constexpr DWORD interval = 100;
constexpr LONGLONG largestFile = 256 * 1024 * 1024;
constexpr const char* beingChanged = "another program is changing it";

scContents ContentsOf(const std::string& file) {
    return file == standardStream ? ContentsOfBytes(StandardInput()) : ContentsOfFile(ToWide(file));
}

// What an INI file may look like that does not show it.
bool MayBeIni(FileKind kind) {
    return kind == FileKind::empty || kind == FileKind::comments || kind == FileKind::other;
}

bool IsIni(FileKind kind, const scArguments& arguments) {
    return kind == FileKind::plainIni || ((kind == FileKind::missing || MayBeIni(kind)) &&
                                          (arguments.plainIni || HasIniName(arguments.file)));
}

// Others may read it, but neither change nor replace it.
clsHandle Hold(const std::wstring& path) {
    const ULONGLONG start = GetTickCount64();
    for (;;) {
        clsHandle file = FileHandle(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ,
                                                nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (file || GetLastError() != ERROR_SHARING_VIOLATION || GetTickCount64() - start > patience)
            return file;
        Sleep(interval);
    }
}

std::string ContentsOf(HANDLE file, const std::string& name) {
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(file, &size))
        throw scFailure{ExitCode::cannotOpen, name, SystemReason(GetLastError())};
    if (size.QuadPart > largestFile)
        throw scFailure{ExitCode::malformed, name, "is too large to be changed"};
    std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
    DWORD count = 0;
    if (!ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr))
        throw scFailure{ExitCode::cannotOpen, name, SystemReason(GetLastError())};
    if (count != bytes.size())
        throw scFailure{ExitCode::cannotOpen, name, beingChanged};
    return bytes;
}

clsPlainIniText::Section SectionIn(const std::vector<std::u16string>& names) {
    return names.size() == 1 ? std::nullopt : clsPlainIniText::Section{names.front()};
}

void RequireIniPath(const std::string& path, const Names& names) {
    if (names.size() > 2)
        throw scFailure{ExitCode::usage, path,
                        R"(an INI file has no sections in sections; a slash in a name is written \/)"};
    if (names.back().empty())
        throw scFailure{ExitCode::usage, path, "the path ends in \"/\": the item's name is missing"};
    if (!IsIniItemName(Units(names.back())) || !IsIniSectionName(Units(names.front())))
        throw scFailure{ExitCode::usage, path, "is no name that a line of an INI file can hold"};
}

void RequireIniValue(const std::string& path, std::wstring_view value) {
    if (!IsIniValue(Units(value)))
        throw scFailure{
            ExitCode::usage, path,
            "a line of an INI file cannot hold a value with a line end, or with a blank at its begin or end"};
}

} // namespace

bool IsIniChangedInPlace(const scArguments& arguments) {
    return arguments.output.empty() && IsIni(ContentsOf(arguments.file).kind, arguments);
}

clsEditedIni::clsEditedIni(const scArguments& arguments)
    : file_(arguments.file), bytes_(Read(arguments)), encoding_(bytes_), text_(encoding_.Units(bytes_)),
      profile_(clsProfile::OfBytes(bytes_, DisplayName(file_), PROF_READ_PLAIN_INI)), tree_(profile_) {}

std::string clsEditedIni::Read(const scArguments& arguments) {
    std::string bytes = file_ == standardStream ? StandardInput() : std::string{};
    if (file_ != standardStream) {
        turn_.emplace(file_);
        if (!arguments.create || ContentsOfFile(ToWide(file_)).kind != FileKind::missing)
            bytes = ReadHeld();
    }
    const scContents contents = ContentsOfBytes(bytes);
    if (const char* note = HowToRead(file_, contents, arguments.plainIni).note)
        PrintError("prof", DisplayName(file_), note);
    if (!IsIni(contents.kind, arguments))
        throw scFailure{ExitCode::cannotOpen, file_, beingChanged};
    return bytes;
}

std::string clsEditedIni::ReadHeld() {
    held_ = Hold(ToWide(file_));
    const DWORD error = GetLastError();
    if (held_)
        return ContentsOf(held_.get(), file_);
    if (error == ERROR_ACCESS_DENIED)
        if (const std::string reason = WhyNotWritable(ToWide(file_)); !reason.empty())
            throw scFailure{ExitCode::cannotSave, file_, reason};
    throw scFailure{ExitCode::cannotOpen, file_, SystemReason(error)};
}

std::u16string clsEditedIni::Encoded(std::wstring_view text) const {
    if (std::optional<std::u16string> units = encoding_.Encoded(text))
        return *std::move(units);
    throw scFailure{ExitCode::usage, DisplayName(file_),
                    "its code page has not all characters of " + ToUtf8(text)};
}

void clsEditedIni::Set(const std::string& path, std::wstring_view value) {
    const Names names = NamesInPath(ToWide(path));
    RequireIniPath(path, names);
    RequireIniValue(path, value);
    std::vector<std::u16string> encoded;
    for (const std::wstring& name : names)
        encoded.push_back(Encoded(name));
    text_.Set(SectionIn(encoded), encoded.back(), Encoded(value));
    tree_.Set(names, value);
}

void clsEditedIni::DeleteItems(const std::set<Names>& paths) {
    std::set<clsPlainIniText::scItem> items;
    for (const Names& names : paths) {
        std::optional<std::u16string> section;
        if (names.size() > 1)
            section = Encoded(names.front());
        items.insert({std::move(section), Encoded(names.back())});
    }
    text_.DeleteItems(items);
    tree_.DeleteItems(paths);
}

void clsEditedIni::DeleteLists(const std::set<Names>& paths) {
    std::set<std::u16string> sections;
    for (const Names& names : paths)
        sections.insert(Encoded(names.front()));
    text_.DeleteSections(sections);
    tree_.DeleteLists(paths);
}

// A first section [/], or a first item like <a>, would make another file of it, which the next change would
// replace.
void clsEditedIni::RequireReadBack(const std::string& bytes) const {
    if (const FileKind kind = ContentsOfBytes(bytes).kind; kind != FileKind::plainIni && !MayBeIni(kind))
        throw scFailure{ExitCode::usage, DisplayName(file_),
                        "would not be taken for an INI file any more; nothing was changed"};
    if (clsProfileTree{clsProfile::OfBytes(bytes, DisplayName(file_), PROF_READ_PLAIN_INI)}.IniLines() !=
        tree_.IniLines())
        throw scFailure{ExitCode::usage, DisplayName(file_),
                        "would not read back as it was meant, because of its encoding; nothing was changed"};
}

void clsEditedIni::Save() {
    const std::string bytes = encoding_.Bytes(text_.Text(), bytes_);
    RequireReadBack(bytes);
    if (!turn_)
        return bytes.starts_with("\xff\xfe") ? clsOutput::Standard().WriteDocument(bytes)
                                             : clsOutput::Standard().Write(bytes);
    held_.reset(); // what is held cannot be replaced; the turn keeps other prof away
    WriteWholeFile(file_, bytes);
}

} // namespace tool::prof
