#include "prof/embedded_files.h"

#include "files/file_name.h"
#include "files/file_pattern.h"
#include "platform/exception.h"
#include "platform/file.h"
#include "platform/file_finder.h"
#include "platform/letter_case.h"
#include "prof/path.h"
#include "runtime/diagnostics.h"
#include "text/byte_text.h"

#include <algorithm>
#include <vector>

namespace tvut {

namespace {

constexpr std::u16string_view entryName = u"File.Entry";
constexpr std::u16string_view nameItem = u"Name";
constexpr std::u16string_view contentsItem = u"Contents";

// Ends where there are more bytes than can be read again.
class clsLimitedSource final : public clsByteSource {
  public:
    explicit clsLimitedSource(clsByteSource& source) : source_(source) {
        Require(source_.SizeHint() <= largestUnfoldedBytes);
    }
    std::uint64_t SizeHint() override { return source_.SizeHint(); }
    std::size_t Read(void* buffer, std::size_t bytes) override {
        const std::size_t read = source_.Read(buffer, bytes);
        all_ += read;
        Require(all_ <= largestUnfoldedBytes);
        return read;
    }

  private:
    static void Require(bool fits) {
        if (!fits)
            throw clsException("more bytes than a text of a profile can hold");
    }

    clsByteSource& source_;
    std::uint64_t all_ = 0;
};

class clsPackedValue final : public IclsValueWriter {
  public:
    explicit clsPackedValue(const clsPackedBytes& bytes) : bytes_(bytes) {}
    std::size_t Length() const override { return bytes_.TextLength(); }
    void Write(char16_t* text) const override { bytes_.WriteText(text); }

  private:
    const clsPackedBytes& bytes_;
};

void Tell(std::u16string_view before, std::u16string_view name, std::u16string_view behind) {
    clsDiagnosticLine().Put(before).Put(u"'").Put(name).Put(u"'").Put(behind).Write();
}

// ---- Into the profile ---------------------------------------------------------------------------

void AppendEntry(clsItemList& list, std::u16string_view name, const clsPackedBytes& bytes) {
    clsTree& tree = *list.Tree();
    clsItemList& entry = *tree.AppendList(list, scName(entryName));
    try {
        tree.AppendItem(entry, scName(nameItem), name);
        tree.AppendItem(entry, scName(contentsItem), clsPackedValue(bytes));
    } catch (...) {
        ProfpRemoveList(entry);
        throw;
    }
}

bool AppendFile(clsItemList& list, const std::u16string& folder, const std::u16string& name,
                std::u16string_view key) {
    const std::u16string file = folder + name;
    try {
        AppendEntry(list, name, ProfpPackFile(file, key));
        return true;
    } catch (const clsException&) {
        Tell(u"ProfAppendFiles: ", file, u" could not be read");
        return false;
    }
}

// File systems list names in orders of their own; ours is the same everywhere.
bool ComesBefore(const std::u16string& a, const std::u16string& b) {
    const int order = PlatformCompareIgnoringCase(a, b);
    return order != 0 ? order < 0 : a < b;
}

// A name is looked up itself. For a pattern the whole folder is, and the names are matched here: the
// system would match short names that nobody sees as well.
std::vector<std::u16string> FilesOf(const scFilePattern& pattern) {
    const std::u16string folder(pattern.folder);
    if (!pattern.HasWildcards()) {
        if (!UtilpIsBareFileName(pattern.name))
            return {};
        return PlatformFindFiles(folder + std::u16string(pattern.name));
    }
    std::vector<std::u16string> names = PlatformFindFiles(folder + u"*");
    std::erase_if(names,
                  [&](const std::u16string& name) { return !UtilpMatchesPattern(name, pattern.name); });
    std::sort(names.begin(), names.end(), ComesBefore);
    return names;
}

// ---- Out of the profile -------------------------------------------------------------------------

bool ExtractEntry(clsItemList& entry, const std::u16string& folder, std::u16string_view key) {
    const clsItem* const name = entry.FindItem(scName(nameItem));
    if (!name || name->Value().empty()) {
        clsDiagnosticLine().Put(u"ProfExtractFiles:\"Filename=\" not found").Write();
        return false;
    }
    const std::u16string file = folder + std::u16string(name->Value());
    const clsItem* const contents = entry.FindItem(scName(contentsItem));
    if (contents && UtilpIsBareFileName(name->Value()))
        return ProfpWriteFile(file, contents->Value(), key);
    Tell({}, file, u" could not be created");
    return false;
}

} // namespace

clsPackedBytes ProfpPackBytes(clsByteSource& source, std::u16string_view key) {
    clsLimitedSource limited(source);
    return {limited, clsPackedBytes::Compression::zlib, key};
}

clsPackedBytes ProfpPackFile(const std::u16string& file, std::u16string_view key) {
    DWORD error = 0;
    const clsFileHandle handle =
        UtilpIsFileName(file) ? PlatformOpenFile(file.c_str(), openToRead, error) : clsFileHandle();
    if (!handle)
        throw clsException("file cannot be opened");
    clsFileSource source(handle.Get());
    return ProfpPackBytes(source, key);
}

void ProfpAppendBytes(clsItemList& start, std::u16string_view path, const clsPackedBytes& bytes) {
    ProfpAppendItem(start, path, clsPackedValue(bytes));
}

bool ProfpWriteFile(const std::u16string& file, std::u16string_view text, std::u16string_view key) {
    try {
        if (UtilpIsFileName(file)) {
            clsReplacingSink sink(file.c_str());
            if (UtilpWriteBytesOfText(text, key, sink)) {
                sink.Finish();
                return true;
            }
        }
    } catch (const clsException&) { // it could not be made, written or put in its place
    }
    Tell({}, file, u" could not be created");
    return false;
}

bool ProfpAppendFiles(clsItemList& list, std::u16string_view patterns, std::u16string_view key) {
    for (std::u16string_view element; !(element = UtilpTakeFilePattern(patterns)).empty();) {
        const scFilePattern pattern(element);
        const std::vector<std::u16string> names = FilesOf(pattern);
        if (names.empty())
            Tell(u"ProfAppendFiles: ", element, u" not found");
        for (const std::u16string& name : names) {
            if (!AppendFile(list, std::u16string(pattern.folder), name, key))
                return false;
        }
    }
    return true;
}

bool ProfpExtractFiles(clsItemList& list, std::u16string_view folder, std::u16string_view key) {
    std::u16string path(folder);
    bool complete = !path.empty() && PlatformMakeFolder(path.c_str());
    if (!complete)
        Tell(u"problem creating directory ", path, {});
    if (path.empty())
        return false;
    if (path.back() != u'\\')
        path += u'\\';
    for (std::uint32_t position = 0; position < list.End(); ++position) {
        const clsItem& entry = list.At(position);
        if (entry.IsList() && entry.Name() == entryName)
            complete = ExtractEntry(*entry.subList, path, key) && complete;
    }
    return complete;
}

} // namespace tvut
