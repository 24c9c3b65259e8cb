// What a reader of a format is.
#pragma once

#include "docinfo/doc_info.h"
#include "docinfo/paged_source.h"

namespace tvut {

// Adds a document's properties, its format among them. False: it is none of these after all, and what was
// added does not count. Throws clsDocDamage at the first impossibility, what the source throws,
// std::bad_alloc.
using DocReader = bool(clsPagedSource& source, clsDocInfo& info);

} // namespace tvut
