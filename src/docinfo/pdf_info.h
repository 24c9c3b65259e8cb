// PDF documents: the dictionary Info, what the catalogue says, and its XMP packet where the first is silent.
#pragma once

#include "docinfo/doc_reader.h"

namespace tvut {

bool UtilpIsPdf(std::string_view head);
DocReader UtilpReadPdf;

} // namespace tvut
