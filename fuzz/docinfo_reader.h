// What fuzzers of document readers share: whatever is found keeps the rules.
#pragma once

#include "docinfo/doc_reader.h"
#include "require.h"
#include "unit/docinfo_support.h"

#include <cstdint>

namespace tvut {

// A search for lost objects of a PDF reads most, and may go through a file once.
constexpr std::uint64_t mostRead = 72 * 1024 * 1024;

inline const char* FaultOf(const clsDocInfo& info) {
    const std::u16string names = info.Names();
    for (std::size_t at = 0; at < names.size();) {
        const std::size_t end = std::min(names.find(u'\n', at), names.size());
        const std::optional<std::u16string_view> value = info.Find(names.substr(at, end - at));
        if (!value || value->empty())
            return "a property is named that is not there";
        if (value->size() > clsDocInfo::longestValue)
            return "a value is too long";
        if (!UtilpIsUtf16(*value))
            return "a value has half a character";
        at = end + 1;
    }
    return nullptr;
}

// Has a reader read any bytes, whether it would be asked about them or not.
template <class Read>
int FuzzReader(const std::uint8_t* data, std::size_t size, Read read) {
    DiagnosticLines().clear();
    clsMemoryDocument document({reinterpret_cast<const char*>(data), size});
    clsDocInfo info;
    try {
        read(document, info);
    } catch (const clsException&) { // damage
    }
    Require(FaultOf(info));
    Require(document.read <= mostRead ? nullptr : "too much was read");
    return 0;
}

inline int FuzzReader(const std::uint8_t* data, std::size_t size, DocReader* reader) {
    return FuzzReader(data, size, [&](clsRandomSource& document, clsDocInfo& info) {
        clsPagedSource source(document);
        reader(source, info);
    });
}

} // namespace tvut
