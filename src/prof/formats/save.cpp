// The form is measured before anything is written, so that the target hears its exact length first: what
// would be too large touches nothing, and a full disk shows while the old contents are still there.
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

// The wrapper's length shows in the end only, and a sink wants it before: it must know that there is
// room before it overwrites anything. So the wrapper is made in memory.
void WriteCompressed(const scFormWriter& form, const clsItemList& root, std::uint64_t bytes,
                     clsByteSink& sink) {
    clsStringSink wrapped;
    clsCompressingSink compressing(wrapped);
    form.write(root, bytes, compressing);
    compressing.Finish();
    sink.Extend(wrapped.Bytes().size());
    sink.Write(wrapped.Bytes().data(), wrapped.Bytes().size());
}

} // namespace

bool ProfpSave(const clsItemList& root, std::uint32_t flags, bool wasCompressed, clsByteSink& sink) {
    const scFormWriter& form = ProfpFormToWrite(flags);
    const std::uint64_t bytes = form.measure(root);
    const bool compress = WantsCompression(flags, wasCompressed);
    if (bytes > (compress ? largestUnfoldedProfile : largestSavedProfile)) {
        clsDiagnosticLine().Put(u"WRN: ProfSave: the profile would be too large to be read again").Write();
        return false;
    }
    if (compress)
        WriteCompressed(form, root, bytes, sink);
    else
        form.write(root, bytes, sink);
    sink.Finish();
    return true;
}

} // namespace tvut
