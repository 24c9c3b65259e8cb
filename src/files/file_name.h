// Which names files may have: the file of a profile, and files whose names come from somewhere else.
#pragma once

#include <cstddef>
#include <string_view>

namespace tvut {

// Whether a file's name may hold a character: no control character and none of < > : " / \ | ? *
bool UtilpIsNameCharacter(char16_t unit) noexcept;

// Whether a path's last component can name a file: it holds nothing else, does not end in a blank or a dot,
// and is no reserved device name (CON, PRN, AUX, NUL, COM1-9, LPT1-9, alone or with one extension, in any
// case).
bool UtilpIsFileName(std::u16string_view path) noexcept;

// Throws clsException for one that cannot.
void UtilpRequireFileName(std::u16string_view path);

// Whether a name that nobody vouches for names a file in whatever folder it is put into, and nothing else
// there is: no separator, drive, stream, "." or "..", and stricter about devices than a path is, as
// UtilpDeviceLength has them.
bool UtilpIsBareFileName(std::u16string_view name) noexcept;

// The length of the device's name that a file's name begins with, 0 when it names no device: also with
// several extensions, with blanks before the first one, COM and LPT with a raised figure, CONIN$, CONOUT$.
std::size_t UtilpDeviceLength(std::u16string_view name) noexcept;

} // namespace tvut
