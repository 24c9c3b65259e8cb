// Offsets within a module, in hexadecimal on standard input, as functions and lines on standard output:
// "function offset file line", a line each, with "-" for what is not known.
//
//   code_places IMAGE [DEBUG-FILE]
#include "runtime/symbols/image_symbols.h"

#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

namespace {

std::vector<unsigned char> ReadFile(const char* name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string_view Shown(std::string_view text) {
    return text.empty() ? "-" : text;
}

} // namespace

int main(int count, char** arguments) {
    const auto image = count > 1 ? ReadFile(arguments[1]) : std::vector<unsigned char>();
    const auto debugFile = count > 2 ? ReadFile(arguments[2]) : std::vector<unsigned char>();
    const tvut::clsImageSymbols symbols({image.data(), image.size()}, {debugFile.data(), debugFile.size()});
    std::uint32_t offset = 0;
    while (std::cin >> std::hex >> offset) {
        const tvut::scCodePlace place = symbols.Find(offset);
        std::cout << Shown(place.function) << ' ' << std::hex << place.functionOffset << ' '
                  << Shown(place.source.file) << ' ' << std::dec << place.source.line << '\n';
    }
}
