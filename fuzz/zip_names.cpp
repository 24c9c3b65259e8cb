// Reads any bytes as the name of an entry, and makes a path of it.
#include "require.h"
#include "unit/zip_name_properties.h"

using namespace tvut;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view name(reinterpret_cast<const char*>(data), size);
    Require(FaultOfZipName(name, ZipNameForm::utf8));
    Require(FaultOfZipName(name, ZipNameForm::oem));
    return 0;
}
