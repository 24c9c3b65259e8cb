// Temporary files that are gone when the process has ended.
//
// Nothing is made before the first file is: until then there is one null pointer.
#pragma once

#include "platform/lock.h"
#include "runtime/result.h"
#include "runtime/temp_files/new_file.h"
#include "runtime/temp_files/own_folder.h"
#include "runtime/temp_files/temp_file_list.h"

#include <string>

namespace tvut {

struct scMadeTempFile {
    std::wstring path;       // full, as callers know it
    std::wstring systemPath; // the same, whatever its length
};

// Paths are full ones as PlatformLongPath returns them.
class clsTempFileRemover {
  public:
    UtilResult Create(const scTempFileWish& wish, scMadeTempFile& made); // throws std::bad_alloc
    UtilResult Add(const std::wstring& path);                            // throws std::bad_alloc
    UtilResult Release(const std::wstring& path, bool keep) noexcept;

    // Removes what is still registered, newest first; false where a thread that may be dead has the lock.
    // When the process ends, no memory is asked for or freed.
    bool End(bool processEnds) noexcept;

  private:
    bool IsFull() noexcept;
    DWORD FolderFor(const scTempFileWish& wish, std::wstring& folder);
    std::uint32_t FirstNumber(std::uint32_t wish) noexcept;
    UtilResult Register(std::unique_ptr<scTempFile> file) noexcept;
    bool Forget(std::u16string_view path) noexcept;
    scTempFile* BeginToRemove(std::u16string_view path) noexcept;
    void EndToRemove(scTempFile& file, bool removed) noexcept;

    clsLock lock_; // over what follows; only file calls are made while it is held
    clsTempFileList files_;
    clsOwnTempFolder own_;
};

// The process's one; made at the first call, which also removes what dead processes left. Throws
// std::bad_alloc.
clsTempFileRemover& UtilpTempFileRemover();

// The same; null when it was not made.
clsTempFileRemover* UtilpTempFileRemoverIfMade() noexcept;

// The library is unloaded, or the process ends.
void UtilpEndTempFiles(bool processEnds) noexcept;

} // namespace tvut
