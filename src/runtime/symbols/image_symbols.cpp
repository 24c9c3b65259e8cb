// The debug file is asked before the module, whose own tables are mostly stripped off, and symbols before
// exports: the nearest export may belong to another function.
#include "runtime/symbols/image_symbols.h"

#include "runtime/symbols/coff_symbols.h"

namespace tvut {

clsImageSymbols::clsImageSymbols(clsBytes image, clsBytes debugFile) noexcept : image_(image) {
    const clsPeImage candidate(debugFile);
    if (image_.HasDebugFile(candidate))
        debug_ = candidate;
}

scCodePlace clsImageSymbols::Find(std::uint32_t offset) const noexcept {
    scCodePlace place;
    place.source = UtilpFindSourceLine(debug_, offset);
    if (place.source.line == 0)
        place.source = UtilpFindSourceLine(image_, offset);
    scNearestName name = UtilpNearestSymbol(debug_, offset);
    if (name.name.empty())
        name = UtilpNearestSymbol(image_, offset);
    place.kind = FunctionName::symbol;
    if (name.name.empty()) {
        name = image_.NearestExport(offset);
        place.kind = FunctionName::exported;
        if (name.offset >= farthestExport)
            name = {};
    }
    if (name.name.empty())
        place.kind = FunctionName::none;
    place.function = name.name;
    place.functionOffset = name.offset;
    return place;
}

std::string_view UtilpDebugLinkOf(clsBytes image) noexcept {
    return clsPeImage(image).DebugLink().file;
}

} // namespace tvut
