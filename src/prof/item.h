// One entry of a list: a plain item with a value, a list entry with a sub-list, or a gap.
#pragma once

#include "prof/text_pool.h"

#include <cstdint>
#include <string_view>

namespace tvut {

class clsItemList;

// A gap is what a deleted entry leaves, so that positions hold while somebody walks the list.
enum class EntryKind : std::uint32_t { item = 0, list = 1, gap = 2 };

struct clsItem {
    static constexpr std::uint32_t kindBits = 3;

    std::uint32_t key; // hash of the name with the kind in its lowest two bits
    scText* name;
    union {
        scText* value;
        clsItemList* subList;
    };

    EntryKind Kind() const { return static_cast<EntryKind>(key & kindBits); }
    bool IsItem() const { return Kind() == EntryKind::item; }
    bool IsList() const { return Kind() == EntryKind::list; }
    bool IsGap() const { return Kind() == EntryKind::gap; }
    std::u16string_view Name() const { return ProfpView(name); }
    std::u16string_view Value() const { return IsItem() ? ProfpView(value) : emptyText; }
};

} // namespace tvut
