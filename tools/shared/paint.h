// Colours on a console.
#pragma once

#include <string_view>

namespace tool {

enum class Paint { list, name, removed, added };

// What begins a colour on standard output, and what ends it. Both are empty, unless standard output is a
// console that knows the escape sequences and the environment has no NO_COLOR (https://no-color.org).
std::string_view BeginPaint(Paint paint);
std::string_view EndPaint();

} // namespace tool
