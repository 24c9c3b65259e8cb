#include "element_sets.h"

#include <algorithm>

namespace tool::html {

namespace {

bool IsAmong(std::span<const Element> elements, Element element) {
    return std::ranges::find(elements, element) != elements.end();
}

} // namespace

bool IsList(Element element) {
    return element == Element::dl || IsAmong(itemLists, element);
}

bool IsCell(Element element) {
    return element == Element::td || element == Element::th;
}

bool IsPreformatted(Element element) {
    return element == Element::pre || element == Element::listing;
}

bool IsHidden(Element element) {
    return element == Element::datalist || element == Element::templates;
}

std::span<const Element> EndedBy(const Element& element) {
    return IsAmong(headings, element) ? std::span<const Element>(headings) : std::span(&element, 1);
}

std::span<const Element> LimitsOf(Element element) {
    if (element == Element::table)
        return {};
    if (element == Element::tr || IsCell(element))
        return tables;
    return element == Element::li ? std::span<const Element>(limitsOfItems) : cells;
}

} // namespace tool::html
