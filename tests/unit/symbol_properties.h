// What holds for the names and lines of any bytes, for the test of damaged files and for the fuzzer.
#pragma once

#include "runtime/symbols/symbol_index.h"

#include <functional>
#include <vector>

namespace tvut {

inline clsBytes AllBytes(std::string_view bytes) {
    return {reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()};
}

// An index of files, in memory of its own.
class clsIndexOfFiles {
  public:
    explicit clsIndexOfFiles(const clsImageSymbols& files)
        : clsIndexOfFiles(files, clsSymbolIndex::Measure(files)) {}
    clsIndexOfFiles(const clsImageSymbols& files, const clsSymbolIndex::scSize& size)
        : room_(static_cast<std::size_t>(size.Bytes())), index_(files, size, room_.data()) {}

    scCodePlace Find(std::uint32_t offset) const { return index_.Find(offset); }
    bool Holds(std::string_view text) const {
        const auto* const begin = reinterpret_cast<const char*>(room_.data());
        const std::less<const char*> isBefore;
        return !isBefore(text.data(), begin) && !isBefore(begin + room_.size(), text.data() + text.size());
    }

  private:
    std::vector<std::byte> room_;
    clsSymbolIndex index_;
};

// The fault that a module and its debug file show at an offset; null when there is none.
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
    if (place.function.empty() != (place.kind == FunctionName::none) || place.functionOffset > offset)
        return "a function without name, or after the place";
    return nullptr;
}

// The same of an index of them, at a place that only the index is asked for.
inline const char* FaultOfIndex(std::string_view image, std::string_view debugFile, std::uint32_t offset) {
    const clsIndexOfFiles index(clsImageSymbols(AllBytes(image), AllBytes(debugFile)));
    const scCodePlace place = index.Find(offset);
    if ((!place.function.empty() && !index.Holds(place.function)) ||
        (!place.source.file.empty() && !index.Holds(place.source.file)))
        return "a text lies outside the index";
    return place.functionOffset > offset ? "an indexed function after the place" : nullptr;
}

} // namespace tvut
