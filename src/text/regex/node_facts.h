// What can be said of a node without a text at hand.
#pragma once

#include "text/regex/node.h"

#include <optional>

namespace tvut {

// Whether it can match the empty text.
bool UtilpCanBeEmpty(const scRegExTree& tree, std::uint32_t node);

// The length of all its matches, if they have the same.
std::optional<std::uint32_t> UtilpFixedLength(const scRegExTree& tree, std::uint32_t node);

// The units that its matches begin with; nothing when they may be empty or begin with any unit.
std::optional<clsCharSet> UtilpFirstUnits(const scRegExTree& tree, std::uint32_t node);

} // namespace tvut
