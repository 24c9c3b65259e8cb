// Splits and merges any texts: the input's lines are bases and the paths that are meant by somebody there.
#include "require.h"
#include "unit/path_properties.h"

#include <utility>

using namespace tvut;

namespace {

void CheckInside(std::u16string_view path) {
    Require(FaultOfInside(u"C:\\", 1, path));
    Require(FaultOfInside(u"d:/a\\..\\b", 1, path));
    Require(FaultOfInside(u"\\\\srv\\share\\a", 2, path));
    Require(FaultOfInside(u"\\\\?\\UNC\\srv\\share", 4, path));
}

} // namespace

// Bytes, with 0x80 to 0xFF as units far beyond the letters.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::u16string base, path;
    for (std::size_t at = 0; at <= size; ++at) {
        if (at < size && data[at] != '\n') {
            path += static_cast<char16_t>(data[at] < 0x80 ? data[at] : data[at] + 0xD770);
            continue;
        }
        Require(FaultOfSplit(path));
        Require(FaultOfMerge(base, path));
        CheckInside(path);
        base = std::exchange(path, {});
    }
    return 0;
}
