// Documents that are ZIP archives: which kind, if any.
#pragma once

#include "docinfo/doc_reader.h"

namespace tvut {

DocReader UtilpReadPackage;

} // namespace tvut
