// Files are mapped when a frame of their module comes by, and stay for the next frames. All that looks into a
// view is guarded: a file's drive may be gone, and a fault while a crash is described would end the report.
#include "runtime/crash/module_names.h"

#include "platform/guarded.h"
#include "runtime/crash/fixed_text.h"
#include "runtime/frame_line.h"

namespace tvut {

namespace {

using Path = clsFixedText<1024>;

// In the system's form; one with a device in front is that already.
Path NativePath(std::u16string_view path) noexcept {
    Path native;
    const bool hasDrive = path.size() > 2 && path[1] == u':';
    return native.Put(hasDrive ? u"\\??\\" : u"").Put(path);
}

void PutBytes(Path& path, std::string_view bytes) noexcept {
    for (const char byte : bytes) {
        const auto unit = static_cast<char16_t>(static_cast<unsigned char>(byte));
        path.Put({&unit, 1});
    }
}

clsBytes BytesOf(const clsBareView& view) noexcept {
    return {reinterpret_cast<const unsigned char*>(view.Bytes().data()), view.Bytes().size()};
}

} // namespace

void clsModuleNames::Map(scMapped& mapped, const scModule& module) noexcept {
    const Path image = NativePath(module.path);
    if (mapped.image.Map(image.View()) < 0)
        return;
    auto read = [&] {
        Path linked;
        const std::string_view name = UtilpDebugLinkOf(BytesOf(mapped.image));
        std::size_t folder = image.View().size();
        while (folder > 0 && image.View()[folder - 1] != u'\\')
            --folder;
        linked.Put({image.Terminated(), folder});
        PutBytes(linked, name);
        if (name.empty() || mapped.debugFile.Map(linked.View()) < 0) {
            linked.Set(image.View());
            mapped.debugFile.Map(linked.Put(u".debug").View());
        }
        mapped.symbols.emplace(BytesOf(mapped.image), BytesOf(mapped.debugFile));
    };
    if (PlatformGuarded(read) != 0)
        mapped.symbols.reset();
}

clsModuleNames::scMapped& clsModuleNames::MappedOf(const scModule& module) noexcept {
    for (scMapped& mapped : mapped_)
        if (mapped.module == module.range.address)
            return mapped;
    scMapped& mapped = mapped_[next_++ % mapped_.size()];
    mapped.symbols.reset();
    mapped.image.Unmap();
    mapped.debugFile.Unmap();
    mapped.module = module.range.address;
    Map(mapped, module);
    return mapped;
}

void clsModuleNames::Put(clsDiagnosticLine& line, std::span<const scModule> modules, std::uint32_t address,
                         std::uint32_t lookedUp) noexcept {
    const scModule* const module = UtilpModuleAt(modules, lookedUp);
    if (!module) {
        UtilpPutFramePlace(line, address, {}, 0);
        return;
    }
    UtilpPutFramePlace(line, address, module->path, module->range.address);
    const scMapped& mapped = MappedOf(*module);
    if (!mapped.symbols)
        return;
    scCodePlace place;
    const std::uint32_t offset = lookedUp - module->range.address;
    auto find = [&] { place = mapped.symbols->Find(offset); };
    if (PlatformGuarded(find) != 0 || place.function.empty())
        return;
    // From where the frame is, not from where it was looked up.
    auto put = [&] {
        UtilpPutFrameFunction(line, place.function, place.functionOffset + (address - lookedUp));
        if (!place.source.file.empty())
            UtilpPutFrameSource(line, place.source.file, place.source.line);
    };
    PlatformGuarded(put);
}

} // namespace tvut
