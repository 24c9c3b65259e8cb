// Takes any bytes for a document of whatever format they are told to be.
#include "docinfo_reader.h"

using namespace tvut;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return FuzzReader(data, size, [](clsRandomSource& document, clsDocInfo& info) {
        UtilpReadDocument(document, u"document", info);
    });
}
