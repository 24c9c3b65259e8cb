// Objects of a PDF file at a position, and what their streams hold. All throw what the source throws and
// std::bad_alloc.
#pragma once

#include "docinfo/paged_source.h"
#include "docinfo/pdf_syntax.h"

#include <functional>

namespace tvut {

// An object that begins with its own number.
struct scPdfIndirect {
    clsPdfObject object;
    scPdfReference reference;   // none: there is no such object
    std::uint64_t streamAt = 0; // where its stream begins; 0: it has none
};

constexpr std::size_t mostPdfObjectBytes = 256 * 1024; // what is longer is cut there

// Where the object ends.
std::uint64_t UtilpReadPdfObject(clsPagedSource& source, std::uint64_t position, clsPdfObject& object);

scPdfIndirect UtilpReadPdfIndirect(clsPagedSource& source, std::uint64_t position);

constexpr std::size_t mostPdfStreamBytes = 2 * 1024 * 1024; // of what a stream holds, packed or not

using PdfDecipher = std::function<void(std::string& bytes)>;

// What a stream holds, up to mostPdfStreamBytes: as much as can be unpacked of one that is damaged. The
// length is what the stream says, and believed only if the stream does end there. Nothing when it is packed
// in a way that is not read here: only deflated streams are.
std::optional<std::string> UtilpUnpackPdfStream(clsPagedSource& source, std::uint64_t position,
                                                const clsPdfValue& dictionary,
                                                std::optional<std::int64_t> length,
                                                const PdfDecipher& decipher);

} // namespace tvut
