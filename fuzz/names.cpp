// Checks any names against the patterns that define them, and makes names of any text.
#include "require.h"
#include "unit/file_name_patterns.h"
#include "unit/path_properties.h"

#include <cstring>

using namespace tvut;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::u16string text(size / sizeof(char16_t), u'\0');
    if (!text.empty())
        std::memcpy(text.data(), data, text.size() * sizeof(char16_t));
    Require(FaultOfName(text));
    Require(FaultOfChecks(text.substr(0, 300)));
    Require(FaultOfChecks(MadeName(text)));
    return 0;
}
