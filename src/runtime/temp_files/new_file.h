// A new file or folder of a wished name, or of the next one that is free: "a.txt", "a (2).txt" to "a
// (9999).txt".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tvut {

struct scTempFileWish {
    std::wstring_view folder; // full path; empty: the process's own
    std::wstring_view stem;
    std::wstring_view extension;
    bool isFolder;
};

// The paths that a wish may become. All throw std::bad_alloc.
class clsWishedPaths {
  public:
    clsWishedPaths(const std::wstring& folder, const scTempFileWish& wish);

    void Number(std::uint32_t number);
    const std::wstring& Path() const { return path_; }             // as it was numbered last
    const std::wstring& SystemPath() const { return systemPath_; } // the same, whatever its length

  private:
    const scTempFileWish& wish_;
    std::wstring path_;
    std::wstring systemPath_;
    std::size_t leafAt_;
};

// Makes it; a file is empty and closed again. The number is the one to try first, and then the one taken.
// Never what somebody else made. 0, or the system's error: ERROR_FILE_EXISTS when all numbers are taken.
unsigned long UtilpMakeNewFile(clsWishedPaths& paths, bool isFolder, std::uint32_t& number);

} // namespace tvut
