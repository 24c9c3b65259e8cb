// Which file names a profile may have.
#pragma once

#include <string_view>

namespace tvut {

// Whether a path's last component can name a file: it is no reserved device name (CON, PRN, AUX, NUL,
// COM1-9, LPT1-9, alone or with one extension, in any case), holds none of < > : " / | ? * and no
// control character, and does not end in a blank or a dot.
bool ProfpIsFileName(std::u16string_view path);

} // namespace tvut
