// The form is measured before anything is written, so that the target hears its exact length first: what
// would be too large touches nothing, and a full disk shows while the old contents are still there. A target
// that is not touched before it is complete has no need of that, and measuring costs as much as writing: what
// turns out to be too large then is not finished.
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

class clsTooLarge {};

// Passes on no more than a profile may have.
class clsLimitedSink final : public clsByteSink {
  public:
    explicit clsLimitedSink(clsByteSink& sink) : sink_(sink) {}
    void Extend(std::uint64_t bytes) override { sink_.Extend(bytes); }
    void Write(const void* data, std::size_t bytes) override {
        if (bytes > left_)
            throw clsTooLarge();
        left_ -= bytes;
        sink_.Write(data, bytes);
    }
    void Finish() override { sink_.Finish(); }

  private:
    clsByteSink& sink_;
    std::uint64_t left_ = largestSavedProfile;
};

void WriteMeasured(const scFormWriter& form, const clsItemList& root, bool compress, clsByteSink& sink) {
    const std::uint64_t bytes = form.measure(root);
    if (bytes > (compress ? largestUnfoldedProfile : largestSavedProfile))
        throw clsTooLarge();
    if (compress)
        WriteCompressed(form, root, bytes, sink);
    else
        form.write(root, bytes, sink);
}

void Write(const scFormWriter& form, const clsItemList& root, bool compress, clsByteSink& sink) {
    if (compress || sink.UsesLength())
        return WriteMeasured(form, root, compress, sink);
    clsLimitedSink limited(sink);
    form.write(root, clsByteSink::unknownLength, limited);
}

} // namespace

bool ProfpSave(const clsItemList& root, std::uint32_t flags, bool wasCompressed, clsByteSink& sink) {
    try {
        Write(ProfpFormToWrite(flags), root, WantsCompression(flags, wasCompressed), sink);
    } catch (const clsTooLarge&) {
        clsDiagnosticLine().Put(u"WRN: ProfSave: the profile would be too large to be read again").Write();
        return false;
    }
    sink.Finish();
    return true;
}

} // namespace tvut
