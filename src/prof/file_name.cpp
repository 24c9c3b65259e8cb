#include "prof/file_name.h"

#include "text/regex.h"

namespace tvut {

namespace {

// What stands behind the last separator. A drive with a relative path behind it is no part of it.
std::u16string_view LastComponent(std::u16string_view path) {
    const std::u16string_view name = path.substr(path.find_last_of(u"\\/") + 1);
    const bool driveOnly = name.size() == path.size() && name.size() >= 2 && name[1] == u':';
    return driveOnly ? name.substr(2) : name;
}

} // namespace

bool ProfpIsFileName(std::u16string_view path) {
    static const clsRegEx fileName(uR"((?xi) ^
        (?!  (?: CON | PRN | AUX | NUL | COM[1-9] | LPT[1-9] )  (?: \. [^.]* )?  \z )
        [^<>:"/\\|?*\x00-\x1F]*  [^<>:"/\\|?*\x00-\x1F\ .]  \z)");
    return fileName.Matches(LastComponent(path));
}

// Refuses what the system takes for a device though nobody reserves it: superscript figures, the console's
// two names, blanks or several extensions behind a name. The system drops blanks and dots at the end of a
// name, so such a one would name another file.
bool ProfpIsBareFileName(std::u16string_view name) {
    static const clsRegEx bareName(uR"((?xi) ^
        (?!  (?: CON | PRN | AUX | NUL | CONIN\$ | CONOUT\$ | (?:COM|LPT)[1-9\xB9\xB2\xB3] ) \ * (?: \. | \z ) )
        [^<>:"/\\|?*\x00-\x1F]*  [^<>:"/\\|?*\x00-\x1F\ .]  \z)");
    return bareName.Matches(name);
}

} // namespace tvut
