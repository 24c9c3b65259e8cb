// Reads archives: the directory, and each entry's contents into a sink.
#pragma once

#include "text/bytes/deflate.h"
#include "zip/zip_cipher.h"
#include "zip/zip_directory.h"

#include <memory>
#include <optional>

namespace tvut {

class clsZIPReader {
  public:
    // The source must stay while the object does.
    explicit clsZIPReader(clsRandomSource& source, const scZipBounds& bounds = {},
                          std::size_t windowBytes = clsSourceWindow::usualBytes);
    clsZIPReader(const clsZIPReader&) = delete;
    clsZIPReader& operator=(const clsZIPReader&) = delete;

    // Reads the directory; throws clsZIPError. What it says of positions is not looked at yet.
    void Open();
    clsZipDirectory& Directory() { return directory_; }

    // Extends a sink by what the directory says of an entry, hands it the contents in pieces, and finishes it
    // once they are all there and vouched for. Throws clsZIPError for an entry that cannot be had, and what
    // the sink throws.
    void Unpack(const scZipEntry& entry, const clsZipPasswords& passwords, clsByteSink& sink);

    // Looks at an entry's own header alone; throws clsZIPError.
    void Check(const scZipEntry& entry) { DataOf(entry); }

  private:
    class clsPackedData;
    class clsContents;

    std::uint64_t DataOf(const scZipEntry& entry);
    void Begin(IclsZipCipher& cipher, const scZipEntry& entry, std::uint64_t dataAt,
               const clsZipPasswords& passwords);
    void Copy(clsPackedData& data, clsContents& contents);
    void Inflate(clsPackedData& data, clsContents& contents);

    clsRandomSource& source_;
    clsSourceWindow window_;
    clsZipDirectory directory_;
    std::optional<clsInflater> inflater_; // made when it is first needed, like its room
    std::unique_ptr<char[]> room_;
};

} // namespace tvut
