// Whatever an append does is done between two marks of the writer: what fails, wherever, throws, and the
// archive goes back to where it stood.
#include "zip/zip_file.h"

#include "files/file_name.h"
#include "files/found_files.h"
#include "files/numbered_name.h"
#include "platform/file.h"
#include "platform/letter_case.h"
#include "platform/long_path.h"
#include "platform/wide.h"
#include "runtime/diagnostics.h"
#include "runtime/system_result.h"
#include "zip/zip_fault.h"
#include "zip/zip_names.h"

#include <algorithm>

namespace tvut {

namespace {

std::u16string FullPath(std::u16string_view path) {
    const std::wstring full = PlatformFullPath(std::wstring(ToWide(path.data()), path.size()));
    if (full.empty())
        throw clsException("path has no full form", reason::invalidName);
    return std::u16string(FromWide(std::wstring_view(full)));
}

// The path of what is to be packed: a separator at its end says nothing.
std::u16string SourcePath(std::u16string_view source) {
    std::u16string path = FullPath(source);
    while (path.ends_with(u'\\') && path.size() > 3)
        path.pop_back();
    return path;
}

std::u16string_view FolderOf(std::u16string_view path) {
    return path.substr(0, path.find_last_of(u'\\') + 1); // nothing found: npos + 1 is 0
}
std::u16string_view LastComponent(std::u16string_view path) {
    return path.substr(FolderOf(path).size());
}

// What no file can be called shows before anything is packed. Of a folder's path nothing is left, and the
// system refuses it.
std::u16string_view ArchiveName(std::u16string_view path) {
    const std::u16string_view name = LastComponent(path);
    if (!name.empty())
        UtilpRequireFileName(name);
    return name;
}

bool IsSame(std::u16string_view a, std::u16string_view b) {
    return PlatformCompareIgnoringCase(a, b) == 0;
}

std::u16string Below(std::u16string_view folder, std::u16string_view name, char16_t separator) {
    std::u16string path(folder);
    if (!path.empty() && path.back() != separator)
        path += separator;
    return path += name;
}

scNewZipEntry EntryOf(const scFoundFile& found, std::u16string_view name) {
    return {
        name, found.isFolder, found.attributes, {found.modified, found.accessed, found.created}, found.bytes};
}

std::u16string_view WordsOf(ZipFault fault) {
    switch (fault) {
    case ZipFault::cancelled:
        return u"cancelled";
    case ZipFault::unreadable:
        return u"cannot be read";
    case ZipFault::unwritable:
        return u"cannot be written";
    default:
        return u"too large";
    }
}

} // namespace

// Why something cannot be added.
class clsZIPFile::clsFailure final : public clsException {
  public:
    clsFailure(std::u16string what, UtilResult result, std::u16string_view words, unsigned long error = 0)
        : clsException("append", error), what_(std::move(what)), result_(result), words_(words) {}

    const std::u16string& What() const { return what_; }
    UtilResult Result() const { return result_; }
    std::u16string_view Words() const { return words_; }

    static clsFailure OfSystem(std::u16string_view what, unsigned long error) {
        const UtilResult result = UtilpResultOfError(error);
        return {std::u16string(what), result,
                result == UtilResult::notFound ? u"not found" : u"cannot be read", error};
    }

  private:
    std::u16string what_;
    UtilResult result_;
    std::u16string_view words_;
};

class clsZIPFile::clsProgress final : public IclsZipProgress {
  public:
    clsProgress(clsZIPFile& file, const scNewZipEntry& entry)
        : callback_(file.callback_.get()), name_(entry.name), isFolder_(entry.isFolder) {
        shown_.isFolder = entry.isFolder;
        shown_.isEncrypted = file.passwords_.Any() && !entry.isFolder;
        shown_.bytes = entry.bytes.value_or(0);
        shown_.modified = entry.times.modified;
        shown_.index = file.writer_.Count();
        if (isFolder_)
            name_ += u'/';
        shown_.name = name_.c_str();
    }
    clsProgress(const clsProgress&) = delete;
    clsProgress& operator=(const clsProgress&) = delete;

    // False when the caller does not want the entry.
    bool Ask() {
        shown_.isQuestion = true;
        const ZipAnswer answer = Show();
        shown_.isQuestion = false;
        return answer != ZipAnswer::skip;
    }
    void Tell(std::uint64_t done, std::uint64_t packed, bool isEnd) override {
        shown_.done = done;
        shown_.packed = packed;
        if (isEnd)
            shown_.bytes = done;
        Show();
    }

  private:
    ZipAnswer Show() {
        const ZipAnswer answer = callback_ ? callback_->Show(shown_) : ZipAnswer::go;
        UtilpRequire(answer != ZipAnswer::cancel, ZipFault::cancelled);
        return answer;
    }

