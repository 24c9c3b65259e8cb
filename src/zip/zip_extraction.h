// Takes an archive apart that nobody vouches for: lists it, tests it, unpacks it into a folder.
#pragma once

#include "platform/target_folder.h"
#include "zip/target_paths.h"
#include "zip/zip_callback.h"
#include "zip/zip_fault.h"
#include "zip/zip_reader.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tvut {

struct scZipExtractionOrder {
    std::u16string_view archive; // for diagnostic lines
    std::u16string_view folder;  // full path of the target; empty without one
    std::u16string_view password;
    std::uint64_t limit;  // bytes that may be unpacked in all
    bool keepsExisting;   // files that are there stay
};

class clsZIPExtraction {
  public:
    // All must stay while the object does. Without a target everything is done but the writing.
    clsZIPExtraction(clsRandomSource& source, const scZipExtractionOrder& order, IclsTargetFolder* target,
                     IclsZipCallback* callback);

    // Throws std::bad_alloc, and what the callback throws.
    UtilResult Run();

  private:
    class clsTargetSink;

    // In this order; nothing is written before the last two.
    void CheckNames();
    void NamePaths();
    void AskForEach();
    void CheckRoom();
    void MakeTarget();
    UtilResult UnpackWanted();

    void UnpackOne(std::uint32_t index);
    void UnpackFolder(std::uint32_t index);
    void UnpackFile(std::uint32_t index);
    bool IsThereAndStays();
    void EnterFolder();
    bool IsAnyWanted() const;
    void TellRenamed(std::uint32_t index);

    const scZipEntry& Entry(std::uint32_t index) { return reader_.Directory().Entries()[index]; }
    std::uint32_t Count() { return static_cast<std::uint32_t>(reader_.Directory().Entries().size()); }
    void Look(std::uint32_t index);
    ZipAnswer Show(std::uint32_t index, bool isQuestion, std::uint64_t done);
    void TellProgress(std::uint32_t index, std::uint64_t done);

    void TellArchive(const clsZIPError& error) const;
    void TellEntry(const clsZIPError& error) const;

    const scZipExtractionOrder& order_;
    IclsTargetFolder* target_;
    IclsZipCallback* callback_;
    clsZIPReader reader_;
    clsZipPasswords passwords_;
    std::optional<clsTargetPaths> paths_;
    std::vector<bool> wanted_;
    std::uint64_t allowed_ = 0; // bytes, by what CheckRoom found to be least

    // The entry that is looked at: its name, its path below the target, and the whole path.
    std::u16string name_, path_, fullPath_;
    bool isRenamed_ = false;
};

} // namespace tvut
