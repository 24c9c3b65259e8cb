// Names that are unfolded when somebody asks for the first of them. Those of the last four languages are
// kept, and those that countries and languages have for themselves: some 30 KB.
#pragma once

#include "locale/translated_names.h"

#include <memory>

namespace tvut {

// The names of a block, which stay while they are held. Any thread; throws std::bad_alloc.
std::shared_ptr<const clsTranslatedNames> UtilpNamesOf(std::uint8_t block);

} // namespace tvut
