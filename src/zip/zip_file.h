// An archive that is being made on a disk: files, folders and streams go in, and it takes its place as a
// whole.
#pragma once

#include "platform/file_finder.h"
#include "platform/patience.h"
#include "platform/replacement.h"
#include "runtime/result.h"
#include "zip/zip_callback.h"
#include "zip/zip_cipher.h"
#include "zip/zip_writer.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tvut {

class clsZIPFile {
  public:
    // Begins beside the file, which is not touched until Close. An empty password enciphers nothing. Throws
    // clsException with the system's reason, std::bad_alloc.
    clsZIPFile(std::u16string_view file, ZipCompression compression, std::u16string_view password,
               std::unique_ptr<IclsZipCallback> callback);
    clsZIPFile(const clsZIPFile&) = delete;
    clsZIPFile& operator=(const clsZIPFile&) = delete;

    // Add a file, or a folder with all below it, under a name or, without one, its own; several under a
    // folder of the archive; a stream. What fails leaves no trace. Throw std::bad_alloc.
    UtilResult Append(const std::u16string& source, std::u16string_view name);
    UtilResult AppendList(std::span<const std::u16string> sources, std::u16string_view folder);
    UtilResult AppendStream(clsByteSource& stream, std::u16string_view name, std::uint64_t modified);

    // Writes the directory and puts the archive in the file's place. Nothing else may be called after it.
    UtilResult Close();

  private:
    class clsProgress;
    class clsFailure;
    struct scLevel;

    // Runs work that adds entries: all of it, or nothing and the reason.
    template <class Work>
    UtilResult Whole(std::u16string_view what, Work work);

    UtilResult AppendPattern(const std::u16string& source, std::u16string_view folder);
    void AddSource(const std::u16string& source, std::u16string_view name);
    void AddNumbered(const std::u16string& source, std::u16string_view folder);
    void AddFound(const std::u16string& path, const scFoundFile& found, const std::u16string& name);
    void AddTree(const std::u16string& path, const scFoundFile& found, const std::u16string& name);
    bool AddFolder(const std::u16string& path, const scFoundFile& found, const std::u16string& name);
    void AddFile(const std::u16string& path, const scFoundFile& found, const std::u16string& name);

    static scFoundFile LookAt(const std::u16string& path);
    void RequireFree(const std::u16string& what, std::u16string_view name, bool isFolder);
    bool IsOwn(const std::u16string& folder, const std::u16string& name) const;

    void Tell(std::u16string_view level, std::u16string_view what, std::u16string_view words,
              unsigned long error = 0) const;
    void TellClose(unsigned long error) const;

    clsZipPasswords passwords_;
    std::u16string file_;                // as it was given
    std::u16string ownFolder_, ownName_; // of its full path
    clsReplacement replacement_;
    std::unique_ptr<IclsZipCallback> callback_; // may be null
    clsZIPWriter writer_;
    clsPatience patience_{0}; // with the files of one call
};

} // namespace tvut
