// Packs entries of any names and contents, and unpacks them again.
#include "require.h"
#include "unit/zip_support.h"

using namespace tvut;

namespace {

// Takes pieces off the input; at its end they are empty.
class clsInput {
  public:
    clsInput(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}
    bool Any() const { return !rest_.empty(); }
    unsigned Byte() {
        const std::string_view byte = Bytes(1);
        return byte.empty() ? 0 : static_cast<unsigned char>(byte[0]);
    }
    std::string_view Bytes(std::size_t count) {
        const std::string_view bytes = rest_.substr(0, count);
        rest_.remove_prefix(bytes.size());
        return bytes;
    }

  private:
    std::string_view rest_;
};

// Some bytes, some of them many times over: contents that shrink and some that do not, of all sizes.
std::string Contents(clsInput& input) {
    std::string contents;
    for (unsigned pieces = input.Byte() % 4; pieces > 0; --pieces) {
        const std::string_view piece = input.Bytes(input.Byte());
        for (unsigned times = 1u << input.Byte() % 11; times > 0; --times)
            contents += piece;
    }
    return contents;
}

scContents Entry(clsInput& input) {
    std::u16string name;
    UtilpReadZipName(input.Bytes(input.Byte() % 16), ZipNameForm::oem, name);
    if (name.ends_with(u'/') && name.size() > 1)
        return {name, ""};
    return {name, Contents(input)};
}

bool IsPossible(clsZIPWriter& writer, const scContents& contents) {
    const bool isFolder = contents.name.ends_with(u'/');
    const std::u16string_view name(contents.name.data(), contents.name.size() - (isFolder ? 1 : 0));
    return UtilpCanBeEntryName(name) && !writer.IsTaken(name, isFolder);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    clsInput input(data, size);
    const unsigned choices = input.Byte();
    const std::string_view password = choices % 2 != 0 ? "secret" : "";
    clsMemoryArchive archive;
    clsZIPWriter writer(archive, choices % 4 < 2 ? ZipCompression::deflate : ZipCompression::store, password);
    std::map<std::u16string, std::string> files;
    while (input.Any()) {
        const scContents contents = Entry(input);
        if (!IsPossible(writer, contents))
            continue;
        const clsZIPWriter::scMark mark = writer.Mark();
        Add(writer, contents);
        if (input.Byte() % 8 == 7) {
            writer.TakeBack(mark);
        } else if (!contents.name.ends_with(u'/')) {
            std::u16string path = contents.name;
            std::ranges::replace(path, u'/', u'\\');
            files[path] = contents.bytes;
        }
    }
    writer.Finish();
    DiagnosticLines().clear();
    clsMemoryTarget target;
    Require(Extract(archive.bytes, &target, nullptr, u"secret") == UtilResult::ok ? nullptr : "it cannot be read");
    Require(DiagnosticLines().empty() ? nullptr : "something is said of it");
    Require(target.files.size() == files.size() ? nullptr : "there are not as many files");
    for (const auto& [path, bytes] : files)
        Require(target.files[path].bytes == bytes ? nullptr : "a file is not what it was");
    return 0;
}
