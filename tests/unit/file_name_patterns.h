// The checks of file names in the words that they are defined in, as an oracle of what looks at them.
#pragma once

#include "files/file_name.h"
#include "text/regex/regex.h"

#include <string_view>

namespace tvut {

inline const clsRegEx fileNamePattern(uR"((?xi) ^
    (?!  (?: CON | PRN | AUX | NUL | COM[1-9] | LPT[1-9] )  (?: \. [^.]* )?  \z )
    [^<>:"/\\|?*\x00-\x1F]*  [^<>:"/\\|?*\x00-\x1F\ .]  \z)");

inline const clsRegEx bareNamePattern(uR"((?xi) ^
    (?!  (?: CON | PRN | AUX | NUL | CONIN\$ | CONOUT\$ | (?:COM|LPT)[1-9\xB9\xB2\xB3] ) \ * (?: \. | \z ) )
    [^<>:"/\\|?*\x00-\x1F]*  [^<>:"/\\|?*\x00-\x1F\ .]  \z)");

// Names the fault; null when there is none. What is the last component of a path is not looked at.
inline const char* FaultOfChecks(std::u16string_view name) {
    if (UtilpIsBareFileName(name) != bareNamePattern.Matches(name))
        return "another bare name than the pattern's";
    const bool isPath = name.find_first_of(u"\\/:") != std::u16string_view::npos;
    return isPath || UtilpIsFileName(name) == fileNamePattern.Matches(name)
               ? nullptr
               : "another file name than the pattern's";
}

} // namespace tvut
