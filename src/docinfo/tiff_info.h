// TIFF (revision 6.0) and BigTIFF: tags of the first directory, and how many directories there are.
#pragma once

#include "docinfo/doc_reader.h"

namespace tvut {

bool UtilpIsTiff(std::string_view head);
DocReader UtilpReadTiff;

} // namespace tvut
