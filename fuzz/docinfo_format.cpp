// Takes any bytes for what the reader of one format reads: the one that the build names.
#include "docinfo/html_info.h"
#include "docinfo/mail_info.h"
#include "docinfo/ole_info.h"
#include "docinfo/pdf_info.h"
#include "docinfo/rtf_info.h"
#include "docinfo/tiff_info.h"
#include "docinfo_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return tvut::FuzzReader(data, size, tvut::TVUT22_FUZZED_READER);
}
