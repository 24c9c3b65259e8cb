// Cross references of a PDF file (ISO 32000-1, 7.5.4 to 7.5.8): where each object lies.
#pragma once

#include "docinfo/paged_source.h"
#include "docinfo/pdf_stream.h"

namespace tvut {

// Where an object lies: nowhere, at a position, or in a stream of objects.
struct scPdfPlace {
    enum class Kind { none, position, packed };
    Kind kind = Kind::none;
    std::uint64_t number = 0; // the position, or the stream's object
};

class clsPdfTable {
  public:
    // `shift` is where the document begins in the source: positions count from there.
    clsPdfTable(clsPagedSource& source, std::uint64_t shift) : source_(source), shift_(shift) {}

    // Follows the cross references from the newest to the oldest. Throws clsDocDamage, std::bad_alloc.
    void Read();

    scPdfPlace Find(std::uint32_t number);

    // Takes what a trailer says that none before it, the newer ones, said.
    void TakeTrailer(const clsPdfObject& trailer);
    void TakeRoot(scPdfReference root) { root_ = root_.number == 0 ? root : root_; }
    scPdfReference Root() const { return root_; }
    scPdfReference Info() const { return info_; }
    const clsPdfObject& Trailer() const { return trailer_; } // for Encrypt and ID

  private:
    // Objects whose numbers follow each other.
    struct scSection {
        std::uint32_t first, count;
        std::uint64_t at;       // where the entries are: in the source, or in streams_
        std::uint8_t widths[3]; // of a stream's fields; all 0: a table's
        bool goesOn;            // what is free here may be in the next section
    };

    std::uint64_t Start();
    std::int64_t ReadPart(std::uint64_t position);
    std::int64_t ReadTable(std::uint64_t position);
    std::int64_t ReadStream(const scPdfIndirect& stream);
    void AddSection(std::int64_t first, std::int64_t count, const scSection& section);
    scPdfPlace FindIn(const scSection& section, std::uint32_t place);

    clsPagedSource& source_;
    std::uint64_t shift_;
    std::vector<scSection> sections_;
    std::string streams_; // of cross references, one after the other
    scPdfReference root_, info_;
    clsPdfObject trailer_;
    bool hasTrailer_ = false;
};

} // namespace tvut
