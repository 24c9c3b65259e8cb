// A folder that strangers' files go into: nothing is written outside of it, and each file is there whole or
// not at all.
#pragma once

#include "platform/bytes.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace tvut {

// What a file gets besides its contents. Times as the system has them; 0: as it comes.
struct scFileMarks {
    std::uint64_t modified, created;
    bool isReadOnly, isHidden;
};

// A file that is being written, beside where it will be. It goes again unless it is put in its place.
class IclsTargetFile : public clsByteSink {
  public:
    // Puts it in its place with its marks, after Finish. A file that is there is replaced, or stays and this one
    // goes. Throws clsException when that cannot be done.
    virtual void PutInPlace(const scFileMarks& marks, bool replaces) = 0;
};

// Paths lie below the folder, "\" between their components, all of which are bare file names. All functions
// throw clsException where the system refuses, and std::bad_alloc.
class IclsTargetFolder {
  public:
    virtual ~IclsTargetFolder() = default;

    // Bytes that may be written yet where the folder is, or will be.
    virtual std::uint64_t FreeBytes() = 0;
    // Makes it where it is missing, with the folders that it lies in.
    virtual void Make() = 0;

    // Makes a folder, empty for this one itself, and those that it lies in, where they are missing. False when
    // one of them leads elsewhere. Until another is entered, none of them can be exchanged.
    virtual bool Enter(std::u16string_view folder) = 0;

    // Whether something is there.
    virtual bool Exists(std::u16string_view path) = 0;
    // Begins a file in the folder that was entered; with its whole path.
    virtual std::unique_ptr<IclsTargetFile> NewFile(std::u16string_view path) = 0;
};

} // namespace tvut
