// Colours on a console.
#pragma once

#include <string>
#include <string_view>

namespace tool {

enum class Paint { list, name, removed, added };

// What begins a colour on standard output, and what ends it: empty texts but on a console that knows the
// escape sequences, and there, too, where the environment has NO_COLOR (https://no-color.org).
std::string_view BeginPaint(Paint paint);
std::string_view EndPaint();

} // namespace tool
