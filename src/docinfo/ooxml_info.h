// Properties of Office Open XML (ECMA-376, parts 1 and 2).
#pragma once

#include "docinfo/zip_package.h"

namespace tvut {

void UtilpReadOoxml(clsZipPackage& package, clsDocInfo& info);

} // namespace tvut
