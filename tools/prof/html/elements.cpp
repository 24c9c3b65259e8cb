#include "elements.h"

#include "characters.h"

#include <algorithm>
#include <array>
#include <span>

namespace tool::html {

namespace {

// In the order of Element.
constexpr std::array<scElement, elementCount + 1> elements{{
    {u"a", Space::none, false, Closing::none},
    {u"address", Space::line, true, Closing::paragraph},
    {u"article", Space::line, true, Closing::paragraph},
    {u"aside", Space::line, true, Closing::paragraph},
    {u"blockquote", Space::paragraph, true, Closing::paragraph},
    {u"br", Space::none, false, Closing::none},
    {u"button", Space::none, false, Closing::none},
    {u"caption", Space::line, true, Closing::none},
    {u"center", Space::line, true, Closing::paragraph},
    {u"datalist", Space::none, true, Closing::none},
    {u"dd", Space::line, true, Closing::term},
    {u"details", Space::line, true, Closing::paragraph},
    {u"dialog", Space::line, true, Closing::paragraph},
    {u"dir", Space::paragraph, true, Closing::paragraph},
    {u"div", Space::line, true, Closing::paragraph},
    {u"dl", Space::paragraph, true, Closing::paragraph},
    {u"dt", Space::line, true, Closing::term},
    {u"fieldset", Space::line, true, Closing::paragraph},
    {u"figcaption", Space::line, true, Closing::paragraph},
    {u"figure", Space::line, true, Closing::paragraph},
    {u"footer", Space::line, true, Closing::paragraph},
    {u"form", Space::line, true, Closing::paragraph},
    {u"h1", Space::paragraph, true, Closing::paragraph},
    {u"h2", Space::paragraph, true, Closing::paragraph},
    {u"h3", Space::paragraph, true, Closing::paragraph},
    {u"h4", Space::paragraph, true, Closing::paragraph},
    {u"h5", Space::paragraph, true, Closing::paragraph},
    {u"h6", Space::paragraph, true, Closing::paragraph},
    {u"header", Space::line, true, Closing::paragraph},
    {u"hgroup", Space::line, true, Closing::paragraph},
    {u"hr", Space::line, false, Closing::paragraph},
    {u"img", Space::none, false, Closing::none},
    {u"input", Space::none, false, Closing::none},
    {u"legend", Space::line, true, Closing::none},
    {u"li", Space::line, true, Closing::item},
    {u"listing", Space::paragraph, true, Closing::paragraph},
    {u"main", Space::line, true, Closing::paragraph},
    {u"menu", Space::paragraph, true, Closing::paragraph},
    {u"nav", Space::line, true, Closing::paragraph},
    {u"ol", Space::paragraph, true, Closing::paragraph},
    {u"optgroup", Space::none, false, Closing::none},
    {u"option", Space::none, false, Closing::none},
    {u"p", Space::paragraph, true, Closing::paragraph},
    {u"pre", Space::paragraph, true, Closing::paragraph},
    {u"q", Space::none, false, Closing::none},
    {u"section", Space::line, true, Closing::paragraph},
    {u"select", Space::none, true, Closing::none},
    {u"summary", Space::line, true, Closing::paragraph},
    {u"sup", Space::none, false, Closing::none},
    {u"table", Space::paragraph, true, Closing::none},
    {u"tbody", Space::line, false, Closing::row},
    {u"td", Space::none, true, Closing::cell},
    {u"template", Space::none, true, Closing::none},
    {u"tfoot", Space::line, false, Closing::row},
    {u"th", Space::none, true, Closing::cell},
    {u"thead", Space::line, false, Closing::row},
    {u"tr", Space::line, true, Closing::row},
    {u"ul", Space::paragraph, true, Closing::paragraph},
    {u"", Space::none, false, Closing::none},
}};

constexpr std::size_t longestName = 10;

} // namespace

const scElement& ElementOf(Element element) {
    return elements[static_cast<std::size_t>(element)];
}

Element FindElement(std::u16string_view name) {
    std::array<char16_t, longestName> lower;
    if (name.size() > lower.size())
        return Element::other;
    std::ranges::transform(name, lower.begin(), Lower);
    const std::u16string_view wanted{lower.data(), name.size()};
    const auto known = std::span(elements).first(elementCount);
    const auto row = std::ranges::lower_bound(known, wanted, {}, &scElement::name);
    return row != known.end() && row->name == wanted ? static_cast<Element>(row - known.begin())
                                                     : Element::other;
}

} // namespace tool::html
