// Tells a document's format by its contents, and has it read.
//
// A format is a file with one reader, and a row of the table in detect.cpp.
#pragma once

#include "docinfo/doc_info.h"
#include "docinfo/paged_source.h"

namespace tvut {

// Adds a document's properties, its format among them. False: it is none of these after all, and what was
// added does not count. Throws clsDocDamage at the first impossibility, what the source throws,
// std::bad_alloc.
using DocReader = bool(clsPagedSource& source, clsDocInfo& info);

// Reads all properties of a document; the name is for diagnostic lines. False when it has no known format.
// Damage becomes a problem of the document; throws what the source throws before the format is known,
// std::bad_alloc.
bool UtilpReadDocument(clsRandomSource& document, std::u16string_view name, clsDocInfo& info);

} // namespace tvut
