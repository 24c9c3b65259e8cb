// Loads anything after the XML form's first line; what loads must come back from XML as it was saved.
#include "xml_input.h"

#include <cstdlib>

using namespace tvut;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    DiagnosticLines().clear();
    clsTree tree(true);
    if (!Load(tree,
              WithFirstLine("<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"yes\"?>\n", data, size))
             .parsed)
        return 0;
    clsMemorySink sink;
    if (!ProfpSave(tree.Root(), 1, false, sink))
        return 0;
    clsTree again(true);
    if (sink.extended != sink.bytes.size() || !Load(again, sink.bytes).parsed ||
        Saved(again, 1) != sink.bytes)
        std::abort();
    return 0;
}
