#include "prof/item_list.h"

#include "prof/name_index.h"
#include "text/units.h"

namespace tvut {

scMatch clsItemList::Find(EntryKind kind, const scName& name) {
    if (!index_)
        return {FindFrom(0, name.Key(kind), name.text), true};
    if (!index_->IsFilled())
        index_->Fill(*this);
    return index_->Find(*this, name.Key(kind), name.text);
}

void clsItemList::ExpectFind(EntryKind kind, const scName& name) const noexcept {
    if (index_ && index_->IsFilled())
        index_->Expect(name.Key(kind));
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

} // namespace tvut
