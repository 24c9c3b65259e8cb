// Documents that are ZIP archives: which kind, if any.
#pragma once

#include "docinfo/detect.h"

namespace tvut {

DocReader UtilpReadPackage;

} // namespace tvut
