// The elements of HTML that make a difference to plain text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tool::html {

// In the order of their names. other: what only stands in a line, and what is unknown.
// clang-format off
enum class Element : std::uint8_t {
    a, address, article, aside, blockquote, br, button, caption, center, datalist, dd, details, dialog, dir,
    div, dl, dt, fieldset, figcaption, figure, footer, form, h1, h2, h3, h4, h5, h6, header, hgroup, hr, img, input,
    legend, li, listing, main, menu, nav, ol, optgroup, option, p, pre, q, section, select, summary, sup,
    table, tbody, td, templates, tfoot, th, thead, tr, ul,
    other,
};
// clang-format on
constexpr std::size_t elementCount = static_cast<std::size_t>(Element::other);

// What sets it apart from the text before and after.
enum class Space : std::uint8_t { none, line, paragraph };

// Which elements a start tag closes, unless one of another set stands between them.
enum class Closing : std::uint8_t { none, paragraph, item, term, cell, row };

struct scElement {
    std::u16string_view name;
    Space space;
    bool holds; // it is open until it is closed
    Closing closing;
};

const scElement& ElementOf(Element element);

// Names compare without regard to the case of ASCII letters.
Element FindElement(std::u16string_view name);

} // namespace tool::html