    IclsZipCallback* callback_;
    std::u16string name_;
    bool isFolder_;
    scShownZipEntry shown_;
};

clsZIPFile::clsZIPFile(std::u16string_view file, ZipCompression compression, std::u16string_view password,
                       std::unique_ptr<IclsZipCallback> callback)
    : passwords_(password), file_(file), ownFolder_(FolderOf(FullPath(file))),
      ownName_(ArchiveName(FullPath(file))), replacement_((ownFolder_ + ownName_).c_str()),
      callback_(std::move(callback)), writer_(replacement_.File(), compression, passwords_.Utf8()) {}

// ---- What callers ask for -----------------------------------------------------------------------

UtilResult clsZIPFile::Append(const std::u16string& source, std::u16string_view name) {
    return Whole(source, [&] { AddSource(source, name); });
}

UtilResult clsZIPFile::AppendList(std::span<const std::u16string> sources, std::u16string_view folder) {
    if (!folder.empty() && !UtilpCanBeEntryName(folder)) {
        Tell(u"ERR", folder, u"name is not possible");
        return UtilResult::badArgument;
    }
    UtilResult first = UtilResult::ok;
    for (const std::u16string& source : sources) {
        const UtilResult result = scFilePattern(source).HasWildcards()
                                      ? AppendPattern(source, folder)
                                      : Whole(source, [&] { AddNumbered(source, folder); });
        if (result == UtilResult::cancelled)
            return result;
        first = first == UtilResult::ok ? result : first;
    }
    return first;
}

UtilResult clsZIPFile::AppendPattern(const std::u16string& source, std::u16string_view folder) {
    const scFilePattern pattern(source);
    const std::vector<std::u16string> names = UtilpFilesOf(pattern);
    if (names.empty()) {
        Tell(u"ERR", source, u"not found");
        return UtilResult::notFound;
    }
    UtilResult first = UtilResult::ok;
    for (const std::u16string& name : names) {
        const std::u16string path = std::u16string(pattern.folder) + name;
        const UtilResult result = Whole(path, [&] { AddNumbered(path, folder); });
        if (result == UtilResult::cancelled)
            return result;
        first = first == UtilResult::ok ? result : first;
    }
    return first;
}

UtilResult clsZIPFile::AppendStream(clsByteSource& stream, std::u16string_view name, std::uint64_t modified) {
    const std::u16string what(name);
    return Whole(what, [&] {
        std::u16string slashed = what;
        std::ranges::replace(slashed, u'\\', u'/');
        RequireFree(what, slashed, false);
        const scNewZipEntry entry{slashed, false, FILE_ATTRIBUTE_ARCHIVE, {modified, modified, modified}, {}};
        clsProgress progress(*this, entry);
        if (progress.Ask())
            writer_.AddFile(entry, stream, progress);
    });
}

UtilResult clsZIPFile::Close() {
    try {
        UtilpRequire(!writer_.HasFailed(), ZipFault::unwritable);
        writer_.Finish();
        replacement_.File().FlushToDisk();
    } catch (const clsException& error) {
        TellClose(error.Reason());
        return UtilResult::failed;
    }
    const DWORD error = replacement_.PutInPlace(openPatience);
    if (error == ERROR_SUCCESS)
        return UtilResult::ok;
    TellClose(error);
    const UtilResult result = UtilpResultOfError(error);
    return result == UtilResult::noAccess ? result : UtilResult::failed;
}

template <class Work>
UtilResult clsZIPFile::Whole(std::u16string_view what, Work work) {
    patience_ = clsPatience(openPatience);
    const clsZIPWriter::scMark mark = writer_.Mark();
    try {
        UtilpRequire(!writer_.HasFailed(), ZipFault::unwritable);
        work();
        return UtilResult::ok;
    } catch (const clsFailure& failure) {
        writer_.TakeBack(mark);
        Tell(u"ERR", failure.What(), failure.Words(), failure.Reason());
        return failure.Result();
    } catch (const clsZIPError& error) {
        writer_.TakeBack(mark);
        Tell(u"ERR", what, WordsOf(error.Fault()), error.Reason());
        return UtilpResultOf(error.Fault());
    } catch (...) {
        writer_.TakeBack(mark);
        throw;
    }
}

// ---- Sources ------------------------------------------------------------------------------------

scFoundFile clsZIPFile::LookAt(const std::u16string& path) {
    unsigned long error = 0;
    const std::optional<scFoundFile> found = PlatformLookAt(path, error);
    if (!found)
        throw clsFailure::OfSystem(path, error);
    return *found;
}

void clsZIPFile::AddSource(const std::u16string& source, std::u16string_view name) {
    const std::u16string path = SourcePath(source);
    std::u16string entryName(name.empty() ? LastComponent(path) : name);
    if (!UtilpCanBeEntryName(entryName))
        throw clsFailure(source, UtilResult::badArgument, u"name is not possible");
    std::ranges::replace(entryName, u'\\', u'/');
    AddFound(path, LookAt(path), entryName);
}

void clsZIPFile::AddNumbered(const std::u16string& source, std::u16string_view folder) {
    const std::u16string path = SourcePath(source);
    const std::u16string_view last = LastComponent(path);
    const scFoundFile found = LookAt(path);
    std::u16string top(folder);
    std::ranges::replace(top, u'\\', u'/');
    std::u16string name = Below(top, last, u'/');
    for (std::uint32_t number = 2; writer_.IsTaken(name, false) && !writer_.IsBelowFile(name); ++number)
        name = Below(top, UtilpNumberedName(last, number), u'/');
    AddFound(path, found, name);
}

void clsZIPFile::AddFound(const std::u16string& path, const scFoundFile& found, const std::u16string& name) {
    if (found.isFolder)
        AddTree(path, found, name);
    else
        AddFile(path, found, name);
}

// A folder on the way through a tree.
struct clsZIPFile::scLevel {
    std::u16string path, name;
    std::vector<scFoundFile> files;
    std::size_t next = 0;

