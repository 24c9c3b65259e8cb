// The directory of an archive: what is in it and where, checked as far as it alone can tell.
//
// Everything in it is the word of whoever made the archive. A directory is taken only whole: its size, count
// and signatures agree, and no two entries share bytes of the archive.
#pragma once

#include "zip/name_arena.h"
#include "zip/source_window.h"
#include "zip/zip_names.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tvut {

class clsEntryExtras;
struct scCentralHeader;

constexpr std::uint64_t mostZipEntries = 1'000'000;
constexpr std::uint64_t largestZipDirectory = 64 * 1024 * 1024; // bytes

// How much of a directory is taken at all.
struct scZipBounds {
    std::uint64_t entries = mostZipEntries;
    std::uint64_t directoryBytes = largestZipDirectory;
};

// An entry as the directory has it. 56 bytes: a listing of a million is 56 MB and their names.
struct scZipEntry {
    enum Mark : std::uint16_t {
        encrypted = 1 << 0, // by PKWARE's cipher where it has no strength
        aes128 = 1 << 1,
        aes192 = 2 << 1,
        aes256 = 3 << 1,
        aesStrength = 3 << 1,
        authenticatedOnly = 1 << 3, // AE-2: no CRC
        unknownEncryption = 1 << 4,
        folder = 1 << 5,
        link = 1 << 6,
        readOnly = 1 << 7,
        hidden = 1 << 8,
        utf8Name = 1 << 9,
        unicodeName = 1 << 10, // a second name stands beside the header's
        plainName = 1 << 11,   // UtilpIsPlainZipName
    };

    std::uint64_t position; // of its local header
    std::uint64_t packed;   // bytes of its data
    std::uint64_t bytes;    // unpacked
    std::uint64_t modified, created;
    std::uint32_t crc;
    clsNameArena::Place name;
    std::uint16_t nameBytes;
    std::uint16_t method; // under the encryption, if there is one
    std::uint16_t marks;
    std::uint8_t passwordCheck; // for PKWARE's cipher

    bool Is(Mark mark) const { return (marks & mark) != 0; }
    void Set(unsigned some, bool areSet = true) {
        marks = static_cast<std::uint16_t>(areSet ? marks | some : marks);
    }
};

class clsZipDirectory {
  public:
    explicit clsZipDirectory(const scZipBounds& bounds = {}) : bounds_(bounds) {}

    // Finds the directory and reads it once. Throws clsZIPError, std::bad_alloc.
    void Read(clsSourceWindow& window, std::uint64_t sourceBytes);

    // Looks whether entries share bytes of the archive, and drops those that are there twice. Throws
    // clsZIPError, std::bad_alloc.
    void CheckPositions();

    std::span<const scZipEntry> Entries() const { return entries_; }

    // The bytes of the name in an entry's headers, and the name as people see it.
    std::string_view HeaderName(const scZipEntry& entry) const;
    ZipNameKind ReadName(const scZipEntry& entry, std::u16string& name) const;

    // Where whatever comes after an entry begins: its data ends before.
    std::uint64_t EndOf(const scZipEntry& entry) const;

  private:
    struct scPlace { // where a directory should be, by what an end record says
        std::uint64_t at, bytes, entries;
        std::uint64_t shift; // of all positions: bytes before the archive
    };

    std::optional<scPlace> PlaceBy(clsSourceWindow& window, std::uint64_t endRecordAt) const;
    bool TryEachOf(clsSourceWindow& window, const std::vector<std::uint64_t>& endRecords);
    bool ReadAt(clsSourceWindow& window, const scPlace& place);
    bool AddEntry(const scCentralHeader& header, std::string_view record, const scPlace& place);
    void NoteName(scZipEntry& entry, std::string_view name, bool isUtf8, const clsEntryExtras& extras);
    void OrderByPosition();
    void DropRepeated();
    // The number of the entry that comes at a rank by position.
    std::size_t NumberAt(std::size_t rank) const { return byPosition_.empty() ? rank : byPosition_[rank]; }
    bool AreSame(const scZipEntry& a, const scZipEntry& b) const;

    scZipBounds bounds_;
    std::vector<scZipEntry> entries_;
    std::vector<std::uint32_t> byPosition_; // their numbers; empty while they stand in that order
    clsNameArena names_;
    std::uint64_t start_ = 0; // of the directory in the source
};

} // namespace tvut
