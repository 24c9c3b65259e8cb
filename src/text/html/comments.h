// What a comment of a page is recognised by.
#pragma once

#include <string_view>

namespace tvut {

constexpr std::u16string_view commentStart = u"<!--";
constexpr std::u16string_view commentEnd = u"-->";

} // namespace tvut
