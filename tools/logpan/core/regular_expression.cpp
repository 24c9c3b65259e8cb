// Regular expressions that no text can make crash or hang the viewer.
//
// The standard library searches by recursion and backtracking: a long text can exhaust the stack, and an
// unlucky one takes time exponential in its length. Both move an iterator over the text, so ours counts
// the steps, looks how deep the stack is, and throws when either is enough.
#include "pattern.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <regex>

namespace tool::logpan {

namespace {

constexpr std::size_t longestPattern = 300;
constexpr std::size_t longestText = 2000;
constexpr std::size_t mostSteps = 300'000;
constexpr std::uintptr_t mostStack = 4 * 1024 * 1024; // the programs reserve twice as much

struct scTooHard {};

// Lives on the stack where the search begins.
class clsGuard {
  public:
    void Step() {
        if (++steps_ > mostSteps || Depth() > mostStack)
            throw scTooHard{};
    }

  private:
    std::uintptr_t Depth() const {
        const volatile char here = 0;
        const auto position = reinterpret_cast<std::uintptr_t>(&here);
        const auto start = reinterpret_cast<std::uintptr_t>(this);
        return position < start ? start - position : position - start;
    }

    std::size_t steps_ = 0;
};

class clsGuardedIterator {
  public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = wchar_t;
    using difference_type = std::ptrdiff_t;
    using pointer = const wchar_t*;
    using reference = const wchar_t&;

    clsGuardedIterator() = default;
    clsGuardedIterator(const wchar_t* at, clsGuard& guard) : at_(at), guard_(&guard) {}

    reference operator*() const { return *at_; }
    pointer operator->() const { return at_; }
    clsGuardedIterator& operator++() {
        guard_->Step();
        ++at_;
        return *this;
    }
    clsGuardedIterator operator++(int) {
        const clsGuardedIterator before = *this;
        ++*this;
        return before;
    }
    clsGuardedIterator& operator--() {
        guard_->Step();
        --at_;
        return *this;
    }
    clsGuardedIterator operator--(int) {
        const clsGuardedIterator before = *this;
        --*this;
        return before;
    }
    bool operator==(const clsGuardedIterator& other) const { return at_ == other.at_; }

  private:
    const wchar_t* at_ = nullptr;
    clsGuard* guard_ = nullptr;
};

class clsRegularExpression : public clsPattern::IclsMatcher {
  public:
    explicit clsRegularExpression(const std::wstring& pattern)
        : expression_(pattern, std::regex_constants::ECMAScript | std::regex_constants::icase |
                                   std::regex_constants::nosubs | std::regex_constants::optimize) {}

    bool Finds(std::wstring_view text, bool tooHard) const override {
        const std::wstring_view seen = text.substr(0, longestText);
        clsGuard guard;
        try {
            return std::regex_search(clsGuardedIterator{seen.data(), guard},
                                     clsGuardedIterator{seen.data() + seen.size(), guard}, expression_);
        } catch (const scTooHard&) {
            return tooHard;
        } catch (const std::regex_error&) { // a library that counts by itself
            return tooHard;
        }
    }

  private:
    std::wregex expression_;
};

// ".*" at the start finds nothing that would not be found without it, in time that grows with the square of
// a text's length.
std::wstring_view WithoutLeadingAnything(std::wstring_view pattern) {
    for (const std::wstring_view anything : {L".*?", L".*"})
        if (pattern.starts_with(anything) && pattern.size() > anything.size())
            return pattern.substr(anything.size());
    return pattern;
}

} // namespace

std::shared_ptr<const clsPattern::IclsMatcher> MakeRegularExpression(std::wstring_view pattern) {
    pattern = WithoutLeadingAnything(pattern);
    if (pattern.size() > longestPattern)
        throw scBadPattern{"the regular expression is longer than 300 characters"};
    try {
        return std::make_shared<clsRegularExpression>(std::wstring{pattern});
    } catch (const std::regex_error& error) {
        throw scBadPattern{error.what()};
    }
}

} // namespace tool::logpan
