// The program that wrote a line.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace tool::logpan {

struct scProcess {
    std::uint32_t id = 0;
    std::wstring name; // of its file, such as "kontor.exe"; empty where the system does not tell it
};

// Shared by all lines of one process; null where it is not known.
using ProcessPtr = std::shared_ptr<const scProcess>;

} // namespace tool::logpan
