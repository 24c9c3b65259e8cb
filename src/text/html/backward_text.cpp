// Most pieces are short and lie elsewhere: they are copied in line, which is faster than a call. One that
// overlaps its new place is moved by the runtime, which minds the order.
#include "text/html/backward_text.h"

#include "text/units.h"

#include <cstring>

namespace tvut {

void clsBackwardText::Put(std::u16string_view text) {
    start_ -= text.size();
    const bool apart = start_ < text.data() || static_cast<std::size_t>(start_ - text.data()) >= text.size();
    if (text.size() < 64 && apart)
        UtilpCopy(start_, text.data(), text.size());
    else
        std::memmove(start_, text.data(), text.size() * sizeof(char16_t));
}

} // namespace tvut
