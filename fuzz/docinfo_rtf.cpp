// Takes any bytes for what the reader of this format reads.
#include "docinfo/rtf_info.h"
#include "docinfo_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return tvut::FuzzReader(data, size, tvut::UtilpReadRtf);
}
