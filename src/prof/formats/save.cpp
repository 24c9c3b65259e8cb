// The form is measured before anything is written, so that the target hears its exact length first: what
// would be too large touches nothing, and a full disk shows while the old contents are still there. A target
// that is not touched before it is complete has no need of that, and measuring costs half as much as writing:
// there only a long form is measured, when some of it has been written.
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

std::uint64_t Measured(const scFormWriter& form, const clsItemList& root, std::uint64_t limit) {
    const std::uint64_t bytes = form.measure(root);
    if (bytes > limit)
        throw clsTooLarge();
    return bytes;
}

// Measures what turns out to be long, before more of it is written.
class clsLateMeasure final : public clsByteSink {
  public:
    clsLateMeasure(clsByteSink& sink, const scFormWriter& form, const clsItemList& root)
        : sink_(sink), form_(form), root_(root) {}
    void Extend(std::uint64_t bytes) override { sink_.Extend(bytes); }
    void Write(const void* data, std::size_t bytes) override {
        const bool wasLong = written_ > longProfile;
        written_ += bytes;
        if (!wasLong && written_ > longProfile)
            Measured(form_, root_, largestSavedProfile);
        sink_.Write(data, bytes);
    }
    void Finish() override { sink_.Finish(); }

  private:
    static constexpr std::uint64_t longProfile = 16 * 1024 * 1024;

    clsByteSink& sink_;
    const scFormWriter& form_;
    const clsItemList& root_;
    std::uint64_t written_ = 0;
};

void Write(const scFormWriter& form, const clsItemList& root, bool compress, clsByteSink& sink) {
    if (compress) {
        WriteCompressed(form, root, Measured(form, root, largestUnfoldedProfile), sink);
    } else if (sink.UsesLength()) {
        form.write(root, Measured(form, root, largestSavedProfile), sink);
    } else {
        clsLateMeasure late(sink, form, root);
        form.write(root, clsByteSink::unknownLength, late);
    }
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
