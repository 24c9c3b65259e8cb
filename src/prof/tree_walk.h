// A walk over everything below a list, in order, without recursion.
#pragma once

#include "prof/item_list.h"

#include <cstdint>
#include <span>

namespace tvut {

// Calls visitor.Item(entry, level), visitor.BeginList(entry, level) and visitor.EndList(level); the
// entries of the list itself are at the level given, those of a list in it one level deeper.
template <class Visitor>
void ProfpWalk(const clsItemList& top, std::uint32_t level, Visitor&& visitor) {
    const clsItemList* list = &top;
    std::uint32_t position = 0;
    for (;;) {
        const std::span<const clsItem> run = list->RunFrom(position);
        const clsItem* entry = run.data();
        const clsItem* const end = entry + run.size();
        for (; entry != end && !entry->IsList(); ++entry) {
            if (entry->IsItem())
                visitor.Item(*entry, level);
        }
        if (entry != end) {
            visitor.BeginList(*entry, level++);
            list = entry->subList;
            position = 0;
        } else if (!run.empty()) {
            position += static_cast<std::uint32_t>(run.size());
        } else if (list != &top) {
            visitor.EndList(--level);
            position = list->Position() + 1;
            list = list->Parent();
        } else {
            return;
        }
    }
}

} // namespace tvut
