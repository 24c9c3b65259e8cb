// Loading: from a source's bytes to a finished tree, whatever form and encoding they are in.
#pragma once

#include "platform/bytes.h"
#include "prof/tree.h"

#include <cstdint>
#include <string_view>

namespace tvut {

enum class ReadMode { detect, foreignXfdf, plainIni, foreignXml, foreignMarkup }; // the last: XML and XFDF

// The mode that flags of ProfJobOpenStreamObject ask for.
ReadMode ProfpReadMode(std::uint32_t flags);

struct scLoadRequest {
    std::u16string_view inputName; // for diagnostic lines
    ReadMode mode = ReadMode::detect;
    unsigned codePage = 0;   // of 8-bit input that is not UTF-8
    bool isFilledUp = false; // zeros after the text only fill its block up, as the clipboard's do
};

struct scLoadResult {
    bool parsed = false;     // false: malformed, and a diagnostic line says where
    bool compressed = false; // the input was in the compressed wrapper
};

// Reads a source into a list. What was read before a fault stays there. Throws std::bad_alloc and
// clsException when the source fails.
scLoadResult ProfpLoad(clsByteSource& source, clsItemList& target, const scLoadRequest& request);

} // namespace tvut
