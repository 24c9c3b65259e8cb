// Tells a document's format by its contents, and has it read.
//
// A format is a file with one reader, and a row of the table in detect.cpp.
#pragma once

#include "docinfo/doc_info.h"
#include "platform/bytes.h"

#include <string_view>

namespace tvut {

// Reads all properties of a document; the name is for diagnostic lines. False when it has no known format.
// Damage becomes a problem of the document; throws what the source throws before the format is known,
// std::bad_alloc.
bool UtilpReadDocument(clsRandomSource& document, std::u16string_view name, clsDocInfo& info);

} // namespace tvut
