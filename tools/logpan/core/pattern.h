// What is looked for in a text: a piece of it or a regular expression. Case does not count.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace tool::logpan {

struct scBadPattern {
    std::string reason;
};

enum class PatternKind { substring, regularExpression };

class clsPattern {
  public:
    clsPattern() = default; // the empty one, which is found nowhere

    // Throws BadPattern for a regular expression that is none, or too large.
    clsPattern(std::wstring_view text, PatternKind kind);

    bool IsEmpty() const { return !matcher_; }

    // tooHard is the answer where a regular expression takes too long or too deep; it sees no more than a
    // text's first 2,000 characters.
    bool IsIn(std::wstring_view text, bool tooHard) const {
        return matcher_ && matcher_->Finds(text, tooHard);
    }

    class IclsMatcher {
      public:
        virtual ~IclsMatcher() = default;
        virtual bool Finds(std::wstring_view text, bool tooHard) const = 0;
    };

  private:
    std::shared_ptr<const IclsMatcher> matcher_;
};

// regular_expression.cpp
std::shared_ptr<const clsPattern::IclsMatcher> MakeRegularExpression(std::wstring_view pattern);

} // namespace tool::logpan
