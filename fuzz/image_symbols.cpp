// Takes any bytes apart as a module's file and its debug file: four bytes give the offset that is looked up,
// four the length of the first file, the rest are the files.
#include "require.h"
#include "unit/symbol_properties.h"

#include <cstring>
#include <string>

using namespace tvut;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::uint32_t numbers[2];
    if (size < sizeof numbers)
        return 0;
    std::memcpy(numbers, data, sizeof numbers);
    const std::string_view files(reinterpret_cast<const char*>(data) + sizeof numbers, size - sizeof numbers);
    // Memory of its own for each, so that reading past the end shows.
    const std::string image(files.substr(0, numbers[1]));
    const std::string debugFile(files.substr(image.size()));
    Require(FaultOfPlace(image, debugFile, numbers[0]));
    Require(FaultOfIndex(image, debugFile, numbers[0]));
    return 0;
}
