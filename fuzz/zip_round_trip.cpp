// Packs entries of any names and contents, and unpacks them again.
#include "choices.h"
#include "require.h"
#include "unit/zip_support.h"

using namespace tvut;

namespace {

// As many bytes as there are.
std::string Bytes(clsChoices& input, unsigned count) {
    std::string bytes;
    for (; count > 0 && !input.AtEnd(); --count)
        bytes += static_cast<char>(input.Below(256));
    return bytes;
}

// Some bytes, some of them many times over: contents that shrink and some that do not, of all sizes.
std::string Contents(clsChoices& input) {
    std::string contents;
    for (unsigned pieces = input.Below(4); pieces > 0; --pieces) {
        const std::string piece = Bytes(input, input.Below(256));
        for (unsigned times = 1u << input.Below(11); times > 0; --times)
            contents += piece;
    }
    return contents;
}

scContents Entry(clsChoices& input) {
    std::u16string name;
    UtilpReadZipName(Bytes(input, input.Below(16)), ZipNameForm::oem, name);
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
    clsChoices input(data, size);
    const unsigned choices = input.Below(4);
    const std::string_view password = choices % 2 != 0 ? "secret" : "";
    clsMemoryArchive archive;
    clsZIPWriter writer(archive, choices < 2 ? ZipCompression::deflate : ZipCompression::store, password);
    std::map<std::u16string, std::string> files, unpacked;
    while (!input.AtEnd()) {
        const scContents contents = Entry(input);
        if (!IsPossible(writer, contents))
            continue;
        const clsZIPWriter::scMark mark = writer.Mark();
        Add(writer, contents);
        if (input.Below(8) == 7) {
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
    Require(Extract(archive.bytes, &target, nullptr, u"secret") == UtilResult::ok);
    Require(DiagnosticLines().empty());
    for (const auto& [path, file] : target.files)
        unpacked[path] = file.bytes;
    Require(unpacked == files);
    return 0;
}
