// What a support desk asks first: which program runs, on which system, with which modules.
#pragma once

#include <string>

namespace tvut {

// Lines as crash reports have them, UTF-8 with CR LF. Throws std::bad_alloc.
std::string UtilpSystemText();

} // namespace tvut
