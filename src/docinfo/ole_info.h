// Documents in compound files: their kind by the streams that they hold, their properties from two sets.
#pragma once

#include "docinfo/doc_reader.h"

namespace tvut {

bool UtilpIsCompound(std::string_view head);
DocReader UtilpReadOle;

} // namespace tvut
