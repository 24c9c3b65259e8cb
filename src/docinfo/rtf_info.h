// RTF (1.9.1): the groups \info and \*\userprops.
#pragma once

#include "docinfo/doc_reader.h"

namespace tvut {

bool UtilpIsRtf(std::string_view head);
DocReader UtilpReadRtf;

} // namespace tvut
