// Takes the comments out of a page and resolves its links in one walk from its start, which most pages allow.
#pragma once

#include <optional>
#include <string_view>

namespace tvut {

// The page itself where it has neither, so that the buffer is not touched; otherwise the text in the buffer,
// which has room for as much as the page in another place. Nothing where links are not whole and have to be
// resolved from the end, as links.h says. A link that a comment stands in takes memory for its parts
// meanwhile: throws std::bad_alloc when there is none.
std::optional<std::u16string_view> UtilpResolveWholeLinks(std::u16string_view html, char16_t* buffer);

} // namespace tvut
