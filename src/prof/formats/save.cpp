#include "prof/formats/save.h"

#include "prof/formats/compression.h"
#include "prof/formats/form.h"
#include "runtime/diagnostics.h"

namespace tvut {

namespace {

bool WantsCompression(std::uint32_t flags, bool wasCompressed) {
    return (flags & saveFlags::compressed) != 0 ||
           ((flags & saveFlags::compressedAsRead) != 0 && wasCompressed);
}

void WriteCompressed(const IclsFormWriter& form, const clsItemList& root, clsByteSink& target) {
    clsCompressingSink sink(target);
    form.Write(root, sink);
    sink.Finish();
}

void WritePlain(const IclsFormWriter& form, const clsItemList& root, std::uint64_t bytes, clsByteSink& sink) {
    sink.Extend(bytes);
    form.Write(root, sink);
    sink.Finish();
}

} // namespace

bool ProfpSave(const clsItemList& root, std::uint32_t flags, bool wasCompressed, IclsSinkMaker& maker) {
    const IclsFormWriter* const form = ProfpFormToWrite(flags);
    if (!form) {
        clsDiagnosticLine().Put(u"WRN: ProfSave: this form cannot be written").Write();
        return false;
    }
    const std::uint64_t bytes = form->Measure(root);
    const bool compress = WantsCompression(flags, wasCompressed);
    if (bytes > (compress ? largestUnfoldedProfile : largestSavedProfile)) {
        clsDiagnosticLine().Put(u"WRN: ProfSave: the profile would be too large to be read again").Write();
        return false;
    }
    if (compress)
        WriteCompressed(*form, root, maker.MakeSink());
    else
        WritePlain(*form, root, bytes, maker.MakeSink());
    return true;
}

} // namespace tvut
