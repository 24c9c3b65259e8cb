// The walk over a profile's tree.
#include "tree_walk.h"

#include <new>

namespace tool::prof {

TreeWalk::TreeWalk(ProfJob job, ProfList start, Scope scope) : job_(job), scope_(scope) {
    enter(start);
}

bool TreeWalk::next() {
    if (entry_.isList() && scope_ == Scope::wholeTree)
        enter(entry_.list);
    while (!levels_.empty() && levels_.back().next == pending_.size())
        leave();
    if (levels_.empty())
        return false;
    take(pending_[levels_.back().next++]);
    return true;
}

void TreeWalk::enter(ProfList list) {
    levels_.push_back({pending_.size(), pending_.size(), text_.size()});
    // The callback cannot throw through the library: it stops the enumeration when memory runs out.
    if (!ProfEnumW(job_, list, onEntry, reinterpret_cast<UINT_PTR>(this)))
        throw std::bad_alloc{};
}

void TreeWalk::leave() {
    pending_.resize(levels_.back().first);
    text_.resize(levels_.back().text);
    levels_.pop_back();
}

void TreeWalk::take(const Pending& pending) {
    const std::wstring_view text = text_;
    entry_ = {text.substr(pending.name, pending.value - pending.name),
              text.substr(pending.value, pending.end - pending.value), pending.list, levels_.size() - 1};
}

void TreeWalk::collect(const wchar_t* name, const wchar_t* value, ProfList list) {
    const std::size_t start = text_.size();
    text_ += name;
    const std::size_t middle = text_.size();
    text_ += value;
    pending_.push_back({list, start, middle, text_.size()});
}

BOOL TVUT22_CALL TreeWalk::onEntry(ProfJob, const wchar_t* name, const wchar_t* value, ProfList list,
                                   UINT_PTR walk) {
    try {
        reinterpret_cast<TreeWalk*>(walk)->collect(name, value, list);
        return TRUE;
    } catch (const std::bad_alloc&) {
        return FALSE;
    }
}

} // namespace tool::prof
