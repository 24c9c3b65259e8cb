// The files that a path with wildcards in its last component stands for.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tool::tvut {

// In the order of their names, without folders; nothing for a path without wildcards.
std::optional<std::vector<std::string>> FoundPaths(const std::string& path);

} // namespace tool::tvut
