// What is looked for in a text: a piece of it or a regular expression. Case does not count.
#ifndef LOGPAN_PATTERN_H
#define LOGPAN_PATTERN_H

#include <memory>
#include <string>
#include <string_view>

namespace tool::logpan {

struct BadPattern {
    std::string reason;
};

enum class PatternKind { substring, regularExpression };

class Pattern {
  public:
    Pattern() = default; // the empty one, which is found nowhere

    // Throws BadPattern for a regular expression that is none, or too large.
    Pattern(std::wstring_view text, PatternKind kind);

    bool isEmpty() const { return !matcher_; }

    // tooHard is the answer where a regular expression takes too long or too deep; it sees no more than a
    // text's first 2,000 characters.
    bool isIn(std::wstring_view text, bool tooHard) const {
        return matcher_ && matcher_->finds(text, tooHard);
    }

    class Matcher {
      public:
        virtual ~Matcher() = default;
        virtual bool finds(std::wstring_view text, bool tooHard) const = 0;
    };

  private:
    std::shared_ptr<const Matcher> matcher_;
};

// regular_expression.cpp
std::shared_ptr<const Pattern::Matcher> makeRegularExpression(std::wstring_view pattern);

} // namespace tool::logpan

#endif
