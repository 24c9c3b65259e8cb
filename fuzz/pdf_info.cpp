// Reads any bytes as a PDF.
#include "docinfo/pdf_info.h"
#include "document_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return tvut::ReadAnyDocument(tvut::UtilpReadPdf, 72 * 1024 * 1024, data, size);
}
