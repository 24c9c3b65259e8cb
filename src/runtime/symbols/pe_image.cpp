// Headers are read where they lie, through clsBytes: beyond its end there are zeros and empty texts, so that
// damage shows as a section, an export or a link that is not there. Nothing is kept but where the tables
// begin. A debug file belongs to a module when its sections are the module's, in the same order: stripping
// leaves their headers.
#include "runtime/symbols/pe_image.h"

namespace tvut {

namespace {

constexpr std::size_t fileHeaderBytes = 20;
constexpr std::size_t sectionHeaderBytes = 40;
constexpr std::size_t symbolBytes = 18;
constexpr std::size_t sectionNameBytes = 8;
constexpr std::size_t longestSectionName = 64;
constexpr std::uint16_t machine386 = 0x14C;
constexpr std::uint16_t pe32 = 0x10B;
constexpr std::uint32_t containsCode = 0x20;

constexpr bool Lies(std::uint32_t offset, std::uint32_t begin, std::uint32_t size) noexcept {
    return offset >= begin && offset - begin < size;
}

// A section header's fields: its place in memory. Linkers that leave out the size mean that in the file.
std::uint32_t OffsetOf(clsBytes header) noexcept {
    return header.Get32(12);
}
std::uint32_t SizeOf(clsBytes header) noexcept {
    const std::uint32_t size = header.Get32(8);
    return size != 0 ? size : header.Get32(16);
}

// Whether a section is part of the running module; what only debuggers read may lie elsewhere in its debug
// file.
bool IsLoaded(std::string_view name) noexcept {
    return name != ".gnu_debuglink" && !name.starts_with(".debug_");
}

// A link that names a folder would lead out of the module's own.
bool IsFileName(std::string_view name) noexcept {
    for (const char c : name)
        if (c == '/' || c == '\\' || c == ':')
            return false;
    return !name.empty();
}

} // namespace

clsPeImage::clsPeImage(clsBytes file) noexcept {
    const std::size_t header = file.Get32(0x3C);
    const clsBytes fileHeader = file.From(header).From(4);
    const std::size_t optionalBytes = fileHeader.Get16(16);
    const clsBytes optional = fileHeader.From(fileHeaderBytes);
    const std::uint16_t sections = fileHeader.Get16(2);
    if (file.Get16(0) != 0x5A4D || file.From(header).Get32(0) != 0x4550 ||
        fileHeader.Get16(0) != machine386 || optional.Get16(0) != pe32 ||
        !optional.Holds(optionalBytes, sections * sectionHeaderBytes))
        return;
    file_ = file;
    optionalHeader_ = file.Size() - optional.Size();
    sections_ = optionalHeader_ + optionalBytes;
    sectionCount_ = sections;
    baseAddress_ = optional.Get32(28);
    symbols_ = fileHeader.Get32(8);
    symbolCount_ = fileHeader.Get32(12);
}

clsBytes clsPeImage::SectionHeader(std::uint32_t index) const noexcept {
    return index < sectionCount_ ? file_.Part(sections_ + index * sectionHeaderBytes, sectionHeaderBytes)
                                 : clsBytes();
}

// A name of more than 8 characters stands in the string table; "/123" tells where.
std::string_view clsPeImage::SectionName(clsBytes header) const noexcept {
    const std::string_view name = header.PaddedText(0, sectionNameBytes);
    if (name.empty() || name[0] != '/')
        return name;
    std::size_t at = 0;
    for (std::size_t i = 1; i < name.size(); ++i)
        at = at * 10 + static_cast<std::size_t>(name[i] - '0');
    return StringTable().From(at).First(longestSectionName).Text(0);
}

scPeSection clsPeImage::Section(std::uint32_t index) const noexcept {
    const clsBytes header = SectionHeader(index);
    if (header.IsEmpty())
        return {};
    const std::uint32_t size = SizeOf(header);
    const std::uint32_t position = header.Get32(20);
    const clsBytes bytes = position != 0 ? file_.Part(position, header.Get32(16)).First(size) : clsBytes();
    return {SectionName(header), OffsetOf(header), size, (header.Get32(36) & containsCode) != 0, bytes};
}

scPeSection clsPeImage::FindSection(std::string_view name) const noexcept {
    for (std::uint32_t i = 0; i < sectionCount_; ++i)
        if (SectionName(SectionHeader(i)) == name)
            return Section(i);
    return {};
}

std::uint32_t clsPeImage::SectionIndexAt(std::uint32_t offset) const noexcept {
    std::uint32_t i = 0;
    while (i < sectionCount_ && !Lies(offset, OffsetOf(SectionHeader(i)), SizeOf(SectionHeader(i))))
        ++i;
    return i;
}

clsBytes clsPeImage::At(std::uint32_t offset) const noexcept {
    const scPeSection section = Section(SectionIndexAt(offset));
    return section.bytes.From(offset - section.offset);
}

clsBytes clsPeImage::SymbolTable() const noexcept {
    return symbols_ != 0 && symbolCount_ <= file_.Size() / symbolBytes
               ? file_.Part(symbols_, symbolCount_ * symbolBytes)
               : clsBytes();
}

clsBytes clsPeImage::StringTable() const noexcept {
    const clsBytes symbols = SymbolTable();
    if (symbols_ == 0 || (symbolCount_ != 0 && symbols.IsEmpty()))
        return {};
    const clsBytes rest = file_.From(symbols_).From(symbols.Size());
    return rest.Part(0, rest.Get32(0)); // its length counts itself
}

// What lies within the directory is no function but the text of one in another module: 0.
std::uint32_t clsPeImage::scExports::Function(std::size_t i) const noexcept {
    const std::uint32_t function = functions.Get32(std::size_t{ordinals.Get16(i * 2)} * 4);
    return Lies(function, begin, size) ? 0 : function;
}

clsPeImage::scExports clsPeImage::Exports() const noexcept {
    const clsBytes optional = file_.From(optionalHeader_);
    scExports exports;
    exports.begin = optional.Get32(96);
    exports.size = optional.Get32(100);
    if (optional.Get32(92) == 0 || exports.begin == 0)
        return {};
    const clsBytes directory = At(exports.begin);
    exports.functions = At(directory.Get32(28));
    exports.names = At(directory.Get32(32));
    exports.ordinals = At(directory.Get32(36));
    exports.count = directory.Get32(24);
    if (exports.count > exports.names.Size() / 4)
        exports.count = static_cast<std::uint32_t>(exports.names.Size() / 4);
    return exports;
}

scNearestName clsPeImage::NearestExport(std::uint32_t offset) const noexcept {
    const scPeSection section = Section(SectionIndexAt(offset));
    if (!section.isCode)
        return {};
    const scExports exports = Exports();
    std::uint32_t best = 0;
    clsBytes name;
    for (std::size_t i = 0; i < exports.count; ++i) {
        const std::uint32_t function = exports.Function(i);
        if (function > best && function <= offset && function >= section.offset) {
            best = function;
            name = exports.names.Part(i * 4, 4);
        }
    }
    return name.IsEmpty() ? scNearestName() : scNearestName{At(name.Get32(0)).Text(0), offset - best};
}

void clsPeImage::WalkExports(IclsNameTaker& taker) const noexcept {
    const scExports exports = Exports();
    for (std::size_t i = 0; i < exports.count; ++i)
        if (const std::uint32_t function = exports.Function(i); Section(SectionIndexAt(function)).isCode)
            taker.Name(function, 1, At(exports.names.Get32(i * 4)).Text(0));
}

scDebugLink clsPeImage::DebugLink() const noexcept {
    const clsBytes link = FindSection(".gnu_debuglink").bytes;
    const std::string_view file = link.Text(0);
    const std::size_t crcAt = (file.size() + 4) / 4 * 4; // after the zero, at the next multiple of 4
    return link.Holds(crcAt, 4) && IsFileName(file) ? scDebugLink{file, link.Get32(crcAt)} : scDebugLink();
}

bool clsPeImage::HasDebugFile(const clsPeImage& debugFile) const noexcept {
    std::uint32_t j = 0;
    for (std::uint32_t i = 0; i < sectionCount_; ++i) {
        const clsBytes ours = SectionHeader(i);
        const std::string_view name = SectionName(ours);
        if (!IsLoaded(name))
            continue;
        while (j < debugFile.sectionCount_ && OffsetOf(debugFile.SectionHeader(j)) != OffsetOf(ours))
            ++j;
        const clsBytes theirs = debugFile.SectionHeader(j);
        if (SizeOf(theirs) != SizeOf(ours) || debugFile.SectionName(theirs) != name)
            return false;
    }
    return IsValid();
}

} // namespace tvut
