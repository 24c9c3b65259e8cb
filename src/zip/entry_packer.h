// Packs what entries hold: from a source, deflated or as it is, enciphered or not, into an archive.
#pragma once

#include "platform/bytes.h"
#include "text/bytes/raw_deflate.h"
#include "zip/aes_cipher.h"
#include "zip/archive_output.h"
#include "zip/zip_progress.h"

#include <memory>
#include <optional>
#include <string_view>

namespace tvut {

enum class ZipCompression { deflate, store };

class clsEntryPacker {
  public:
    // The output and the password must stay while the object does; an empty password enciphers nothing.
    clsEntryPacker(clsArchiveOutput& output, ZipCompression compression, std::string_view password)
        : output_(output), compression_(compression), password_(password) {}

    // Begins an entry and reads its first piece. Throws clsZIPError when the source fails, std::bad_alloc,
    // and what the progress throws.
    void Begin(clsByteSource& source, IclsZipProgress& progress);
    bool IsWhole() const { return isWhole_; } // all of the source has been read

    // Packs all of it, and returns what it came to. Throws likewise.
    struct scPacked {
        std::uint64_t packed, bytes;
        std::uint32_t crc; // 0 of what is enciphered: the cipher vouches for it
        bool isDeflated;
    };
    scPacked Pack();

  private:
    void Read();
    std::size_t ReadSome();
    void TellProgress();
    bool IsWorthDeflating();
    void DeflateRest();
    void StoreAll();
    void Add(std::span<char> bytes);
    void BeginCipher();
    void Encipher(std::span<char> bytes);
    void EndCipher();
    clsRawDeflater::Wanted WantedAtMost(clsRawDeflater::Wanted wanted) const;

    clsArchiveOutput& output_;
    ZipCompression compression_;
    std::string_view password_;
    std::optional<clsRawDeflater> deflater_; // made when it is first needed, like the input
    std::unique_ptr<char[]> input_;

    // Of the entry.
    clsByteSource* source_ = nullptr;
    IclsZipProgress* progress_ = nullptr;
    std::optional<clsAesZipCipher> cipher_;
    std::size_t filled_ = 0;            // of the input
    std::uint64_t read_ = 0, told_ = 0; // bytes, and how many of them the progress knows
    std::uint64_t start_ = 0;           // of the data in the archive
    std::uint32_t crc_ = 0;
    bool isWhole_ = false;
};

} // namespace tvut
