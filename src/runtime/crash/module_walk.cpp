// A module is where the system has mapped an image; what it is its own header says, which is read field by
// field and believed only within the image's size. The version lies at a fixed way down the resources: type
// 16, its first name, its first language, then a block that begins with its key and the fixed part after it.
#include "runtime/crash/module_walk.h"

#include <algorithm>
#include <array>

namespace tvut {

namespace {

constexpr std::uint32_t pageSize = 4096;

// The parts of a header that are asked for, after the documented structures of a PE file.
struct scDosHeader {
    std::uint16_t magic; // "MZ"
    std::array<std::uint16_t, 29> rest;
    std::uint32_t headerOffset;
};
static_assert(sizeof(scDosHeader) == 64);

struct scDataDirectory {
    std::uint32_t offset, bytes;
};

struct scHeader {
    std::uint32_t signature; // "PE"
    std::uint16_t machine, sectionCount;
    std::uint32_t timeStamp, symbols, symbolCount;
    std::uint16_t optionalBytes, characteristics;
    std::uint16_t magic, linkerVersion; // of the optional header
    std::array<std::uint32_t, 13> sizes;
    std::uint32_t imageBytes, headerBytes, checksum;
    std::array<std::uint32_t, 6> more;
    std::uint32_t directoryCount;
    std::array<scDataDirectory, 16> directories;
};
static_assert(sizeof(scHeader) == 248);

struct scSectionHeader {
    std::array<char, 8> name;
    std::uint32_t bytes, offset, fileBytes, filePosition, relocations, lines, counts, characteristics;
};
static_assert(sizeof(scSectionHeader) == 40);
constexpr std::uint32_t isDiscardable = 0x02000000;
constexpr std::uint32_t optionalHeaderAt = 24;

constexpr std::uint16_t dosMagic = 0x5A4D;
constexpr std::uint32_t headerSignature = 0x4550;
constexpr std::uint16_t optionalMagic = 0x10B; // of 32 bits
constexpr std::size_t resourceDirectory = 2, debugDirectory = 6;

struct scDebugEntry {
    std::uint32_t characteristics, timeStamp, version, type, bytes, offset, filePosition;
};
constexpr std::uint32_t codeViewType = 2;
constexpr std::uint32_t mostDebugEntries = 16;
constexpr std::uint32_t mostCodeView = 4096; // bytes: a path and some numbers

struct scResourceTable {
    std::uint32_t characteristics, timeStamp, version;
    std::uint16_t named, numbered;
};
struct scResourceEntry {
    std::uint32_t name, offset;
};
struct scResourceData {
    std::uint32_t offset, bytes, codePage, reserved;
};
constexpr std::uint32_t versionType = 16;
constexpr std::uint32_t isTable = 0x80000000;
constexpr std::uint32_t mostResourceTypes = 64;

// What stands before a version's words: lengths, type, and the key "VS_VERSION_INFO" with its end.
constexpr std::uint32_t versionHead = 40;
constexpr std::uint32_t versionSignature = 0xFEEF04BD;
struct scVersion { // the beginning of VS_FIXEDFILEINFO
    std::uint32_t signature, structVersion, fileHigh, fileLow, productHigh, productLow;
};

// An image in memory, whose bytes are named by their distance from its beginning.
class clsImage {
  public:
    clsImage(IclsProcessMemory& memory, std::uint32_t address) noexcept
        : memory_(memory), address_(address) {}

    // Only what lies in the image as a whole.
    template <class Object>
    bool Read(std::uint32_t offset, Object& object) const noexcept {
        return Has(offset, sizeof object) && UtilpReadObject(memory_, address_ + offset, object);
    }

    bool Has(std::uint32_t offset, std::uint32_t bytes) const noexcept {
        return offset <= bytes_ && bytes <= bytes_ - offset;
    }

    bool ReadHeader(scHeader& header) noexcept {
        scDosHeader dos;
        bytes_ = pageSize;
        if (!Read(0, dos) || dos.magic != dosMagic || !Read(dos.headerOffset, header) ||
            header.signature != headerSignature || header.magic != optionalMagic)
            return false;
        bytes_ = header.imageBytes;
        sections_ = dos.headerOffset + optionalHeaderAt + header.optionalBytes;
        return bytes_ != 0 && address_ + (bytes_ - 1) >= address_;
    }

    std::uint32_t Bytes() const noexcept { return bytes_; }
    std::uint32_t Sections() const noexcept { return sections_; } // where their headers are

