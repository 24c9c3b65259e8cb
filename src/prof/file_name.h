// Which names files may have: the file of a profile, and files that come out of one.
#pragma once

#include <string_view>

namespace tvut {

// Whether a path's last component can name a file: it is no reserved device name (CON, PRN, AUX, NUL,
// COM1-9, LPT1-9, alone or with one extension, in any case), holds none of < > : " / | ? * and no
// control character, and does not end in a blank or a dot.
bool ProfpIsFileName(std::u16string_view path);

// Throws clsException for one that cannot.
void ProfpRequireFileName(std::u16string_view path);

// Whether a name taken from a profile names a file in whatever folder it is put behind, and nothing else
// there is: no separator, drive, stream, "." or "..", and stricter about devices than a path: also with
// several extensions, with blanks before the first one, COM and LPT with a raised figure, CONIN$, CONOUT$.
bool ProfpIsBareFileName(std::u16string_view name);

} // namespace tvut
