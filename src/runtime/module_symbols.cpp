// Files are mapped, not read: a debug file may have a hundred megabytes, of which a few pages are looked at.
// A view's pages may fail, so the link in one is read under a guard; whoever uses the symbols guards that,
// too. The eight modules that were opened last stay.
#include "runtime/module_symbols.h"

#include "platform/guarded.h"

#include <string_view>

namespace tvut {

namespace {

constexpr std::size_t mostBytes = 512u * 1024 * 1024; // a quarter of the address space

// A path of a file beside the module, zero-terminated.
class clsPathBeside {
  public:
    clsPathBeside(std::wstring_view folder, std::wstring_view name) noexcept {
        if (folder.size() + name.size() < path_.size())
            path_[folder.copy(path_.data(), folder.size()) +
                  name.copy(path_.data() + folder.size(), name.size())] = 0;
        else
            path_[0] = 0;
    }
    const wchar_t* Text() const noexcept { return path_.data(); }

  private:
    std::array<wchar_t, 1400> path_;
};

// The name of the debug file that the module links to; empty when there is none.
std::wstring_view LinkOf(const clsFileView& image, std::array<wchar_t, MAX_PATH>& room) noexcept {
    int length = 0;
    auto read = [&] {
        const std::string_view link = UtilpDebugLinkOf({image.Data(), image.Size()});
        if (!link.empty() && link.size() < room.size())
            length = MultiByteToWideChar(CP_UTF8, 0, link.data(), static_cast<int>(link.size()), room.data(),
                                         static_cast<int>(room.size()));
    };
    return PlatformGuarded(read) == 0 ? std::wstring_view(room.data(), static_cast<std::size_t>(length))
                                      : std::wstring_view();
}

clsFileView DebugFileOf(const clsFileView& image, std::wstring_view path) noexcept {
    std::array<wchar_t, MAX_PATH> room;
    if (const std::wstring_view link = LinkOf(image, room); !link.empty()) {
        const std::wstring_view folder = path.substr(0, path.find_last_of(L'\\') + 1);
        if (clsFileView linked{clsPathBeside(folder, link).Text(), mostBytes})
            return linked;
    }
    return {clsPathBeside(path, L".debug").Text(), mostBytes};
}

} // namespace

const clsModuleSymbols::scModule& clsModuleSymbols::Of(const clsModuleAt& module) noexcept {
    for (const scModule& known : modules_)
        if (known.base == module.Base())
            return known;
    scModule& opened = modules_[next_];
    next_ = (next_ + 1) % modules_.size();
    opened = {module.Base(), {module.Path().data(), mostBytes}, {}};
    if (opened.image)
        opened.debugFile = DebugFileOf(opened.image, module.Path());
    return opened;
}

} // namespace tvut
