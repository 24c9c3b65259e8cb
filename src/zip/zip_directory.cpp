// An archive is read from its end. The last end record whose comment ends with the file is the one; a file
// that somebody has appended to has none, and then every end record near its end is tried. The directory lies
// right before the end record (or its Zip64 form), wherever it says it does: the difference is what was put
// before the archive, and all positions move by it.
//
// Entries that share bytes are refused before any is unpacked: a small file could unfold to any size that
// way, and could be one thing to us and another to the next program.
#include "zip/zip_directory.h"

#include "text/encoding/utf8.h"
#include "zip/zip_extra.h"
#include "zip/zip_fault.h"
#include "zip/zip_records.h"

#include <algorithm>
#include <numeric>

namespace tvut {

namespace {

constexpr std::size_t longestComment = 0xFFFF;

bool IsElsewhere(const scEndRecord& end) {
    return end.disk == elsewhere16 || end.directoryDisk == elsewhere16 || end.entriesHere == elsewhere16 ||
           end.entries == elsewhere16 || end.directoryBytes == elsewhere32 || end.directoryAt == elsewhere32;
}

// Most archives have no comment: a look at the last bytes is enough.
bool EndsWithRecord(clsSourceWindow& window, std::uint64_t sourceBytes) {
    scEndRecord record;
    return sourceBytes >= scEndRecord::size &&
           UtilpReadRecord(window.At(sourceBytes - scEndRecord::size, scEndRecord::size), record) &&
           record.commentBytes == 0;
}

// The positions of end records in the last bytes of a source, the last one first; the one whose comment ends
// with the source alone, if there is one.
std::vector<std::uint64_t> FindEndRecords(clsSourceWindow& window, std::uint64_t sourceBytes) {
    if (EndsWithRecord(window, sourceBytes))
        return {sourceBytes - scEndRecord::size};
    const std::size_t bytes =
        static_cast<std::size_t>(std::min<std::uint64_t>(sourceBytes, scEndRecord::size + longestComment));
    const std::uint64_t start = sourceBytes - bytes;
    const std::string_view tail = window.At(start, bytes);
    std::vector<std::uint64_t> found;
    scEndRecord record;
    for (std::size_t at = tail.rfind("PK\5\6"); at != tail.npos;
         at = at == 0 ? tail.npos : tail.rfind("PK\5\6", at - 1)) {
        if (!UtilpReadRecord(tail.substr(at), record))
            continue;
        if (at + scEndRecord::size + record.commentBytes == tail.size())
            return {start + at};
        found.push_back(start + at);
    }
    return found;
}

// What the Zip64 records before an end record say; nothing when they are damaged. Their own position is
// taken as it is, or from where they must stand when something was put before the archive.
struct scFoundZip64 {
    scZip64EndRecord record;
    std::uint64_t at;
};
std::optional<scFoundZip64> ReadZip64(clsSourceWindow& window, const scZip64Locator& locator,
                                      std::uint64_t locatorAt) {
    scFoundZip64 found{};
    const auto isAt = [&](std::uint64_t at) {
        found.at = at;
        return at < locatorAt && UtilpReadRecord(window.At(at, scZip64EndRecord::size), found.record) &&
               found.record.restBytes >= scZip64EndRecord::sizeOfRest &&
               found.record.restBytes ==
                   locatorAt - at - (scZip64EndRecord::size - scZip64EndRecord::sizeOfRest);
    };
    if (isAt(locator.recordAt) ||
        (locatorAt >= scZip64EndRecord::size && isAt(locatorAt - scZip64EndRecord::size)))
        return found;
    return {};
}

// What an end record says, with the numbers that did not fit.
struct scEnd {
    std::uint64_t disk, directoryDisk, entriesHere, entries, directoryBytes, directoryAt;
    std::uint64_t at; // where the directory ends
};

void TakeFrom(const scZip64EndRecord& large, scEnd& end) {
    const auto take = [](std::uint64_t& place, std::uint64_t mark, std::uint64_t number) {
        place = place == mark ? number : place;
    };
    take(end.disk, elsewhere16, large.disk);
    take(end.directoryDisk, elsewhere16, large.directoryDisk);
    take(end.entriesHere, elsewhere16, large.entriesHere);
    take(end.entries, elsewhere16, large.entries);
    take(end.directoryBytes, elsewhere32, large.directoryBytes);
    take(end.directoryAt, elsewhere32, large.directoryAt);
}

std::optional<scEnd> ReadEnd(clsSourceWindow& window, std::uint64_t at) {
    scEndRecord record;
    if (!UtilpReadRecord(window.At(at, scEndRecord::size), record))
        return {};
    scEnd end{record.disk,
              record.directoryDisk,
              record.entriesHere,
              record.entries,
              record.directoryBytes,
              record.directoryAt,
              at};
    if (!IsElsewhere(record))
        return end;
    scZip64Locator locator;
    if (at < scZip64Locator::size ||
        !UtilpReadRecord(window.At(at - scZip64Locator::size, scZip64Locator::size), locator))
        return end; // 65,535 entries are a number like any
    UtilpRequire(locator.disks <= 1 && locator.disk == 0, ZipFault::severalDisks);
    const std::optional<scFoundZip64> large = ReadZip64(window, locator, at - scZip64Locator::size);
    if (!large)
        return {};
    TakeFrom(large->record, end);
    end.at = large->at;
    return end;
}

// The attributes that are taken over, of makers whose attributes are Windows' own.
void NoteAttributes(const scCentralHeader& header, scZipEntry& entry) {
    enum System : std::uint8_t { dos = 0, unixes = 3, ntfs = 10, vfat = 14, mac = 19 };
    constexpr std::uint32_t readOnly = 1, hidden = 2;
    constexpr unsigned kindShift = 28;
    constexpr std::uint32_t linkKind = 0xA;
    const auto system = static_cast<std::uint8_t>(header.madeBy >> 8);
    if (system == unixes || system == mac)
        entry.Set(scZipEntry::link, header.attributes >> kindShift == linkKind);
    if (system != dos && system != ntfs && system != vfat)
        return;
    entry.Set(scZipEntry::readOnly, (header.attributes & readOnly) != 0);
    entry.Set(scZipEntry::hidden, (header.attributes & hidden) != 0);
}

// Sets the entry's method and the marks of its encryption.
void NoteEncryption(const scCentralHeader& header, const clsEntryExtras& extras, scZipEntry& entry) {
    entry.method = header.method;
    if ((header.flags & (zipflag::strongEncryption | zipflag::maskedHeaders)) != 0)
        entry.Set(scZipEntry::encrypted | scZipEntry::unknownEncryption);
    if ((header.flags & zipflag::encrypted) == 0)
        return;
    entry.Set(scZipEntry::encrypted);
    const std::uint32_t check = (header.flags & zipflag::sizesFollow) != 0 ? header.time << 16 : header.crc;
    entry.passwordCheck = static_cast<std::uint8_t>(check >> 24);
    const std::optional<scAesField> aes = header.method == zipmethod::aes ? extras.Aes() : std::nullopt;
    if (!aes)
        return;
    if (aes->strength < 1 || aes->strength > 3 || aes->version < 1 || aes->version > 2) {
        entry.Set(scZipEntry::unknownEncryption);
        return;
    }
    entry.method = aes->method;
    entry.Set(aes->strength * scZipEntry::aes128);
    entry.Set(scZipEntry::authenticatedOnly, aes->version == 2);
}

} // namespace

// ---- Finding it ---------------------------------------------------------------------------------

void clsZipDirectory::Read(clsSourceWindow& window, std::uint64_t sourceBytes) {
    const std::vector<std::uint64_t> endRecords = FindEndRecords(window, sourceBytes);
    UtilpRequire(!endRecords.empty(), ZipFault::noArchive);
    if (endRecords.size() > 1) {
        UtilpRequire(TryEachOf(window, endRecords), ZipFault::badDirectory);
        return;
    }
    const std::optional<scPlace> place = PlaceBy(window, endRecords.front());
    UtilpRequire(place && ReadAt(window, *place), ZipFault::badDirectory);
}

// Somebody could put thousands of end records after one large directory: what is read for all of them
// together is bounded.
bool clsZipDirectory::TryEachOf(clsSourceWindow& window, const std::vector<std::uint64_t>& endRecords) {
    std::uint64_t left = 2 * bounds_.directoryBytes;
    for (const std::uint64_t at : endRecords) {
        try {
            const std::optional<scPlace> place = PlaceBy(window, at);
            if (!place || place->bytes > left)
                continue;
            left -= place->bytes;
            if (ReadAt(window, *place))
                return true;
        } catch (const clsZIPError& error) {
            if (error.Fault() == ZipFault::unreadable)
                throw;
        }
    }
    return false;
}

auto clsZipDirectory::PlaceBy(clsSourceWindow& window, std::uint64_t endRecordAt) const
    -> std::optional<scPlace> {
    const std::optional<scEnd> end = ReadEnd(window, endRecordAt);
    if (!end)
        return {};
    UtilpRequire(end->disk == 0 && end->directoryDisk == 0 && end->entriesHere == end->entries,
                 ZipFault::severalDisks);
    UtilpRequire(end->entries <= bounds_.entries && end->directoryBytes <= bounds_.directoryBytes,
                 ZipFault::tooManyEntries);
    if (end->directoryBytes > end->at || end->directoryAt > end->at - end->directoryBytes)
        return {};
    const std::uint64_t at = end->at - end->directoryBytes;
    return scPlace{at, end->directoryBytes, end->entries, at - end->directoryAt};
}

// ---- Reading it ---------------------------------------------------------------------------------

bool clsZipDirectory::ReadAt(clsSourceWindow& window, const scPlace& place) {
    entries_.clear();
    names_ = {};
    start_ = place.at;
    if (place.entries > place.bytes / scCentralHeader::size)
        return false;
    entries_.reserve(static_cast<std::size_t>(place.entries));
    std::uint64_t at = place.at;
    std::uint64_t left = place.bytes;
    for (std::uint64_t number = 0; number < place.entries; ++number) {
        scCentralHeader header;
        std::string_view record = window.From(at, scCentralHeader::size);
        if (left < scCentralHeader::size || !UtilpReadRecord(record, header))
            return false;
        const std::size_t bytes = scCentralHeader::size + header.nameBytes + header.extraBytes;
        record = (record.size() < bytes ? window.At(at, bytes) : record).substr(0, bytes);
        if (bytes + header.commentBytes > left || record.size() != bytes || !AddEntry(header, record, place))
            return false;
        at += bytes + header.commentBytes;
        left -= bytes + header.commentBytes;
    }
    return left == 0;
}

bool clsZipDirectory::AddEntry(const scCentralHeader& header, std::string_view record, const scPlace& place) {
    const std::string_view name = record.substr(scCentralHeader::size, header.nameBytes);
    const clsEntryExtras extras(record.substr(scCentralHeader::size + header.nameBytes));
    scLargeNumbers numbers{header.bytes, header.packed, header.position, header.disk};
    if (name.empty() || !extras.TakeLargeNumbers(numbers) || numbers.position > start_ - place.shift)
        return false;
    UtilpRequire(numbers.disk == 0, ZipFault::severalDisks);
    const scZipTimes times = extras.Times();
    scZipEntry entry{};
    entry.position = numbers.position + place.shift;
    entry.packed = numbers.packed;
    entry.bytes = numbers.bytes;
    entry.modified = times.modified != 0 ? UtilpUnwrappedTime(times.modified, header.time)
                                         : UtilpFromDosTime(header.time).value_or(0);
    entry.created = times.created;
    entry.crc = header.crc;
    NoteAttributes(header, entry);
    NoteEncryption(header, extras, entry);
    NoteName(entry, name, (header.flags & zipflag::utf8) != 0, extras);
    entries_.push_back(entry);
    return true;
}

// The second name, if there is one, stands before the header's with two bytes for its length.
void clsZipDirectory::NoteName(scZipEntry& entry, std::string_view name, bool isUtf8,
                               const clsEntryExtras& extras) {
    entry.nameBytes = static_cast<std::uint16_t>(name.size());
    const std::optional<std::string_view> unicode = isUtf8 ? std::nullopt : extras.UnicodeName(name);
    if (unicode) {
        entry.Set(scZipEntry::unicodeName);
        char length[2];
        UtilpWriteNumber(length, static_cast<std::uint16_t>(unicode->size()));
        entry.name = names_.Add(std::string_view(length, sizeof length), *unicode, name);
    } else {
        const bool isPlain = UtilpIsPlainZipName(name);
        entry.Set(scZipEntry::plainName, isPlain);
        entry.Set(scZipEntry::utf8Name, isUtf8 || isPlain || UtilpIsUtf8(name));
        entry.name = names_.Add(name);
    }
    // A backslash may be half of a character, and a dot a component that is dropped.
    const char last = unicode ? unicode->back() : name.back();
    std::u16string read;
    if (last == '/' ||
        ((last == '\\' || last == '.') && ReadName(entry, read) == ZipNameKind::fine && read.ends_with(u'/')))
        entry.Set(scZipEntry::folder);
}

namespace {

// The bytes of a second name, and how many stand before the header's.
struct scSecondName {
    std::size_t before, bytes;
};
scSecondName SecondName(const clsNameArena& names, const scZipEntry& entry) {
    if (!entry.Is(scZipEntry::unicodeName))
        return {0, 0};
    const std::size_t bytes = UtilpReadNumber<std::uint16_t>(names.View(entry.name, 2).data());
    return {2 + bytes, bytes};
}

} // namespace

std::string_view clsZipDirectory::HeaderName(const scZipEntry& entry) const {
    const scSecondName second = SecondName(names_, entry);
    return names_.View(entry.name, second.before + entry.nameBytes).substr(second.before);
}

ZipNameKind clsZipDirectory::ReadName(const scZipEntry& entry, std::u16string& name) const {
    if (entry.Is(scZipEntry::unicodeName))
        return UtilpReadZipName(names_.View(entry.name, SecondName(names_, entry).before).substr(2),
                                ZipNameForm::utf8, name);
    if (entry.Is(scZipEntry::plainName)) {
        name.resize(entry.nameBytes);
        UtilpDecodeUtf8(HeaderName(entry), name.data());
        return ZipNameKind::fine;
    }
    return UtilpReadZipName(HeaderName(entry),
                            entry.Is(scZipEntry::utf8Name) ? ZipNameForm::utf8 : ZipNameForm::oem, name);
}

// ---- Positions ----------------------------------------------------------------------------------

void clsZipDirectory::CheckPositions() {
    OrderByPosition();
    DropRepeated();
    for (std::size_t rank = 0; rank < entries_.size(); ++rank) {
        const scZipEntry& entry = entries_[NumberAt(rank)];
        const std::uint64_t end = rank + 1 < entries_.size() ? entries_[NumberAt(rank + 1)].position : start_;
        const std::uint64_t heads = scLocalHeader::size + entry.nameBytes;
        UtilpRequire(entry.position <= end && end - entry.position >= heads &&
                         end - entry.position - heads >= entry.packed,
                     ZipFault::overlap);
    }
}

void clsZipDirectory::OrderByPosition() {
    const auto position = [this](std::uint32_t number) { return entries_[number].position; };
    if (std::ranges::is_sorted(entries_, {}, &scZipEntry::position))
        return;
    byPosition_.resize(entries_.size());
    std::iota(byPosition_.begin(), byPosition_.end(), 0u);
    std::ranges::stable_sort(byPosition_, {}, position);
}

bool clsZipDirectory::AreSame(const scZipEntry& a, const scZipEntry& b) const {
    return a.position == b.position && a.packed == b.packed && a.bytes == b.bytes && a.crc == b.crc &&
           HeaderName(a) == HeaderName(b);
}

// Careless makers write some records twice: the first of them counts.
void clsZipDirectory::DropRepeated() {
    std::vector<bool> repeated;
    for (std::size_t rank = 1; rank < entries_.size(); ++rank) {
        if (!AreSame(entries_[NumberAt(rank - 1)], entries_[NumberAt(rank)]))
            continue;
        repeated.resize(entries_.size());
        repeated[NumberAt(rank)] = true;
    }
    if (repeated.empty())
        return;
    std::size_t kept = 0;
    for (std::size_t number = 0; number < entries_.size(); ++number) {
        if (!repeated[number])
            entries_[kept++] = entries_[number];
    }
    entries_.resize(kept);
    byPosition_.clear();
    OrderByPosition();
}

// No two stand at one position.
std::uint64_t clsZipDirectory::EndOf(const scZipEntry& entry) const {
    const auto position = [this](std::uint32_t number) { return entries_[number].position; };
    const auto next =
        byPosition_.empty()
            ? static_cast<std::size_t>(&entry - entries_.data()) + 1
            : static_cast<std::size_t>(std::ranges::upper_bound(byPosition_, entry.position, {}, position) -
                                       byPosition_.begin());
    return next < entries_.size() ? entries_[NumberAt(next)].position : start_;
}

} // namespace tvut
