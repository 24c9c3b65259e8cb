// An archive is OOXML by its list of content types, OpenDocument by its part "mimetype", else no document.
//
// One without a readable directory is known by its first part, where makers of both put these two: it has
// lost its properties, and says so.
#include "docinfo/package_info.h"

#include "docinfo/odf_info.h"
#include "docinfo/ooxml_info.h"
#include "docinfo/zip_package.h"
#include "zip/zip_records.h"

namespace tvut {

namespace {

constexpr std::string_view contentTypes = "[Content_Types].xml", mimeType = "mimetype";

bool ReadWithoutDirectory(clsPagedSource& source, clsDocInfo& info) {
    const std::string head = source.Read(0, clsPagedSource::pageBytes);
    scLocalHeader header;
    if (!UtilpReadRecord(head, header))
        return false;
    const std::string_view rest = std::string_view(head).substr(scLocalHeader::size);
    const std::string_view name = rest.substr(0, header.nameBytes);
    const std::size_t dataAt = std::size_t{header.nameBytes} + header.extraBytes;
    std::u16string_view format;
    if (name == contentTypes)
        format = u"ooxml";
    else if (name == mimeType && header.method == zipmethod::stored && dataAt < rest.size())
        format = UtilpOdfFormat(rest.substr(dataAt, header.bytes));
    if (format.empty())
        return false;
    info.SetFormat(format);
    info.SetProblem(u"damaged: the archive has no directory");
    return true;
}

} // namespace

bool UtilpReadPackage(clsPagedSource& source, clsDocInfo& info) {
    clsZipPackage package(source, info);
    if (!package.Open())
        return ReadWithoutDirectory(source, info);
    if (package.Find(contentTypes)) {
        UtilpReadOoxml(package, info);
        return true;
    }
    const scZipEntry* const type = package.Find(mimeType);
    if (!type || type->bytes > 1024)
        return false;
    const std::u16string_view format = UtilpOdfFormat(package.Part(*type));
    if (format.empty())
        return false;
    info.SetFormat(format);
    UtilpReadOdf(package, info);
    return true;
}

} // namespace tvut
