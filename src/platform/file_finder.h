// Finds files in a folder, and tells what they are.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tvut {

// The names of the files, not folders, that the system finds for a path whose last component may hold
// wildcards; in no order, and none when there is nothing or it may not be looked at. Throws
// std::bad_alloc.
std::vector<std::u16string> PlatformFindFiles(const std::u16string& path);

// A file or folder as the system describes it. Times as it has them.
struct scFoundFile {
    std::u16string name; // empty where it was asked for
    std::uint32_t attributes;
    std::uint64_t created, accessed, modified, bytes;
    bool isFolder;
    bool isLink; // it leads elsewhere
};

// What is at a path; the system's error where nothing can be learned of it. Throws std::bad_alloc.
std::optional<scFoundFile> PlatformLookAt(const std::u16string& path, unsigned long& error);

// Everything that is in a folder, in no order. Throws clsException when that cannot be learned,
// std::bad_alloc.
std::vector<scFoundFile> PlatformListFolder(const std::u16string& folder);

} // namespace tvut
