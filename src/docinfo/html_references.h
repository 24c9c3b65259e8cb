// Character references of HTML, all of HTML 4 and numbers.
#pragma once

#include <string>
#include <string_view>

namespace tvut {

// A text with its references resolved; unknown ones stay as they are. Throws std::bad_alloc.
std::u16string UtilpResolveReferences(std::u16string_view text);

} // namespace tvut
