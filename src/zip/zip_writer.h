// Writes archives: entries one after the other into a target that can be patched and cut, then the directory.
//
// An entry that fails for whatever reason leaves the archive as it was before it, unless the target fails.
#pragma once

#include "zip/entry_packer.h"
#include "zip/taken_names.h"
#include "zip/written_entry.h"

#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace tvut {

// What an entry is, as far as it is known before its contents are.
struct scNewZipEntry {
    std::u16string_view name; // "/" between components, all of them bare file names
    bool isFolder = false;
    std::uint32_t attributes = 0; // as Windows has them
    scZipTimes times{};
    std::optional<std::uint64_t> bytes{}; // none for a stream of any length
};

class clsZIPWriter {
  public:
    // Target and password must stay while the object does; an empty password enciphers nothing. Throws
    // std::bad_alloc.
    clsZIPWriter(clsPatchableSink& target, ZipCompression compression, std::string_view password)
        : output_(target), packer_(output_, compression, password), isEnciphering_(!password.empty()) {}
    clsZIPWriter(const clsZIPWriter&) = delete;
    clsZIPWriter& operator=(const clsZIPWriter&) = delete;

    // Whether an entry of this name, or a folder or file that stands in its way, is there.
    bool IsTaken(std::u16string_view name, bool isFolder);
    // Whether a file is where the name wants a folder: no other last component helps then.
    bool IsBelowFile(std::u16string_view name);

    // Adds an entry; the name must be free. Throws clsZIPError, std::bad_alloc, and what the progress throws.
    void AddFolder(const scNewZipEntry& entry);
    void AddFile(const scNewZipEntry& entry, clsByteSource& source, IclsZipProgress& progress);

    std::uint32_t Count() const { return static_cast<std::uint32_t>(entries_.size()); }
    bool HasFailed() const { return output_.HasFailed(); }

    // Takes back all entries that were added since a mark was made.
    struct scMark {
        std::size_t entries;
        clsNameArena::scMark names;
        std::uint64_t position, directoryBytes;
    };
    scMark Mark() const { return {entries_.size(), names_.Mark(), output_.Position(), directoryBytes_}; }
    void TakeBack(const scMark& mark);

    // Writes the directory; nothing can be added after that.
    void Finish();

  private:
    scWrittenEntry NewEntry(const scNewZipEntry& made, std::string_view name) const;
    void WriteHead(const scWrittenEntry& entry, std::string_view name);
    void PatchHead(const scWrittenEntry& entry, std::uint64_t position);
    void Keep(scWrittenEntry entry, const scNewZipEntry& made, std::string_view name, std::uint64_t position);
    void TakeName(std::u16string_view name, bool isFolder);
    void TakeNamesAgain();
    void WriteDirectoryEntry(const scWrittenEntry& entry, std::uint64_t position);
    void WriteEnd(std::uint64_t directoryAt);

    clsArchiveOutput output_;
    clsEntryPacker packer_;
    bool isEnciphering_;
    std::deque<scWrittenEntry> entries_;
    clsNameArena names_;
    clsTakenNames taken_;
    clsPathKeys keys_;
    std::uint64_t directoryBytes_ = 0; // of the directory so far
};

} // namespace tvut
