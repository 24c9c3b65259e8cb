// Properties of OpenDocument (OASIS OpenDocument 1.3, part 3, 4.3), and of the format before it.
#pragma once

#include "docinfo/zip_package.h"

namespace tvut {

// The format of a media type; empty for no document.
std::u16string_view UtilpOdfFormat(std::string_view mediaType);

void UtilpReadOdf(clsZipPackage& package, clsDocInfo& info);

} // namespace tvut
