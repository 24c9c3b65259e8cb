// The folder that reports and dumps are kept in: "host-20261121-221005-1234.txt" and ".dmp", perhaps with
// "-2" and so on before the ending. Other names are nobody's business.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tvut {

class clsReportFolder {
  public:
    clsReportFolder() = default;

    // Empty: "Reports" below the host's name in the user's own application data. Throws std::bad_alloc.
    explicit clsReportFolder(std::u16string_view folder);

    const std::wstring& Path() const noexcept { return path_; } // full

    // Makes the folder, and those above it. False when it is not there then, or nothing can be written in it.
    // Throws std::bad_alloc.
    bool Make() const;

    // The reports of this host by name, without ending, the newest first. Throws std::bad_alloc.
    std::vector<std::u16string> Reports() const;

    // Removes all but the newest. Throws std::bad_alloc.
    void Keep(std::size_t newest) const;

  private:
    std::wstring path_;
};

} // namespace tvut
