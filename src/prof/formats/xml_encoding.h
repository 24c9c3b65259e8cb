// The encoding that an XML document names in its declaration.
#pragma once

#include <string_view>

namespace tvut {

// The code page of the encoding that 8-bit XML names in <?xml ... encoding="..."?>. 0 where it names none,
// one that nobody knows, or UTF-8, which shows by itself.
unsigned ProfpDeclaredCodePage(std::string_view bytes);

} // namespace tvut
