// Loads anything after the XFDF form's first line, as ours and as other programs'. What loads is saved to
// the length that was measured, and read again without harm; not to the same tree, for nothing is escaped.
#include "require.h"
#include "xml_input.h"

using namespace tvut;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    DiagnosticLines().clear();
    const std::string bytes = WithFirstLine("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n", data, size);
    for (const ReadMode mode : {ReadMode::detect, ReadMode::foreignXfdf}) {
        clsTree tree(size % 4 < 2);
        if (!Load(tree, bytes, mode).parsed)
            continue;
        clsMemorySink sink;
        if (!ProfpSave(tree.Root(), 2, false, sink))
            continue;
        Require(sink.extended == sink.bytes.size());
        clsTree again(true);
        Load(again, sink.bytes, mode);
    }
    return 0;
}
