// The same contents in each run: a simple generator with a fixed start.
#include "contents.h"

#include "workload.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace bench {

namespace {

class clsRandom {
  public:
    std::uint32_t Next() { return state_ = state_ * 1664525u + 1013904223u; }
    std::uint32_t Below(std::uint32_t limit) {
        return static_cast<std::uint32_t>(std::uint64_t{Next()} * limit >> 32);
    }

  private:
    std::uint32_t state_ = 1;
};

} // namespace

std::vector<std::byte> MakeDocument(std::size_t size) {
    clsRandom random;
    std::vector<std::byte> bytes;
    bytes.reserve(size + 32);
    while (bytes.size() < size) {
        const std::wstring word =
            random.Below(4) ? NameAt(random.Below(3000)) : std::to_wstring(random.Next());
        for (const wchar_t c : word)
            bytes.push_back(static_cast<std::byte>(c));
        bytes.push_back(std::byte{' '});
    }
    bytes.resize(size);
    return bytes;
}

std::vector<std::byte> MakeNoise(std::size_t size) {
    clsRandom random;
    std::vector<std::byte> bytes(size);
    std::ranges::generate(bytes, [&] { return static_cast<std::byte>(random.Next() >> 24); });
    return bytes;
}

} // namespace bench
