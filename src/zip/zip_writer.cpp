// A local header is written before its entry's data and patched after it, mostly while both are still in
// memory: archives need no data descriptors, and 2,000 small files are a few dozen writes.
#include "zip/zip_writer.h"

#include "text/encoding/utf8.h"
#include "zip/zip_directory.h"
#include "zip/zip_fault.h"

#include <algorithm>

namespace tvut {

namespace {

// A file of nearly 4 GB may come out larger than that when it does not shrink after all.
constexpr std::uint64_t surelySmall = 0xFF000000;

bool IsAscii(std::string_view name) {
    return std::ranges::all_of(name, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// An entry's name as its headers have it: UTF-8, "/" at the end of a folder's.
std::string HeaderNameOf(const scNewZipEntry& entry) {
    if (entry.name.size() > longestZipPath)
        throw clsZIPError(ZipFault::longPath);
    std::string name(entry.name.size() * longestUtf8 + 1, '\0');
    name.resize(UtilpEncodeUtf8(entry.name, name.data()));
    if (entry.isFolder)
        name += '/';
    if (name.size() > elsewhere16)
        throw clsZIPError(ZipFault::longPath);
    return name;
}

} // namespace

// ---- Names --------------------------------------------------------------------------------------

bool clsZIPWriter::IsTaken(std::u16string_view name, bool isFolder) {
    using Kind = clsTakenNames::Kind;
    const Kind what = taken_.What(keys_.Along(name, u'/', [](PathKey) {}));
    return IsBelowFile(name) || (what != Kind::nothing && !(what == Kind::impliedFolder && isFolder));
}

bool clsZIPWriter::IsBelowFile(std::u16string_view name) {
    bool isBelow = false;
    keys_.Along(name, u'/', [&](PathKey folder) {
        isBelow = isBelow || taken_.What(folder) == clsTakenNames::Kind::file;
    });
    return isBelow;
}

void clsZIPWriter::TakeName(std::u16string_view name, bool isFolder) {
    using Kind = clsTakenNames::Kind;
    const PathKey key = keys_.Along(name, u'/', [&](PathKey folder) {
        if (taken_.What(folder) == Kind::nothing)
            taken_.Take(folder, Kind::impliedFolder);
    });
    taken_.Take(key, isFolder ? Kind::folder : Kind::file);
}

// ---- Entries ------------------------------------------------------------------------------------

void clsZIPWriter::AddFolder(const scNewZipEntry& made) {
    const std::string name = HeaderNameOf(made);
    const scMark mark = Mark();
    try {
        const scWrittenEntry entry = NewEntry(made, name);
        WriteHead(entry, name);
        Keep(entry, made, name, mark.position);
    } catch (...) {
        TakeBack(mark);
        throw;
    }
}

void clsZIPWriter::AddFile(const scNewZipEntry& made, clsByteSource& source, IclsZipProgress& progress) {
    const std::string name = HeaderNameOf(made);
    const scMark mark = Mark();
    try {
        scWrittenEntry entry = NewEntry(made, name);
        entry.Set(scWrittenEntry::enciphered, isEnciphering_);
        packer_.Begin(source, progress);
        entry.Set(scWrittenEntry::largeRoom, !packer_.IsWhole() && made.bytes.value_or(UINT64_MAX) > surelySmall);
        WriteHead(entry, name);
        const clsEntryPacker::scPacked packed = packer_.Pack();
        entry.packed = packed.packed;
        entry.bytes = packed.bytes;
        entry.crc = packed.crc;
        entry.Set(scWrittenEntry::deflated, packed.isDeflated);
        if (entry.IsLarge() && !entry.Is(scWrittenEntry::largeRoom)) // it has grown by gigabytes meanwhile
            throw clsZIPError(ZipFault::tooManyBytes);
        PatchHead(entry, mark.position);
        Keep(entry, made, name, mark.position);
        progress.Tell(entry.bytes, entry.packed, true);
    } catch (...) {
        TakeBack(mark);
        throw;
    }
}

scWrittenEntry clsZIPWriter::NewEntry(const scNewZipEntry& made, std::string_view name) const {
    scWrittenEntry entry;
    entry.times = made.times;
    entry.attributes = made.attributes;
    entry.nameBytes = static_cast<std::uint16_t>(name.size());
    entry.Set(scWrittenEntry::utf8Name, !IsAscii(name));
    entry.Set(scWrittenEntry::farAway, UtilpIsLarge(output_.Position()));
    return entry;
}

void clsZIPWriter::WriteHead(const scWrittenEntry& entry, std::string_view name) {
    clsShortBytes head, extras;
    head.Put([&](char* to) { return UtilpWriteRecord(to, entry.LocalHeader()); });
    entry.PutLocalExtras(extras);
    output_.Write(head.Data(), head.Size());
    output_.Write(name.data(), name.size());
    output_.Write(extras.Data(), extras.Size());
}

// What was not known before the data: sizes, CRC, method, and of the extra fields those of a large entry or an
// enciphered one.
void clsZIPWriter::PatchHead(const scWrittenEntry& entry, std::uint64_t position) {
    clsShortBytes head, extras;
    head.Put([&](char* to) { return UtilpWriteRecord(to, entry.LocalHeader()); });
    entry.PutLocalExtras(extras);
    output_.Patch(position, head.Data(), head.Size());
    output_.Patch(position + head.Size() + entry.nameBytes, extras.Data(), extras.Size());
}

// A name that is taken without its entry would stay taken: that comes last.
void clsZIPWriter::Keep(scWrittenEntry entry, const scNewZipEntry& made, std::string_view name,
                        std::uint64_t position) {
    const std::uint64_t bytes = entry.CentralBytes(position);
    if (entries_.size() == mostZipEntries || directoryBytes_ + bytes > largestZipDirectory)
        throw clsZIPError(ZipFault::tooManyEntries);
    entry.name = names_.Add(name);
    entries_.push_back(entry);
    directoryBytes_ += bytes;
    TakeName(made.name, made.isFolder);
}

void clsZIPWriter::TakeBack(const scMark& mark) {
    if (HasFailed())
        return;
    output_.Cut(mark.position);
    directoryBytes_ = mark.directoryBytes;
    const bool wereKept = entries_.size() != mark.entries;
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(mark.entries), entries_.end());
    names_.Cut(mark.names);
    if (wereKept)
        TakeNamesAgain();
}

// An archive that does not know its own names cannot go on.
void clsZIPWriter::TakeNamesAgain() {
    try {
        taken_.Clear();
        std::u16string name;
        for (const scWrittenEntry& entry : entries_) {
            name.resize(entry.nameBytes);
            name.resize(UtilpDecodeUtf8(names_.View(entry.name, entry.nameBytes), name.data()));
            const bool isFolder = name.ends_with(u'/');
            if (isFolder)
                name.pop_back();
            TakeName(name, isFolder);
        }
    } catch (...) {
        output_.Fail();
        throw;
    }
}

// ---- The directory ------------------------------------------------------------------------------

void clsZIPWriter::Finish() {
    const std::uint64_t directoryAt = output_.Position();
    std::uint64_t position = 0;
    for (const scWrittenEntry& entry : entries_) {
        WriteDirectoryEntry(entry, position);
        position += entry.LocalBytes();
    }
    WriteEnd(directoryAt);
    output_.Flush();
}

void clsZIPWriter::WriteDirectoryEntry(const scWrittenEntry& entry, std::uint64_t position) {
    clsShortBytes head, extras;
    head.Put([&](char* to) { return UtilpWriteRecord(to, entry.CentralHeader(position)); });
    entry.PutCentralExtras(extras, position);
    const std::string_view name = names_.View(entry.name, entry.nameBytes);
    output_.Write(head.Data(), head.Size());
    output_.Write(name.data(), name.size());
    output_.Write(extras.Data(), extras.Size());
}

void clsZIPWriter::WriteEnd(std::uint64_t directoryAt) {
    const std::uint64_t end = output_.Position();
    const std::uint64_t bytes = end - directoryAt;
    const std::uint64_t count = entries_.size();
    clsShortBytes records;
    if (count >= elsewhere16 || UtilpIsLarge(directoryAt) || UtilpIsLarge(bytes)) {
        records.Put([&](char* to) {
            return UtilpWriteRecord(to, scZip64EndRecord{scZip64EndRecord::sizeOfRest, madeOnNtfs | zip64Version,
                                                         zip64Version, 0, 0, count, count, bytes, directoryAt});
        });
        records.Put([&](char* to) { return UtilpWriteRecord(to, scZip64Locator{0, end, 1}); });
    }
    const auto shownCount = static_cast<std::uint16_t>(std::min<std::uint64_t>(count, elsewhere16));
    records.Put([&](char* to) {
        return UtilpWriteRecord(
            to, scEndRecord{0, 0, shownCount, shownCount, UtilpShown(bytes), UtilpShown(directoryAt), 0});
    });
    output_.Write(records.Data(), records.Size());
}

} // namespace tvut
