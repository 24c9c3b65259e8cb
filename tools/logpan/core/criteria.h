// Which lines are shown, by what they are and not by their text: severity, module, thread and process.
//
// As people write them:
//
//     severity=warning,error module=KXPRINT,"two words" thread=1b0 process=kontor.exe,!4711
//
// A line meets a criterion when it has one of its values, if there are any, and none of those with an
// exclamation mark. It is shown when it meets all of them.
#pragma once

#include "line.h"
#include "terms.h"

namespace tool::logpan {

// What a line can be chosen by.
struct scProperty {
    std::wstring_view name;
    const char* reason; // what is wrong with a value that is none
    bool (*isValue)(std::wstring_view text);
    bool (*has)(const scLine& line, std::wstring_view value);
    std::wstring (*of)(const scLine& line); // the line's own value
};

// Null for a name that is none.
const scProperty* PropertyOf(std::wstring_view name);

class clsCriteria {
  public:
    clsCriteria() = default; // which every line meets
    // Throws BadPattern for what is no criterion.
    explicit clsCriteria(const std::vector<scTerm>& terms);

    bool Meets(const scLine& line) const;

    // Adds values of a property to those that are shown or hidden, or takes them out if all are there. None
    // of them is then among the others: what is to be shown is no longer hidden, and the other way round.
    void Toggle(std::wstring_view property, const std::vector<std::wstring>& toggled, bool hide = false);
    // The line's own value.
    void Toggle(std::wstring_view property, const scLine& line, bool hide);

    std::wstring Text() const;

  private:
    struct scCriterion {
        const scProperty* property;
        std::vector<std::wstring> shown;
        std::vector<std::wstring> hidden;
    };

    scCriterion& Of(const scProperty& property);

    std::vector<scCriterion> criteria_;
};

} // namespace tool::logpan