    scLevel(const std::u16string& folder, const std::u16string& entryName)
        : path(folder), name(entryName), files(List(folder)) {}

  private:
    static std::vector<scFoundFile> List(const std::u16string& folder) {
        try {
            std::vector<scFoundFile> files = PlatformListFolder(folder);
            std::ranges::sort(files, UtilpComesBefore, &scFoundFile::name);
            return files;
        } catch (const clsException& error) {
            throw clsFailure::OfSystem(folder, error.Reason());
        }
    }
};

// Depth is data: a level for each folder that is open, in a list.
void clsZIPFile::AddTree(const std::u16string& path, const scFoundFile& found, const std::u16string& name) {
    std::vector<scLevel> levels;
    if (AddFolder(path, found, name))
        levels.emplace_back(path, name);
    while (!levels.empty()) {
        scLevel& level = levels.back();
        if (level.next == level.files.size()) {
            levels.pop_back();
            continue;
        }
        const scFoundFile file = std::move(level.files[level.next++]);
        const std::u16string filePath = Below(level.path, file.name, u'\\');
        const std::u16string fileName = Below(level.name, file.name, u'/');
        if (IsOwn(level.path, file.name))
            Tell(u"WRN", filePath, u"the archive itself is left out");
        else if (file.isLink)
            Tell(u"WRN", filePath, u"link is passed over");
        else if (!file.isFolder)
            AddFile(filePath, file, fileName);
        else if (AddFolder(filePath, file, fileName))
            levels.emplace_back(filePath, fileName);
    }
}

// False when the caller does not want it, nor what is in it.
bool clsZIPFile::AddFolder(const std::u16string& path, const scFoundFile& found, const std::u16string& name) {
    RequireFree(path, name, true);
    const scNewZipEntry entry = EntryOf(found, name);
    clsProgress progress(*this, entry);
    if (!progress.Ask())
        return false;
    writer_.AddFolder(entry);
    progress.Tell(0, 0, true);
    return true;
}

void clsZIPFile::AddFile(const std::u16string& path, const scFoundFile& found, const std::u16string& name) {
    RequireFree(path, name, false);
    const scNewZipEntry entry = EntryOf(found, name);
    clsProgress progress(*this, entry);
    if (!progress.Ask())
        return;
    DWORD error = 0;
    const clsFileHandle handle = PlatformOpenFile(path.c_str(), openToRead, patience_, error);
    if (!handle)
        throw clsFailure::OfSystem(path, error);
    clsFileSource source(handle.Get());
    writer_.AddFile(entry, source, progress);
}

void clsZIPFile::RequireFree(const std::u16string& what, std::u16string_view name, bool isFolder) {
    if (!UtilpCanBeEntryName(name))
        throw clsFailure(what, UtilResult::badArgument, u"name is not possible");
    if (writer_.IsTaken(name, isFolder))
        throw clsFailure(what, UtilResult::exists, u"name is there already");
}

// The file that the archive is written to lies in no archive, nor does the one that it will replace.
bool clsZIPFile::IsOwn(const std::u16string& folder, const std::u16string& name) const {
    if (IsSame(name, LastComponent(FromWide(std::wstring_view(replacement_.File().Path())))))
        return true;
    return IsSame(name, ownName_) && IsSame(Below(folder, {}, u'\\'), ownFolder_);
}

// ---- Lines --------------------------------------------------------------------------------------

namespace {

// The system's error belongs to what cannot be read or written.
void PutReason(clsDiagnosticLine& line, std::u16string_view words, unsigned long error) {
    line.Put(words);
    if (words.starts_with(u"cannot"))
        line.Put(u" (").PutDecimal(static_cast<std::uint32_t>(error), 1).Put(u")");
    line.Write();
}

} // namespace

void clsZIPFile::Tell(std::u16string_view level, std::u16string_view what, std::u16string_view words,
                      unsigned long error) const {
    clsDiagnosticLine line;
    line.Put(level).Put(u": clsZIPFile('").Put(file_).Put(u"')::Append('").Put(what).Put(u"'): ");
    PutReason(line, words, error);
}

void clsZIPFile::TellClose(unsigned long error) const {
    clsDiagnosticLine line;
    line.Put(u"ERR: clsZIPFile('").Put(file_).Put(u"')::Close(): ");
    PutReason(line, u"cannot be written", error);
}

} // namespace tvut
