// PDF files (ISO 32000-1, 7.5): objects by number, wherever they lie, and what streams hold.
//
// Only what is asked for is read. All throw clsDocDamage for what cannot be, std::bad_alloc.
#pragma once

#include "docinfo/pdf_cipher.h"
#include "docinfo/pdf_heads.h"
#include "docinfo/pdf_table.h"

namespace tvut {

// An object, and whose cipher its strings have.
struct scPdfLoaded : scPdfIndirect {
    bool isPacked = false; // in a stream of objects, which was deciphered as a whole
};

class clsPdfFile {
  public:
    static constexpr std::uint64_t mostBytes = 4 * 1024 * 1024; // that are read, but for a search
    static constexpr std::size_t mostLoads = 256;               // of objects
    static constexpr std::size_t mostUnpacked = 32 * 1024 * 1024;

    explicit clsPdfFile(clsPagedSource& source) : source_(source) {}

    // Follows the cross references, which count from a place in the source.
    void Open(std::uint64_t shift);
    // Looks through the file instead, where they are wrong.
    void Repair();

    scPdfReference Root() const { return table_->Root(); }
    scPdfReference Info() const { return table_->Info(); }
    bool IsEncrypted() const { return isEncrypted_; }
    bool IsLocked() const { return isEncrypted_ && !cipher_; } // wants a password, or has an unknown cipher

    // An object by number; one without a value when there is none.
    scPdfLoaded Load(scPdfReference reference);
    // A text as it was before it was enciphered; nothing where that cannot be known.
    std::string Plain(const scPdfLoaded& owner, std::string_view text) const;
    // What a stream holds; nothing when it is packed or enciphered in an unknown way.
    std::optional<std::string> Stream(const scPdfLoaded& loaded);

  private:
    void OpenCipher();
    scPdfLoaded LoadAt(std::uint64_t position, std::uint32_t number);
    std::optional<std::uint64_t> PositionOf(std::uint32_t number);
    scPdfLoaded LoadRepaired(std::uint32_t number);
    bool OpenPacked(std::uint64_t position);
    scPdfLoaded LoadPacked(std::uint32_t number);
    std::optional<std::string> Unpack(const scPdfLoaded& loaded, std::optional<std::int64_t> length);
    bool IsClear(const clsPdfValue& dictionary) const;

    clsPagedSource& source_;
    std::optional<clsPdfTable> table_;
    std::optional<clsPdfHeads> heads_; // after a repair
    std::optional<clsPdfCipher> cipher_;
    bool isEncrypted_ = false, leavesMetadata_ = false;
    // The stream of objects that was asked last.
    std::uint64_t packedAt_ = 0;
    std::string packed_;
    std::size_t packedCount_ = 0, packedFirst_ = 0;
    std::size_t loads_ = 0, unpacked_ = 0;
};

} // namespace tvut
