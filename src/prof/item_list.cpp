#include "prof/item_list.h"

#include "prof/name_index.h"
#include "text/units.h"

#include <algorithm>

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
    while (position < used_) {
        const clsItem* const run = &entries_.At(position);
        const std::uint32_t length = std::min(used_ - position, entries_.RunLength(position));
        for (std::uint32_t i = 0; i < length; ++i) {
            if (run[i].key == key && UtilpEqual(run[i].Name(), name))
                return position + i;
        }
        position += length;
    }
    return notFound;
}

} // namespace tvut
