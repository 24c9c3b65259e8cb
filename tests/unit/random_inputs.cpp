// Runs a fuzzer's check where there is no fuzzer: over its corpus, then over random bytes, the same each
// time.
//
//   random_NAME INPUTS MOST CORPUS...    so many inputs of at most so many bytes
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void Run(const std::string& bytes) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

} // namespace

int main(int count, char** arguments) {
    for (int at = 3; at < count; ++at) {
        std::ifstream file(arguments[at], std::ios::binary);
        if (!file) {
            std::printf("%s cannot be read\n", arguments[at]);
            return 1;
        }
        Run({std::istreambuf_iterator<char>(file), {}});
    }
    std::mt19937 random(1);
    for (long inputs = std::atol(arguments[1]); inputs > 0; --inputs) {
        std::string bytes(random() % std::strtoul(arguments[2], nullptr, 10), '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        Run(bytes);
    }
}
