// Walks a list and all that is in it, parents before children, in stored order.
//
// The walk keeps the entries of the lists on the way in three arrays instead of calling itself, so that
// depth costs memory and never stack. One list is collected at a time: every list is enumerated once.
#pragma once

#include <tvut22/prof.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tool::prof {

// One entry; the texts are valid until the walk moves on.
struct scEntry {
    std::wstring_view name;
    std::wstring_view value;
    ProfList list = nullptr; // null for an item
    std::size_t depth = 0;   // 0 for the entries of the list where the walk began

    bool IsList() const { return list != nullptr; }
};

class clsTreeWalk {
  public:
    enum class Scope { oneList, wholeTree };

    clsTreeWalk(ProfJob job, ProfList start, Scope scope);

    // Moves to the next entry; false at the end.
    bool Next();

    const scEntry& Entry() const { return entry_; }

  private:
    struct scPending { // where an entry's texts lie in text_
        ProfList list;
        std::size_t name;
        std::size_t value;
        std::size_t end;
    };
    struct scLevel { // a list that is being walked: the entries from next to the end of pending_
        std::size_t first;
        std::size_t next;
        std::size_t text;
    };

    void Enter(ProfList list);
    void Leave();
    void Take(const scPending& pending);
    void Collect(const wchar_t* name, const wchar_t* value, ProfList list);
    static BOOL TVUT22_CALL OnEntry(ProfJob job, const wchar_t* name, const wchar_t* value, ProfList list,
                                    UINT_PTR walk);

    ProfJob job_;
    Scope scope_;
    scEntry entry_;
    std::wstring text_;
    std::vector<scPending> pending_;
    std::vector<scLevel> levels_;
};

} // namespace tool::prof
