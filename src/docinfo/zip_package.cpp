// The archive's reader does the work. What is added here keeps a small file from taking much: the directory
// is bounded, names are compared as the bytes that they are, and the sink of a part throws once it is full,
// which ends the unpacking there.
#include "docinfo/zip_package.h"

#include "docinfo/document_text.h"
#include "zip/zip_fault.h"

#include <algorithm>

namespace tvut {

namespace {

// A document has a few dozen parts; a few thousand if it is full of pictures.
constexpr scZipBounds bounds{20'000, 2 * 1024 * 1024};

// Takes the beginning of a part; the rest of a larger one is not unpacked at all.
class clsPartSink final : public clsByteSink {
  public:
    explicit clsPartSink(std::uint64_t bytes) {
        bytes_.reserve(static_cast<std::size_t>(std::min<std::uint64_t>(bytes, clsZipPackage::largestPart)));
    }
    void Extend(std::uint64_t) override {}
    void Write(const void* data, std::size_t bytes) override {
        const std::size_t taken = std::min(bytes, clsZipPackage::largestPart - bytes_.size());
        bytes_.append(static_cast<const char*>(data), taken);
        UtilpRequire(taken == bytes, ZipFault::tooManyBytes);
    }
    void Finish() override {}
    std::string Take() { return std::move(bytes_); }

  private:
    std::string bytes_;
};

constexpr char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

bool IsSame(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, [](char x, char y) { return Lower(x) == Lower(y); });
}

} // namespace

clsZipPackage::clsZipPackage(clsPagedSource& source, clsDocInfo& info)
    : info_(info), reader_(source, bounds, clsPagedSource::pageBytes) {}

bool clsZipPackage::Open() {
    try {
        reader_.Open();
        reader_.Directory().CheckPositions();
        return true;
    } catch (const clsZIPError& error) {
        if (error.Fault() == ZipFault::unreadable)
            throw;
        return false;
    }
}

const scZipEntry* clsZipPackage::Find(std::string_view name) {
    const std::span<const scZipEntry> entries = reader_.Directory().Entries();
    const auto entry = std::ranges::find_if(entries, [&](const scZipEntry& other) {
        return other.nameBytes == name.size() && IsSame(reader_.Directory().HeaderName(other), name);
    });
    return entry != entries.end() ? &*entry : nullptr;
}

std::string clsZipPackage::Part(const scZipEntry& entry) {
    clsPartSink sink(entry.bytes);
    try {
        reader_.Unpack(entry, clsZipPasswords({}), sink);
    } catch (const clsZIPError& error) {
        if (error.Fault() == ZipFault::unreadable)
            throw;
        if (error.Fault() == ZipFault::password)
            info_.SetEncrypted();
        else
            UtilpNoteDamage(info_, reader_.Directory().HeaderName(entry),
                            error.Fault() == ZipFault::tooManyBytes ? "too large" : "cannot be unpacked");
    }
    return sink.Take();
}

std::string clsZipPackage::Part(std::string_view name) {
    const scZipEntry* const entry = Find(name);
    return entry ? Part(*entry) : std::string();
}

void UtilpNoteDamage(clsDocInfo& info, std::string_view part, std::string_view words) {
    info.SetProblem(u"damaged: " + UtilpWidenLatin(part) + u": " + UtilpWidenLatin(words));
}

} // namespace tvut
