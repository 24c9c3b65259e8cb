// Reads any bytes as a compound file.
#include "docinfo/ole_info.h"
#include "document_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return tvut::ReadAnyDocument(tvut::UtilpReadOle, 4 * 1024 * 1024, data, size);
}
