// A file's cross references count from its mark, %PDF-, or from its first byte: makers differ, so both are
// tried. They are believed when catalogue and Info are where they say; otherwise the file is searched for its
// objects (clsPdfFile::Repair). Info and catalogue are read one by one, so that damage of one leaves the
// other.
#include "docinfo/pdf_info.h"

#include "docinfo/first_damage.h"
#include "docinfo/pdf_file.h"
#include "docinfo/pdf_text.h"
#include "docinfo/xmp.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::string_view signature = "%PDF-";
constexpr std::size_t signatureWithin = 1024;

struct scInfoRow {
    std::string_view key;
    DocProperty property;
    bool isDate = false;
};
constexpr scInfoRow infoRows[] = {
    {"Title", DocProperty::title},
    {"Author", DocProperty::author},
    {"Subject", DocProperty::subject},
    {"Keywords", DocProperty::keywords},
    {"Creator", DocProperty::application},
    {"Producer", DocProperty::producer},
    {"CreationDate", DocProperty::created, true},
    {"ModDate", DocProperty::modified, true},
};

class clsPdfReader {
  public:
    clsPdfReader(clsPagedSource& source, clsDocInfo& info) : file_(source), info_(info) {}

    // Positions should count from where the document begins, which need not be where the file does. False: it
    // only looks as if one began there.
    bool Read(std::uint64_t start) {
        clsFirstDamage damage;
        bool isOpen = IsOpened(start, damage);
        if (!isOpen && start != 0) {
            clsFirstDamage other;
            isOpen = IsOpened(0, other);
            damage = isOpen ? clsFirstDamage() : damage;
        }
        if (!isOpen)
            damage.Try([&] { file_.Repair(); });
        if (!isOpen && start != 0 && file_.Root().number == 0)
            return false;
        info_.SetFormat(u"pdf");
        if (file_.IsEncrypted())
            info_.SetEncrypted();
        damage.Try([&] { ReadInfo(); });
        damage.Try([&] { ReadCatalogue(); });
        damage.Throw();
        return true;
    }

  private:
    bool IsOpened(std::uint64_t start, clsFirstDamage& damage) {
        bool isUsable = false;
        damage.Try([&] {
            file_.Open(start);
            isUsable = IsUsable();
            UtilpRequire(isUsable, "an object is not where it should be");
        });
        return isUsable;
    }

    // In a file that wants a password objects may be out of reach.
    bool IsUsable() {
        const auto isThere = [&](scPdfReference reference) {
            return file_.Load(reference).object.Value().Is(PdfKind::dictionary);
        };
        return file_.IsLocked() ||
               (isThere(file_.Root()) && (file_.Info().number == 0 || isThere(file_.Info())));
    }

    // A value may stand by itself.
    std::u16string TextOf(const scPdfLoaded& owner, const clsPdfValue& value) {
        if (value.Is(PdfKind::string))
            return UtilpDecodePdfText(file_.Plain(owner, value.Text()));
        if (!value.Is(PdfKind::reference))
            return {};
        const scPdfLoaded loaded = file_.Load(value.Reference());
        const clsPdfValue text = loaded.object.Value();
        return text.Is(PdfKind::string) ? UtilpDecodePdfText(file_.Plain(loaded, text.Text()))
                                        : std::u16string();
    }

    void ReadInfo() {
        if (file_.IsLocked())
            return;
        const scPdfLoaded loaded = file_.Load(file_.Info());
        loaded.object.Value().EachEntry([&](std::string_view key, const clsPdfValue& value) {
            const std::u16string text = TextOf(loaded, value);
            const auto row = std::ranges::find(infoRows, key, &scInfoRow::key);
            if (row == std::end(infoRows))
                info_.AddCustom(UtilpDecodePdfText(key), text);
            else if (row->isDate)
                info_.Add(row->property, UtilpReadPdfDate(text));
            else
                info_.Add(row->property, text);
        });
    }

    void ReadCatalogue() {
        const scPdfLoaded catalogue = file_.Load(file_.Root());
        if (!file_.IsLocked()) {
            info_.Add(DocProperty::language, TextOf(catalogue, catalogue.object["Lang"]));
            const scPdfLoaded pages = file_.Load(catalogue.object["Pages"].Reference());
            info_.AddNumber(DocProperty::pages, pages.object["Count"].IntegerOr(-1));
        }
        const scPdfReference metadata = catalogue.object["Metadata"].Reference();
        if (metadata.number == 0)
            return;
        if (auto packet = file_.Stream(file_.Load(metadata)))
            UtilpReadXmp(std::move(*packet), info_);
    }

    clsPdfFile file_;
    clsDocInfo& info_;
};

} // namespace

bool UtilpIsPdf(std::string_view head) {
    return head.substr(0, signatureWithin).find(signature) != head.npos;
}

bool UtilpReadPdf(clsPagedSource& source, clsDocInfo& info) {
    source.Allow(clsPdfFile::mostBytes);
    const std::size_t start = source.Read(0, signatureWithin).find(signature);
    UtilpRequire(start != std::string::npos, "no PDF");
    if (start == 0)
        info.SetFormat(u"pdf");
    return clsPdfReader(source, info).Read(start);
}

} // namespace tvut
