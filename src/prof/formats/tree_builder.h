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
        const clsItem* const model = Model();
        if (model && UtilpEqual(model->Name(), name))
            AppendAsModel(*model, value);
        else
            list_->Tree()->AppendItem(*list_, scName(name), value);
    }

    // The name that the next item will have if this list is like the one before; empty when there is none.
    std::u16string_view ExpectedName() const {
        const clsItem* const model = Model();
        return model ? model->Name() : std::u16string_view();
    }
    // Appends an item of the expected name, which is not empty.
    void AppendExpected(std::u16string_view value) { AppendAsModel(*Model(), value); }

    // Opens a list in the current one; what follows goes there.
    void BeginList(std::u16string_view name) { list_ = list_->Tree()->AppendList(*list_, scName(name)); }

    // Goes back to the list around the current one, which must not be the target.
    void EndList() {
        model_ = list_;
        list_ = list_->Parent();
    }

    bool AtTop() const { return list_ == top_; }

  private:
    // After so many items like those of the list before, there is room for all of them at once.
    static constexpr std::uint32_t similarItems = 8;

    // Lists beside each other tend to hold items of the same names in the same order: the item at the
    // same place of the list before, if its name is the same, saves hashing and looking for it.
    const clsItem* Model() const {
        if (!model_ || list_->End() >= model_->End())
            return nullptr;
        const clsItem& candidate = model_->At(list_->End());
        return candidate.IsItem() ? &candidate : nullptr;
    }

    void AppendAsModel(const clsItem& model, std::u16string_view value) {
        clsTree& tree = *list_->Tree();
        if (list_->End() == similarItems)
            tree.Reserve(*list_, model_->End());
        tree.AppendItem(*list_, model, value);
    }

    clsItemList* const top_;
    clsItemList* list_;
    const clsItemList* model_ = nullptr; // the list that ended last
};

} // namespace tvut
