#include "runtime/output/narrow_line.h"

#include "platform/code_page.h"
#include "runtime/default_code_page.h"

namespace tvut {

bool clsNarrowLine::Set(std::u16string_view text, std::string_view lineEnd) noexcept {
    length_ = 0;
    try {
        const std::size_t room = bytes_.size() - longestLineEnd;
        length_ = PlatformEncode(UtilpCodePage(), text, bytes_.data(), room);
    } catch (...) {
        return false;
    }
    length_ += lineEnd.copy(bytes_.data() + length_, longestLineEnd);
    return true;
}

} // namespace tvut
