// Where the entries of an archive go on Windows: a path for each, and no two files at one.
#pragma once

#include "zip/taken_names.h"
#include "zip/zip_directory.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace tvut {

class clsTargetPaths {
  public:
    // Numbers what would fall together, in the archive's order: files of one path, and files where a folder is.
    // The directory must stay while the object does; its names are safe. Throws std::bad_alloc.
    explicit clsTargetPaths(const clsZipDirectory& directory);

    // The path of an entry below the target folder, "\" between its components; empty for that folder itself.
    void Read(std::uint32_t index, std::u16string& path) const;

  private:
    void ReadUnnumbered(std::uint32_t index, std::u16string& path) const;
    void TakeFolders(std::u16string_view path, bool isFolder);
    void TakeFile(std::uint32_t index, std::u16string_view path);

    const clsZipDirectory& directory_;
    clsPathKeys keys_;
    clsTakenNames taken_;
    std::unordered_map<PathKey, std::uint32_t> lastNumbers_;   // given to files of a path
    std::unordered_map<std::uint32_t, std::uint32_t> numbers_; // of entries that have one
};

} // namespace tvut
