// All calls take a path apart in the same way: followed segments first, then the last one, which alone says
// what is wanted. A lookup takes the first list of each name. Only deletion follows every list of a name, so
// it remembers its segments and walks the branches depth first.
#include "prof/path.h"

#include <vector>

namespace tvut {

namespace {

constexpr std::size_t longestFollowedSegment = 255;

// Takes a path apart from the front.
class clsPathReader {
  public:
    clsPathReader(clsItemList& start, std::u16string_view path) : start_(&start), rest_(path) {
        if (!rest_.empty() && rest_.front() == u'/') {
            start_ = &start.Tree()->Root();
            rest_.remove_prefix(1);
        }
    }

    clsItemList& Start() const { return *start_; }

    // Sets segment to the next one that another follows. False when only the last one is left.
    bool NextFollowed(std::u16string_view& segment) {
        const std::size_t slash = rest_.find(u'/');
        if (slash == std::u16string_view::npos)
            return false;
        segment = rest_.substr(0, slash < longestFollowedSegment ? slash : longestFollowedSegment);
        rest_.remove_prefix(slash + 1);
        return true;
    }

    std::u16string_view Last() const { return rest_; }

  private:
    clsItemList* start_;
    std::u16string_view rest_;
};

clsItemList* FollowExisting(clsPathReader& reader) {
    clsItemList* list = &reader.Start();
    std::u16string_view segment;
    while (list && reader.NextFollowed(segment))
        list = list->FindList(scName(segment));
    return list;
}

clsItemList& FindOrAppendList(clsItemList& list, const scName& name) {
    clsItemList* const found = list.FindList(name);
    return found ? *found : *list.Tree()->AppendList(list, name);
}

clsItemList& FollowCreating(clsPathReader& reader) {
    clsItemList* list = &reader.Start();
    std::u16string_view segment;
    while (reader.NextFollowed(segment))
        list = &FindOrAppendList(*list, scName(segment));
    return *list;
}

} // namespace

clsItemList* ProfpFindList(clsItemList& start, std::u16string_view path) {
    clsPathReader reader(start, path);
    clsItemList* const list = FollowExisting(reader);
    return list ? list->FindList(scName(reader.Last())) : nullptr;
}

const clsItem* ProfpFindItem(clsItemList& start, std::u16string_view path) {
    clsPathReader reader(start, path);
    clsItemList* const list = FollowExisting(reader);
    return list ? list->FindItem(scName(reader.Last())) : nullptr;
}

clsItemList* ProfpCreateList(clsItemList& start, std::u16string_view path) {
    clsPathReader reader(start, path);
    clsItemList& parent = FollowCreating(reader);
    clsItemList& list = FindOrAppendList(parent, scName(reader.Last()));
    list.Tree()->Empty(list);
    return &list;
}

clsItemList* ProfpAppendList(clsItemList& start, std::u16string_view path) {
    clsPathReader reader(start, path);
    clsItemList* list = &reader.Start();
    clsTree& tree = *list->Tree();
    std::u16string_view segment;
    while (reader.NextFollowed(segment))
        list = tree.AppendList(*list, scName(segment));
    return tree.AppendList(*list, scName(reader.Last()));
}

void ProfpAppendItem(clsItemList& start, std::u16string_view path, std::u16string_view value) {
    clsPathReader reader(start, path);
    clsItemList& list = FollowCreating(reader);
    list.Tree()->AppendItem(list, scName(reader.Last()), value);
}

void ProfpAppendItem(clsItemList& start, std::u16string_view path, const IclsValueWriter& value) {
    clsPathReader reader(start, path);
    clsItemList& list = FollowCreating(reader);
    list.Tree()->AppendItem(list, scName(reader.Last()), value);
}

void ProfpSetItem(clsItemList& start, std::u16string_view path, std::u16string_view value) {
    clsPathReader reader(start, path);
    clsItemList& list = FollowCreating(reader);
    list.Tree()->SetItem(list, scName(reader.Last()), value);
}

void ProfpRemove(clsItemList& start, EntryKind kind, std::u16string_view path) {
    clsPathReader reader(start, path);
    std::vector<scName> followed;
    std::u16string_view segment;
    while (reader.NextFollowed(segment))
        followed.emplace_back(segment);
    const scName last(reader.Last());

    // Depth first through every branch, without recursion: the depth is the number of segments
    // followed so far, and a list's place in its parent is where to go on after it.
    clsItemList* list = &reader.Start();
    std::size_t depth = 0;
    std::uint32_t position = 0;
    for (;;) {
        std::uint32_t next = clsItemList::notFound;
        if (depth == followed.size())
            list->Tree()->RemoveAll(*list, kind, last);
        else if (position == 0)
            next = list->Find(EntryKind::list, followed[depth]).position;
        else
            next = list->FindFrom(position, followed[depth].Key(EntryKind::list), followed[depth].text);
        if (next != clsItemList::notFound) {
            list = list->At(next).subList;
            ++depth;
            position = 0;
        } else if (depth == 0) {
            return;
        } else {
            position = list->Position() + 1;
            list = list->Parent();
            --depth;
        }
    }
}

void ProfpRemoveList(clsItemList& list) {
    if (list.Parent())
        list.Tree()->RemoveAt(*list.Parent(), list.Position());
}

} // namespace tvut
