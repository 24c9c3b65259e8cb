// The archive that a command reads: a file, or what comes on standard input.
#pragma once

#include "temporary.h"

#include <optional>
#include <string>

namespace tool::tvut {

class clsArchiveInput {
  public:
    // "-" is standard input, which is kept in a temporary file. Throws Failure.
    explicit clsArchiveInput(const std::string& archive);

    const std::wstring& Path() const { return path_; }
    const std::string& Subject() const { return subject_; } // for messages

  private:
    std::optional<clsTemporary> copy_;
    std::wstring path_;
    std::string subject_;
};

} // namespace tool::tvut
