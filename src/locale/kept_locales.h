// The locales that were used last, for the next call.
#pragma once

#include "locale/locale_names.h"

#include <memory>

namespace tvut {

// The names of a locale; null when there is no such locale. Eight are kept. Those with the user's changes are
// asked for again after a second. Any thread. Throws when memory runs out.
std::shared_ptr<const clsLocaleNames> UtilpLocale(const scLocaleChoice& locale);

} // namespace tvut