  private:
    IclsProcessMemory& memory_;
    std::uint32_t address_;
    std::uint32_t bytes_ = 0;
    std::uint32_t sections_ = 0;
};

scDataDirectory DirectoryOf(const scHeader& header, std::size_t number) noexcept {
    return number < header.directoryCount ? header.directories[number] : scDataDirectory{};
}

void ReadCodeView(const clsImage& image, const scHeader& header, scModule& module) noexcept {
    const scDataDirectory directory = DirectoryOf(header, debugDirectory);
    const std::uint32_t count =
        std::min<std::uint32_t>(directory.bytes / sizeof(scDebugEntry), mostDebugEntries);
    for (std::uint32_t i = 0; i < count; ++i) {
        scDebugEntry entry;
        if (!image.Read(directory.offset + i * static_cast<std::uint32_t>(sizeof entry), entry))
            return;
        if (entry.type == codeViewType && entry.offset != 0 && entry.bytes <= mostCodeView &&
            image.Has(entry.offset, entry.bytes)) {
            module.codeView = {module.range.address + entry.offset, entry.bytes};
            return;
        }
    }
}

// An entry of a resource table: the one of a number, or the first of all. False when there is none.
bool FindResource(const clsImage& image, std::uint32_t table, bool isFirst, scResourceEntry& found) noexcept {
    scResourceTable head;
    if (!image.Read(table, head))
        return false;
    const std::uint32_t count =
        std::min<std::uint32_t>(std::uint32_t{head.named} + head.numbered, mostResourceTypes);
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto at = static_cast<std::uint32_t>(sizeof head + i * sizeof found);
        if (!image.Read(table + at, found))
            return false;
        if (isFirst || found.name == versionType)
            return true;
    }
    return false;
}

void ReadVersion(const clsImage& image, const scHeader& header, scModule& module) noexcept {
    const std::uint32_t root = DirectoryOf(header, resourceDirectory).offset;
    scResourceEntry entry;
    std::uint32_t table = root;
    for (const bool isFirst : {false, true, true}) {
        if (table == 0 || !FindResource(image, table, isFirst, entry))
            return;
        table = root + (entry.offset & ~isTable);
    }
    scResourceData data;
    scVersion version;
    if ((entry.offset & isTable) != 0 || !image.Read(table, data) ||
        data.bytes < versionHead + sizeof version || !image.Read(data.offset + versionHead, version) ||
        version.signature != versionSignature)
        return;
    module.hasVersion = true;
    module.fileVersionHigh = version.fileHigh;
    module.fileVersionLow = version.fileLow;
    module.productVersionHigh = version.productHigh;
    module.productVersionLow = version.productLow;
}

// The headers hold the first 8 letters of a name, or where the file has all of it. Tables of frames begin
// with an entry that is common to functions, and no other section does.
bool HasFrameTable(const clsImage& image, const scSectionHeader& section) noexcept {
    struct scFirstEntry {
        std::uint32_t bytes, kind;
        std::uint8_t version;
        char augmentation;
    } first;
    const std::string_view name(section.name.data(), section.name.size());
    if ((name != ".eh_fram" && name[0] != '/') || (section.characteristics & isDiscardable) != 0)
        return false;
    return image.Has(section.offset, section.bytes) && image.Read(section.offset, first) &&
           first.bytes != 0 && first.kind == 0 && (first.version == 1 || first.version == 3) &&
           (first.augmentation == 'z' || first.augmentation == 0);
}

} // namespace

scMemoryRange UtilpFrameTableOf(IclsProcessMemory& memory, std::uint32_t module) noexcept {
    clsImage image(memory, module);
    scHeader header;
    if (!image.ReadHeader(header))
        return {};
    for (std::uint32_t i = 0; i < header.sectionCount; ++i) {
        scSectionHeader section;
        const auto at = static_cast<std::uint32_t>(i * sizeof section);
        if (!image.Read(image.Sections() + at, section))
            break;
        if (HasFrameTable(image, section))
            return {module + section.offset, section.bytes};
    }
    return {};
}

bool UtilpReadModule(IclsProcessMemory& memory, std::uint32_t address, scModule& module) noexcept {
    clsImage image(memory, address);
    scHeader header;
    if (!image.ReadHeader(header))
        return false;
    module = {};
    module.range = {address, image.Bytes()};
    module.checksum = header.checksum;
    module.timeStamp = header.timeStamp;
    ReadCodeView(image, header, module);
    ReadVersion(image, header, module);
    return true;
}

std::size_t UtilpFindModules(IclsProcessMemory& memory, std::span<scModule> modules) noexcept {
    std::size_t count = 0;
    scMemoryRegion region;
    std::uint32_t last = 0; // where the module before begins; none begins at 0
    for (std::uint64_t at = 0; at <= UINT32_MAX && count < modules.size(); at = region.range.End()) {
        if (!memory.RegionAt(static_cast<std::uint32_t>(at), region) || region.range.End() <= at)
            break;
        if (!region.isImage || region.allocation == last)
            continue;
        last = region.allocation;
        if (UtilpReadModule(memory, last, modules[count]))
            ++count;
    }
    return count;
}

const scModule* UtilpModuleAt(std::span<const scModule> modules, std::uint32_t address) noexcept {
    const auto isBefore = [](std::uint32_t wanted, const scModule& module) {
        return wanted < module.range.address;
    };
    const scModule* const end = modules.data() + modules.size();
    const scModule* const after = std::upper_bound(modules.data(), end, address, isBefore);
    if (after == modules.data() || address - after[-1].range.address >= after[-1].range.bytes)
        return nullptr;
    return after - 1;
}

} // namespace tvut
