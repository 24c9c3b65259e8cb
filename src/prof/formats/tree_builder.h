// What a form's reader builds a tree with: items and lists in the order of the text.
#pragma once

#include "prof/tree.h"
#include "text/units.h"

#include <string_view>

namespace tvut {

class clsTreeBuilder {
  public:
    explicit clsTreeBuilder(clsItemList& target) : top_(&target), list_(&target) {}

    void AppendItem(std::u16string_view name, std::u16string_view value) {
        if (const clsItem* const alike = ModelOf(name))
            list_->Tree()->AppendItem(*list_, *alike, value);
        else
            list_->Tree()->AppendItem(*list_, scName(name), value);
    }

    // Opens a list in the current one; what follows goes there.
    void BeginList(std::u16string_view name) { list_ = list_->Tree()->AppendList(*list_, scName(name)); }

    // Goes back to the list around the current one, which must not be the target.
    void EndList() {
        model_ = list_;
        list_ = list_->Parent();
    }

    bool AtTop() const { return list_ == top_; }

  private:
    // Lists beside each other tend to hold items of the same names in the same order: the item at the
    // same place of the list before, if its name is the same, saves hashing and looking for it.
    const clsItem* ModelOf(std::u16string_view name) const {
        if (!model_ || list_->End() >= model_->End())
            return nullptr;
        const clsItem& candidate = model_->At(list_->End());
        return candidate.IsItem() && UtilpEqual(candidate.Name(), name) ? &candidate : nullptr;
    }

    clsItemList* const top_;
    clsItemList* list_;
    const clsItemList* model_ = nullptr; // the list that ended last
};

} // namespace tvut
