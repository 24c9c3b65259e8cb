// Formats are tried in the order of the table: those that their first bytes name come first, those that are
// known by how their text begins last.
#include "docinfo/detect.h"

#include "docinfo/doc_reader.h"
#include "docinfo/html_info.h"
#include "docinfo/mail_info.h"
#include "docinfo/ole_info.h"
#include "docinfo/package_info.h"
#include "docinfo/pdf_info.h"
#include "docinfo/rtf_info.h"
#include "docinfo/tiff_info.h"
#include "runtime/diagnostics.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::size_t headBytes = 4096;

struct scDocFormat {
    bool (*isLikely)(std::string_view head); // by the document's first bytes, at most headBytes
    DocReader* read;
};

bool IsPackage(std::string_view head) {
    return head.starts_with("PK\3\4") || head.starts_with("PK\5\6");
}

constexpr scDocFormat formats[] = {
    {UtilpIsCompound, UtilpReadOle}, {IsPackage, UtilpReadPackage}, {UtilpIsRtf, UtilpReadRtf},
    {UtilpIsTiff, UtilpReadTiff},    {UtilpIsPdf, UtilpReadPdf},    {UtilpIsHtmlLikely, UtilpReadHtml},
    {UtilpIsMail, UtilpReadMail},
};

// Where the document cannot be read any further, what it has given by then stays.
bool Read(const scDocFormat& format, clsPagedSource& source, clsDocInfo& info) {
    try {
        return format.read(source, info);
    } catch (const clsDocDamage& damage) {
        const std::string_view words = damage.what();
        info.SetProblem(u"damaged: " + std::u16string(words.begin(), words.end()));
    } catch (const clsException&) {
        info.SetProblem(u"cannot be read");
    }
    return info.Has(DocProperty::format);
}

void Tell(std::u16string_view name, const clsDocInfo& info) {
    if (info.Has(DocProperty::problem))
        clsDiagnosticLine()
            .Put(u"WRN: clsDocInfo('")
            .Put(name)
            .Put(u"'): ")
            .Put(info.Text(DocProperty::problem))
            .Write();
}

} // namespace

bool UtilpReadDocument(clsRandomSource& document, std::u16string_view name, clsDocInfo& info) {
    clsPagedSource source(document);
    const std::string head = source.Read(0, headBytes);
    const bool isRead = std::ranges::any_of(formats, [&](const scDocFormat& format) {
        if (format.isLikely(head) && Read(format, source, info))
            return true;
        info = clsDocInfo();
        return false;
    });
    info.Finish();
    Tell(name, info);
    return isRead;
}

} // namespace tvut
