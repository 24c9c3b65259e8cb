// A file is packed first, so that the length of its text is known; the text is then written once, to where it
// stays in the tree. Out of the tree it is decoded straight into a file that takes its name only when it is
// complete. Appending files stops at the first that fails; extracting goes on to the next.
#include "prof/embedded_files.h"

#include "files/file_name.h"
#include "files/found_files.h"
#include "platform/exception.h"
#include "platform/file.h"
#include "prof/path.h"
#include "prof/torn_file.h"
#include "runtime/diagnostics.h"
#include "text/bytes/byte_text.h"

#include <vector>

namespace tvut {

namespace {

constexpr std::u16string_view entryName = u"File.Entry";
constexpr std::u16string_view nameItem = u"Name";
constexpr std::u16string_view contentsItem = u"Contents";

class clsPackedValue final : public IclsValueWriter {
  public:
    explicit clsPackedValue(const clsPackedBytes& bytes) : bytes_(bytes) {}
    std::size_t Length() const override { return bytes_.TextLength(); }
    void Write(char16_t* text) const override { bytes_.WriteText(text); }

  private:
    const clsPackedBytes& bytes_;
};

// A text that does not decode: what it was to be written to is not at fault.
class clsUndecoded : public clsException {
  public:
    clsUndecoded() : clsException("text does not decode") {}
};

void Tell(std::u16string_view before, std::u16string_view name, std::u16string_view after) {
    clsDiagnosticLine().Put(before).Put(u"'").Put(name).Put(u"'").Put(after).Write();
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

void AppendFile(clsItemList& list, const std::u16string& folder, const std::u16string& name,
                std::u16string_view key, clsPatience& patience) {
    const std::u16string file = folder + name;
    try {
        AppendEntry(list, name, ProfpPackFile(file, key, patience));
    } catch (const clsException&) {
        Tell(u"WRN: ProfAppendFiles: ", file, u" could not be read");
        throw;
    }
}

// ---- Out of the profile -------------------------------------------------------------------------

void ExtractEntry(clsItemList& entry, const std::u16string& folder, std::u16string_view key) {
    const clsItem* const name = entry.FindItem(scName(nameItem));
    if (!name || name->Value().empty()) {
        clsDiagnosticLine().Put(u"ProfExtractFiles:\"Filename=\" not found").Write();
        throw clsException("file entry without a name");
    }
    const std::u16string file = folder + std::u16string(name->Value());
    const clsItem* const contents = entry.FindItem(scName(contentsItem));
    const bool isBareName = UtilpIsBareFileName(name->Value());
    try {
        if (contents && isBareName)
            return ProfpWriteFile(file, contents->Value(), key);
    } catch (const clsUndecoded&) {
        Tell({}, file, u" could not be created");
        throw;
    }
    Tell({}, file, u" could not be created");
    throw clsException("file entry with another name than a file's, or without contents",
                       isBareName ? reason::invalidData : reason::invalidName);
}

} // namespace

clsPackedBytes ProfpPackBytes(clsByteSource& source, std::u16string_view key) {
    return {source, clsPackedBytes::Compression::zlib, key};
}

clsPackedBytes ProfpPackFile(const std::u16string& file, std::u16string_view key) {
    clsPatience patience(openPatience);
    return ProfpPackFile(file, key, patience);
}

clsPackedBytes ProfpPackFile(const std::u16string& file, std::u16string_view key, clsPatience& patience) {
    DWORD error = reason::invalidName;
    const clsFileHandle handle =
        UtilpIsFileName(file) ? PlatformOpenFile(file.c_str(), openToRead, patience, error) : clsFileHandle();
    if (!handle)
        throw clsException("file cannot be opened", error);
    clsFileSource source(handle.Get());
    UtilpRequireReadable(source.SizeHint());
    return ProfpPackBytes(source, key);
}

void ProfpAppendBytes(clsItemList& start, std::u16string_view path, const clsPackedBytes& bytes) {
    ProfpAppendItem(start, path, clsPackedValue(bytes));
}

void ProfpWriteBytes(std::u16string_view text, std::u16string_view key, clsByteSink& sink) {
    if (!UtilpWriteBytesOfText(text, key, sink))
        throw clsUndecoded();
    sink.Finish();
}

void ProfpWriteFile(const std::u16string& file, std::u16string_view text, std::u16string_view key) {
    try {
        UtilpRequireFileName(file);
        clsReplacingSink sink(file.c_str());
        ProfpWriteBytes(text, key, sink);
    } catch (const clsTornFile& torn) {
        ProfpTellOfTornFile(file, torn);
        throw;
    } catch (const clsUndecoded&) {
        throw; // it has a line of its own
    } catch (const clsException&) {
        Tell({}, file, u" could not be created");
        throw;
    }
}

void ProfpAppendFiles(clsItemList& list, std::u16string_view patterns, std::u16string_view key) {
    clsPatience patience(openPatience);
    for (std::u16string_view element; !(element = UtilpTakeFilePattern(patterns)).empty();) {
        const scFilePattern pattern(element);
        const std::vector<std::u16string> names = UtilpFilesOf(pattern);
        if (names.empty())
            Tell(u"WRN: ProfAppendFiles: ", element, u" not found");
        for (const std::u16string& name : names)
            AppendFile(list, std::u16string(pattern.folder), name, key, patience);
    }
}

void ProfpExtractFiles(clsItemList& list, std::u16string_view folder, std::u16string_view key) {
    std::u16string path(folder);
    unsigned long why = path.empty() ? reason::invalidName : PlatformMakeFolder(path.c_str());
    if (why != 0) {
        Tell(u"problem creating directory ", path, {});
        throw clsException("folder cannot be made", why);
    }
    if (path.back() != u'\\')
        path += u'\\';
    for (std::uint32_t position = 0; position < list.End(); ++position) {
        const clsItem& entry = list.At(position);
        if (!entry.IsList() || entry.Name() != entryName)
            continue;
        try {
            ExtractEntry(*entry.subList, path, key);
        } catch (const clsException& exception) {
            why = exception.Reason();
        }
    }
    if (why != 0)
        throw clsException("not every entry was extracted", why);
}

} // namespace tvut
