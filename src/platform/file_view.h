// A file's bytes, mapped for reading.
#pragma once

#include "platform/mapping.h"

#include <cstddef>

namespace tvut {

// Memory that may fail to be read, as of a file on a drive that goes away: look at it under a guard. The file
// can be renamed while it is mapped, and not be written shorter.
class clsFileView {
  public:
    clsFileView() noexcept = default; // nothing

    // Nothing where the file is not there, is empty, or is longer than `most` bytes.
    clsFileView(const wchar_t* path, std::size_t most) noexcept;

    const unsigned char* Data() const noexcept { return static_cast<const unsigned char*>(view_.Get()); }
    std::size_t Size() const noexcept { return size_; }
    explicit operator bool() const noexcept { return size_ != 0; }

  private:
    clsView view_;
    std::size_t size_ = 0;
};

} // namespace tvut
