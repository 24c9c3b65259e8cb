// The walk over a profile's tree.
#include "tree_walk.h"

#include <new>

namespace tool::prof {

clsTreeWalk::clsTreeWalk(ProfJob job, ProfList start, Scope scope) : job_(job), scope_(scope) {
    Enter(start);
}

bool clsTreeWalk::Next() {
    if (entry_.IsList() && scope_ == Scope::wholeTree)
        Enter(entry_.list);
    while (!levels_.empty() && levels_.back().next == pending_.size())
        Leave();
    if (levels_.empty())
        return false;
    Take(pending_[levels_.back().next++]);
    return true;
}

void clsTreeWalk::Enter(ProfList list) {
    levels_.push_back({pending_.size(), pending_.size(), text_.size()});
    // The callback cannot throw through the library: it stops the enumeration when memory runs out.
    if (!ProfEnumW(job_, list, OnEntry, reinterpret_cast<UINT_PTR>(this)))
        throw std::bad_alloc{};
}

void clsTreeWalk::Leave() {
    pending_.resize(levels_.back().first);
    text_.resize(levels_.back().text);
    levels_.pop_back();
}

void clsTreeWalk::Take(const scPending& pending) {
    const std::wstring_view text = text_;
    entry_ = {text.substr(pending.name, pending.value - pending.name),
              text.substr(pending.value, pending.end - pending.value), pending.list, levels_.size() - 1};
}

void clsTreeWalk::Collect(const wchar_t* name, const wchar_t* value, ProfList list) {
    const std::size_t start = text_.size();
    text_ += name;
    const std::size_t middle = text_.size();
    text_ += value;
    pending_.push_back({list, start, middle, text_.size()});
}

BOOL TVUT22_CALL clsTreeWalk::OnEntry(ProfJob, const wchar_t* name, const wchar_t* value, ProfList list,
                                      UINT_PTR walk) {
    try {
        reinterpret_cast<clsTreeWalk*>(walk)->Collect(name, value, list);
        return TRUE;
    } catch (const std::bad_alloc&) {
        return FALSE;
    }
}

} // namespace tool::prof
