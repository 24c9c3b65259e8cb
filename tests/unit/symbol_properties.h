// What holds for the names and lines of any bytes, for the test of damaged files and for the fuzzer.
#pragma once

#include "runtime/symbols/image_symbols.h"

#include <functional>

namespace tvut {

inline clsBytes AllBytes(std::string_view bytes) {
    return {reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()};
}

/// The fault that a module and its debug file show at an offset; null when there is none.
inline const char* FaultOfPlace(std::string_view image, std::string_view debugFile, std::uint32_t offset) {
    const auto isWithin = [](std::string_view text, std::string_view bytes) {
        const std::less<const char*> isBefore;
        return !isBefore(text.data(), bytes.data()) &&
               !isBefore(bytes.data() + bytes.size(), text.data() + text.size());
    };
    const auto lies = [&](std::string_view text) {
        return text.empty() || isWithin(text, image) || isWithin(text, debugFile);
    };
    const scCodePlace place = clsImageSymbols(AllBytes(image), AllBytes(debugFile)).Find(offset);
    const std::string_view link = UtilpDebugLinkOf(AllBytes(image));
    if (!lies(place.function) || !lies(place.source.file) || !lies(link))
        return "a text lies outside the files";
    if (link.find_first_of("/\\:") != link.npos)
        return "the debug file lies elsewhere";
    if (place.function.empty() != (place.kind == FunctionName::None) || place.functionOffset > offset)
        return "a function without name, or after the place";
    return nullptr;
}

} // namespace tvut
