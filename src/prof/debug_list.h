// A list on the diagnostic output, a line an entry.
#pragma once

#include "prof/item_list.h"

namespace tvut {

// Items as name=value, lists as [name] with their entries one blank further in.
void ProfpDebugList(const clsItemList& list) noexcept;

} // namespace tvut
