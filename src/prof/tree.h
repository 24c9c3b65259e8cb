// The tree of one profile: its root list, its memory, and every change to it.
//
// All walks are iterative (lists know their parent and their place in it), so depth costs memory but
// never stack. Operations that create throw std::bad_alloc and leave the tree consistent.
#pragma once

#include "prof/item_list.h"
#include "prof/list_memory.h"

#include <cstdint>
#include <string_view>

namespace tvut {

// A long value that is written straight to where it stays.
class IclsValueWriter {
  public:
    virtual ~IclsValueWriter() = default;
    virtual std::size_t Length() const = 0;
    virtual void Write(char16_t* text) const = 0; // exactly that number of characters
};

class clsTree {
    struct scWalkState;

  public:
    explicit clsTree(bool pooling) : texts_(slab_, pooling), root_(this, nullptr, 0) {}
    clsTree(const clsTree&) = delete;
    clsTree& operator=(const clsTree&) = delete;
    ~clsTree() = default; // the slab frees everything at once

    clsItemList& Root() { return root_; }

    // The list of this tree that stands at an address, whatever a caller passes as one; null if there is
    // none. A deleted list is not recognised as such once a new one stands there.
    clsItemList* ListAt(const void* address) {
        if (address == &root_)
            return &root_;
        return lists_.Holds(address) ? const_cast<clsItemList*>(static_cast<const clsItemList*>(address))
                                     : nullptr;
    }

    void AppendItem(clsItemList& list, const scName& name, std::u16string_view value);
    void AppendItem(clsItemList& list, const scName& name, const IclsValueWriter& value);
    clsItemList* AppendList(clsItemList& list, const scName& name);

    // Appends an item with the name of one that this tree has.
    void AppendItem(clsItemList& list, const clsItem& namesake, std::u16string_view value);

    // Makes room for a number of entries in a list that will be about that long. Throws std::bad_alloc.
    void Reserve(clsItemList& list, std::uint32_t count) { list.entries_.Reserve(slab_, count); }

    // Sets the value of the first item of that name, or appends one.
    void SetItem(clsItemList& list, const scName& name, std::u16string_view value);

    // Removes every entry of that name and kind, with what is in it.
    void RemoveAll(clsItemList& list, EntryKind kind, const scName& name) noexcept;

    // Removes the entry at a position, with what is in it.
    void RemoveAt(clsItemList& list, std::uint32_t position) noexcept;

    // Removes the first item of a walk over the whole tree, lists entered where they stand.
    void RemoveFirstItem() noexcept;

    void Empty(clsItemList& list) noexcept;

    // Appends copies of the entries that source holds when the call begins. The source may be of
    // another tree, the same list, or a list above or below the destination.
    void Copy(clsItemList& destination, clsItemList& source);

    // A walk over one list during which a caller's code runs: while it lasts, positions hold, and
    // List() turns null when the list is emptied or deleted. What the tree knows of it stands in the
    // tree's memory: a caller's code that never returns takes the frame of the walk with it.
    class clsWalk {
      public:
        explicit clsWalk(clsItemList& list); // throws std::bad_alloc
        clsWalk(const clsWalk&) = delete;
        clsWalk& operator=(const clsWalk&) = delete;
        ~clsWalk();
        clsItemList* List() const;

      private:
        clsTree& tree_;
        scWalkState* state_;
    };

    clsTextStore& Texts() { return texts_; }

  private:
    class clsTextHolder;
    struct scWalkState {
        clsItemList* list;
        scWalkState* next;
    };

    void AddItem(clsItemList& list, std::uint32_t key, clsTextHolder& name, clsTextHolder& value);
    void Added(clsItemList& list);
    clsItemList* AddList(clsItemList& list, std::uint32_t key, clsTextHolder& name);
    void CopyItem(clsItemList& destination, const clsItem& item, bool sameTree);
    clsItemList* CopyListEntry(clsItemList& destination, const clsItem& entry, bool sameTree);
    scText* CopyName(const clsItem& entry, bool sameTree);
    void MakeGap(clsItemList& list, std::uint32_t position) noexcept;
    void Close(clsItemList& list) noexcept;
    bool IsWalked(const clsItemList& list) const noexcept;
    void EndWalks(const clsItemList& list) noexcept;
    bool FindFirstItem() noexcept;
    void ReleaseEntries(clsItemList& list) noexcept;
    void DestroyList(clsItemList* list) noexcept;
    void FreeList(clsItemList* list) noexcept;

    clsSlab slab_;
    clsTextStore texts_;
    clsListMemory lists_{slab_, sizeof(clsItemList)};
    clsItemList root_;
    scWalkState* walks_ = nullptr;

    // A place that the walk over the whole tree reaches before any item: where the last one was removed.
    struct scPlace {
        clsItemList* list;
        std::uint32_t position;
    };
    scPlace beforeItems_{&root_, 0};
};

} // namespace tvut
