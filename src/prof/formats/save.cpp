#include "prof/formats/save.h"

#include "prof/formats/compression.h"
#include "prof/formats/form.h"
#include "runtime/diagnostics.h"

#include <string>

namespace tvut {

namespace {

bool WantsCompression(std::uint32_t flags, bool wasCompressed) {
    return (flags & saveFlags::compressed) != 0 ||
           ((flags & saveFlags::compressedAsRead) != 0 && wasCompressed);
}

// Collects what is written in memory.
class clsMemorySink final : public clsByteSink {
  public:
    void Extend(std::uint64_t) override {}
    void Write(const void* data, std::size_t bytes) override {
        bytes_.append(static_cast<const char*>(data), bytes);
    }
    void Finish() override {}
    const std::string& Bytes() const { return bytes_; }

  private:
    std::string bytes_;
};

// The wrapper's length shows in the end only, and a sink wants it before: it must know that there is
// room before it overwrites anything. So the wrapper is made in memory.
void WriteCompressed(const scFormWriter& form, const clsItemList& root, std::uint64_t bytes,
                     IclsSinkMaker& maker) {
    clsMemorySink wrapped;
    clsCompressingSink compressing(wrapped);
    form.write(root, bytes, compressing);
    compressing.Finish();
    clsByteSink& sink = maker.MakeSink();
    sink.Extend(wrapped.Bytes().size());
    sink.Write(wrapped.Bytes().data(), wrapped.Bytes().size());
    sink.Finish();
}

void WritePlain(const scFormWriter& form, const clsItemList& root, std::uint64_t bytes, clsByteSink& sink) {
    form.write(root, bytes, sink);
    sink.Finish();
}

} // namespace

bool ProfpSave(const clsItemList& root, std::uint32_t flags, bool wasCompressed, IclsSinkMaker& maker) {
    const scFormWriter& form = ProfpFormToWrite(flags);
    const std::uint64_t bytes = form.measure(root);
    const bool compress = WantsCompression(flags, wasCompressed);
    if (bytes > (compress ? largestUnfoldedProfile : largestSavedProfile)) {
        clsDiagnosticLine().Put(u"WRN: ProfSave: the profile would be too large to be read again").Write();
        return false;
    }
    if (compress)
        WriteCompressed(form, root, bytes, maker);
    else
        WritePlain(form, root, bytes, maker.MakeSink());
    return true;
}

} // namespace tvut
