// Reads any bytes as a variant; what can be read is written as the same bytes again.
#include "require.h"

#include "platform/exception.h"
#include "prof/variant_layout.h"

using namespace tvut;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    clsVariantWriter written;
    try {
        ProfpReadVariant(bytes, written);
    } catch (const clsException&) {
        return 0;
    }
    Require(written.Bytes() == bytes);
    return 0;
}
