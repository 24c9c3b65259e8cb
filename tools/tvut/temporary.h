// Temporary files and folders of a command, and what goes through them to and from the standard streams.
#pragma once

#include <string>

namespace tool::tvut {

// Gone when the object is, or when the process ends. Throws Failure.
class clsTemporary {
  public:
    enum class Kind { file, folder };
    explicit clsTemporary(Kind kind);
    clsTemporary(const clsTemporary&) = delete;
    clsTemporary& operator=(const clsTemporary&) = delete;
    ~clsTemporary();

    const std::wstring& Path() const { return path_; }

  private:
    std::wstring path_;
};

// Copies all of standard input into a file that is there. Throws Failure.
void CopyInputTo(const std::wstring& path);

// Copies a file to standard output, which must be no console. Throws Failure.
void CopyToOutput(const std::wstring& path);

} // namespace tool::tvut
