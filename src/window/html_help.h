// Help files that a program has open, and their viewers.
//
// The system's viewer of .chm files is loaded when it first shows one, is never unloaded, and never called
// from within the loader or at the end of the process: each of the three would crash it.
#pragma once

#include "runtime/result.h"
#include "window/help_target.h"

#include <string>
#include <windows.h>

namespace tvut {

class clsHelp {
  public:
    // Throws std::bad_alloc.
    clsHelp(HWND owner, std::u16string_view file);

    // Throws clsException with the system's reason, std::bad_alloc.
    UtilResult Show(const scHelpRequest& request) const;

  private:
    HWND owner_;
    std::wstring file_; // a full path or an address
};

// Closes the viewer's windows, if it has shown any.
void UtilpCloseHelpWindows() noexcept;

} // namespace tvut
