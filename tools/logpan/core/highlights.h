// Rules that colour lines, one a line of text: a colour and which lines it is for.
//
//     yellow: "tray 3"
//     blue: module=Archive severity=none
#pragma once

#include "filter_text.h"
#include "named_filters.h"

#include <optional>

namespace tool::logpan {

enum class Colour { red, orange, yellow, green, cyan, blue, violet, grey };
inline constexpr std::size_t colourCount = 8;

class clsHighlights {
  public:
    clsHighlights() = default;
    // Throws BadPattern that says which rule is none, and why.
    explicit clsHighlights(const std::vector<scNamedFilter>& rules);

    // That of the first rule which is for this line.
    std::optional<Colour> ColourOf(const scLine& line) const;

  private:
    struct scRule {
        Colour colour;
        scFilter filter;
    };

    std::vector<scRule> rules_;
};

} // namespace tool::logpan
