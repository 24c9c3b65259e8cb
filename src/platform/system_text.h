// Texts from system calls that tell how much room they need.
#pragma once

#include <string>
#include <windows.h>

namespace tvut {

// The text that a call writes into a buffer of a size: the call returns its length, the room needed where the
// buffer is too small, or 0 for a failure, whose text is empty. Throws std::bad_alloc.
template <class Call>
std::wstring PlatformText(Call call) {
    std::wstring text(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = call(text.data(), static_cast<DWORD>(text.size()));
        const bool fits = length < text.size();
        text.resize(fits ? length : length + 1);
        if (fits)
            return text;
    }
}

} // namespace tvut
