// Documents in compound files: their kind by the streams that they hold, their properties from two sets.
#pragma once

#include "docinfo/paged_source.h"

namespace tvut {

class clsDocInfo;

bool UtilpIsCompound(std::string_view head);
bool UtilpReadOle(clsPagedSource& source, clsDocInfo& info);

} // namespace tvut
