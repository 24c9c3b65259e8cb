// RTF (1.9.1): the groups \info and \*\userprops.
#pragma once

#include "docinfo/detect.h"

namespace tvut {

bool UtilpIsRtf(std::string_view head);
DocReader UtilpReadRtf;

} // namespace tvut
