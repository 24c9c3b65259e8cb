#include "platform/system_error.h"

#include "platform/exception.h"
#include "platform/wide.h"

#include <cwchar>
#include <windows.h>

namespace tvut {

static_assert(reason::accessDenied == ERROR_ACCESS_DENIED && reason::noMemory == ERROR_NOT_ENOUGH_MEMORY &&
              reason::invalidData == ERROR_INVALID_DATA && reason::writeFault == ERROR_WRITE_FAULT &&
              reason::readFault == ERROR_READ_FAULT && reason::invalidArgument == ERROR_INVALID_PARAMETER &&
              reason::invalidName == ERROR_INVALID_NAME && reason::tooLarge == ERROR_FILE_TOO_LARGE);

clsSystemErrorText::clsSystemErrorText(unsigned long error) noexcept {
    wchar_t* const text = ToWide(text_.data());
    const auto size = static_cast<DWORD>(text_.size());
    length_ = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
                             text, size, nullptr);
    while (length_ > 0 && (text_[length_ - 1] == u'\n' || text_[length_ - 1] == u'\r'))
        --length_;
    if (length_ == 0) // the system has no words for it
        length_ = static_cast<std::size_t>(_snwprintf(text, size, L"error %lu", error));
}

} // namespace tvut
