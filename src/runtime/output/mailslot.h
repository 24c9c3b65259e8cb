// A mailslot for writing. A reader that does not read costs lines, not time.
#pragma once

#include "platform/mapping.h"

#include <string_view>

namespace tvut {

class clsMailslot {
  public:
    bool Open(const wchar_t* name) noexcept;
    void Close() noexcept;
    bool IsOpen() const noexcept { return static_cast<bool>(file_); }

    // Writes one message. False when the slot did not take it whole.
    bool Write(std::string_view message) noexcept;

  private:
    clsFileHandle file_;
    clsHandle done_;
};

} // namespace tvut
