// Saving: which form, measured, wrapped or not, into a sink.
#pragma once

#include "platform/bytes.h"
#include "prof/formats/flags.h"
#include "prof/item_list.h"

#include <cstdint>

namespace tvut {

// Beyond this a 32-bit process could not read back what it wrote.
constexpr std::uint64_t largestSavedProfile = 0x7FFFFFFF;

// Writes a tree and finishes the sink. False when the result would be too large; the sink has heard of
// nothing then. Throws std::bad_alloc and what the sink throws.
bool ProfpSave(const clsItemList& root, std::uint32_t flags, bool wasCompressed, clsByteSink& sink);

} // namespace tvut
