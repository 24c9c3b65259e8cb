#include "prof/item_list.h"

#include "prof/name_index.h"
#include "prof/tree.h"
#include "text/units.h"

#include <new>

namespace tvut {

namespace {

// A walk over this many keys costs about what a look into an index costs.
constexpr std::uint32_t indexedFrom = 48;

} // namespace

scMatch clsItemList::Find(EntryKind kind, const scName& name) {
    if (!index_ && Count() >= indexedFrom)
        BuildIndex();
    if (index_)
        return index_->Find(*this, name.Key(kind), name.text);
    return {FindFrom(0, name.Key(kind), name.text), true};
}

std::uint32_t clsItemList::FindFrom(std::uint32_t position, std::uint32_t key,
                                    std::u16string_view name) const {
    for (; position < used_; ++position) {
        const clsItem& entry = entries_.At(position);
        if (entry.key == key && UtilpEqual(entry.Name(), name))
            return position;
    }
    return notFound;
}

void clsItemList::BuildIndex() noexcept {
    clsSlab& slab = tree_->slab_;
    void* block = nullptr;
    try {
        block = slab.Allocate(sizeof(clsNameIndex));
    } catch (const std::bad_alloc&) {
        return;
    }
    index_ = new (block) clsNameIndex(slab);
    if (!index_->Build(*this))
        tree_->DropIndex(*this);
}

} // namespace tvut
