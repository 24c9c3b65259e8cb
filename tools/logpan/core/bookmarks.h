// Marked lines, by the numbers that they keep in the store.
#pragma once

#include <cstdint>
#include <set>

namespace tool::logpan {

class clsBookmarks {
  public:
    void Toggle(std::uint64_t number) {
        if (numbers_.erase(number) == 0)
            numbers_.insert(number);
    }
    void Clear() { numbers_.clear(); }
    bool Has(std::uint64_t number) const { return numbers_.contains(number); }
    bool IsEmpty() const { return numbers_.empty(); }

  private:
    std::set<std::uint64_t> numbers_;
};

} // namespace tool::logpan
