// Parses any text as every type; what a type formats must parse back to the same value.
#include "require.h"

#include "prof/value_types.h"

#include <cmath>
#include <cstring>
#include <string>

using namespace tvut;

namespace {

template <class Type>
void Parse(std::u16string_view text) {
    typename Type::Value value{};
    if (text.empty() || !Type::Parse(text, value))
        return;
    clsValueText formatted;
    Type::Format(formatted, value);
    typename Type::Value again{};
    clsValueText formattedAgain;
    Require(Type::Parse(formatted.View(), again));
    Type::Format(formattedAgain, again);
    Require(formatted.View() == formattedAgain.View());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::u16string text(size / sizeof(char16_t), u'\0');
    std::memcpy(text.data(), data, text.size() * sizeof(char16_t));
    Parse<clsBoolType>(text);
    Parse<clsIntType>(text);
    Parse<clsInt64Type>(text);
    Parse<clsPointType>(text);
    Parse<clsRectType>(text);
    Parse<clsRectLTWHType>(text);
    Parse<clsColorrefType>(text);
    if (std::isfinite(ProfpScanDouble(text)))
        Parse<clsDoubleType>(text);
    return 0;
}
