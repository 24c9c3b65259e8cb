// A walk over everything below a list, in order, without recursion.
#pragma once

#include "prof/item_list.h"

#include <cstdint>

namespace tvut {

// Calls visitor.Item(entry, level), visitor.BeginList(entry, level) and visitor.EndList(level); the
// entries of the list itself are at the level given, those of a list in it one level deeper.
template <class Visitor>
void ProfpWalk(const clsItemList& top, std::uint32_t level, Visitor&& visitor) {
    const clsItemList* list = &top;
    std::uint32_t position = 0;
    for (;;) {
        if (position == list->End()) {
            if (list == &top)
                return;
            visitor.EndList(--level);
            position = list->Position() + 1;
            list = list->Parent();
            continue;
        }
        const clsItem& entry = list->At(position++);
        if (entry.IsItem()) {
            visitor.Item(entry, level);
        } else if (entry.IsList()) {
            visitor.BeginList(entry, level++);
            list = entry.subList;
            position = 0;
        }
    }
}

} // namespace tvut
