// Takes any bytes for the parts of a package, which no checksum keeps from their reader: 0xFF ends a part.
#include "docinfo/package_info.h"
#include "docinfo_reader.h"
#include "unit/zip_support.h"

using namespace tvut;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::vector<std::vector<std::u16string>> packages = {
        {u"[Content_Types].xml", u"_rels/.rels", u"core.xml", u"app.xml", u"custom.xml"},
        {u"mimetype", u"META-INF/manifest.xml", u"meta.xml"}};
    if (size == 0)
        return 0;
    std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    std::vector<scContents> parts;
    for (const std::u16string& name : packages[*data % 2]) {
        const std::string_view part = rest.substr(0, rest.find('\xFF'));
        parts.push_back({name, std::string(part)});
        rest.remove_prefix(std::min(part.size() + 1, rest.size()));
    }
    const std::string archive = Archive(parts, {}, ZipCompression::store);
    return FuzzReader(reinterpret_cast<const std::uint8_t*>(archive.data()), archive.size(),
                      UtilpReadPackage);
}
