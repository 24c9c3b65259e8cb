// A list and all that is in it, in stored order: names and values in one text, entries in one array.
#pragma once

#include "profile.h"

#include <string>
#include <string_view>
#include <vector>

namespace tool::prof {

class clsSnapshot {
  public:
    // Throws std::bad_alloc.
    clsSnapshot(ProfJob job, ProfList start);
    clsSnapshot(const clsProfile& profile, ProfList start) : clsSnapshot(profile.Job(), start) {}

    // Entries are numbers from 0 on, each before what is in it. In the list that the snapshot begins with are
    // 0, its Next(), the Next() of that, and so on to End().
    std::size_t End() const { return entries_.size(); }
    std::wstring_view Name(std::size_t entry) const;
    std::wstring_view Value(std::size_t entry) const;
    bool IsList(std::size_t entry) const { return entries_[entry].isList; }
    std::size_t Next(std::size_t entry) const { return entries_[entry].next; } // after all that is in it

  private:
    struct scPlaces {
        std::size_t name, value, end; // in text_
        std::size_t next;
        bool isList;
    };

    std::wstring text_;
    std::vector<scPlaces> entries_;
};

} // namespace tool::prof
