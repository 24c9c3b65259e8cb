// Loads anything after the XML form's first line; what loads must come back from XML as it was saved.
#include "require.h"
#include "xml_input.h"

using namespace tvut;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    DiagnosticLines().clear();
    clsTree tree(true);
    constexpr std::string_view firstLine = "<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"yes\"?>\n";
    if (!Load(tree, WithFirstLine(firstLine, data, size)).parsed)
        return 0;
    clsMemorySink sink;
    if (!ProfpSave(tree.Root(), 1, false, sink))
        return 0;
    clsTree again(true);
    Require(sink.extended == sink.bytes.size() && Load(again, sink.bytes).parsed);
    Require(Saved(again, 1) == sink.bytes);
    return 0;
}
