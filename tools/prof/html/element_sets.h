// Elements that belong together, and what a tag does not reach through.
#pragma once

#include "elements.h"

#include <array>
#include <span>

namespace tool::html {

inline constexpr std::array itemLists{Element::ul, Element::ol, Element::menu, Element::dir};
inline constexpr std::array cells{Element::td, Element::th, Element::caption};
inline constexpr std::array rows{Element::tr, Element::caption};
inline constexpr std::array limitsOfItems{Element::ul, Element::ol, Element::menu,   Element::dir,
                                          Element::td, Element::th, Element::caption};
inline constexpr std::array limitsOfTerms{Element::dl, Element::td, Element::th, Element::caption};
inline constexpr std::array headings{Element::h1, Element::h2, Element::h3,
                                     Element::h4, Element::h5, Element::h6};
inline constexpr std::array tables{Element::table};

bool IsList(Element element);
bool IsCell(Element element);
bool IsPreformatted(Element element);
bool IsHidden(Element element); // what it holds is not shown

// Which elements an end tag closes one of: any end tag of a heading ends any heading. The result may refer to
// the element.
std::span<const Element> EndedBy(const Element& element);
std::span<const Element> LimitsOf(Element element);

} // namespace tool::html
