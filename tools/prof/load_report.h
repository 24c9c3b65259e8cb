// Learns why a profile could not be loaded, or not whole.
//
// ProfGetError says only that the contents are malformed. The line and the message go to the
// diagnostic output as
//
//     PROF load error line 3: 'closing tag expected'
//
// and what was passed over though loading went well as "WRN: ...".
#pragma once

#include "library_log.h"

#include <string>

namespace tool::prof {

// Lives around a load. The first one must be made before the library writes its first line.
class clsLoadReport {
  public:
    // "line 3: closing tag expected", or the empty text when no load error was reported meanwhile.
    std::string Reason() const;

    // The first warning that the library wrote meanwhile: "XML: nothing is read after the comment in line
    // 7". Empty without one.
    std::string Warning() const;

  private:
    clsLibraryLog log_;
};

} // namespace tool::prof
