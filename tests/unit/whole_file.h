// The bytes of a file.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>

namespace tvut {

inline std::string ReadFile(const std::filesystem::path& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

} // namespace tvut
