// The elements that are open at a place of a page, and which of them a tag closes.
//
// There is no tree: what is closed is forgotten. Each open element knows the one of its name that was opened
// before it, so that whether one is open, and whether it lies within the innermost table cell or list, is
// known at once, however deep it is.
#pragma once

#include "elements.h"

#include <array>
#include <span>
#include <vector>

namespace tool::html {

struct scOpenElement {
    Element element;
    std::uint32_t before; // one more than the place of the one of that name that was opened before; 0: none
    std::uint32_t indent; // columns that it moves its contents to the right
    std::int32_t number;  // of lists, rows and cells: what clsPreparation counts
    char16_t style;       // of numbers
};

class clsOpenElements {
  public:
    clsOpenElements() { last_.fill(0); }

    scOpenElement& Open(Element element);
    scOpenElement Close(); // the innermost one
    std::size_t Count() const { return open_.size(); }

    // How many are to be closed so that the innermost of these is; 0 when none is open within the limits.
    std::size_t DepthOf(std::span<const Element> elements, std::span<const Element> limits) const;
    // The innermost of these; null when there is none.
    scOpenElement* Find(std::span<const Element> elements);

  private:
    std::uint32_t LastOf(std::span<const Element> elements) const;

    std::vector<scOpenElement> open_;
    std::array<std::uint32_t, elementCount> last_; // as before
};

} // namespace tool::html
