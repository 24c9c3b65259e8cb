// Searches are counted for the modules that were searched of late. One of them gets its index at one number
// of searches and at no other, so a module whose files cannot be read is not tried again for each name.
#include "runtime/indexed_modules.h"

#include "platform/guarded.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr unsigned searchesBefore = 64;
constexpr std::size_t mostBytes = 16u * 1024 * 1024; // of one index

// Pages of the system's, because who asks for names may have damaged the heap. None where the files take too
// much, or cannot be read.
clsPages MakeIndex(const clsModuleSymbols::scModule& files, clsSymbolIndex& index) noexcept {
    clsSymbolIndex::scSize size;
    auto measure = [&] { size = clsSymbolIndex::Measure(files.Symbols()); };
    if (PlatformGuarded(measure) != 0 || size.Bytes() > mostBytes)
        return {};
    clsPages pages(
        VirtualAlloc(nullptr, static_cast<SIZE_T>(size.Bytes()), MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    auto fill = [&] { index = clsSymbolIndex(files.Symbols(), size, static_cast<std::byte*>(pages.Get())); };
    if (!pages || PlatformGuarded(fill) != 0)
        return {};
    return pages;
}

} // namespace

const scIndexedModule* clsIndexedModules::Find(const scImageStamp& stamp) const noexcept {
    const auto found = std::ranges::find(modules_, stamp, &scIndexedModule::stamp);
    return found == modules_.end() || !found->pages ? nullptr : &*found;
}

// True once for a module, when it has been searched often enough.
bool clsIndexedModules::IsWorthwhile(const scImageStamp& stamp) noexcept {
    const auto known = std::ranges::find(counts_, stamp, &scCount::stamp);
    if (known != counts_.end())
        return ++known->searches == searchesBefore;
    counts_[nextCount_] = {stamp, 1};
    nextCount_ = (nextCount_ + 1) % counts_.size();
    return false;
}

void clsIndexedModules::NoteSearch(const scImageStamp& stamp, const clsModuleAt& module, FrameKind kind,
                                   const clsModuleSymbols::scModule& files) noexcept {
    const std::u16string_view name = module.FileName();
    if (!IsWorthwhile(stamp) || name.size() > std::size(scIndexedModule().name))
        return;
    scIndexedModule& made = modules_[nextModule_];
    made.pages.Reset();
    made.pages = MakeIndex(files, made.index);
    if (!made.pages)
        return;
    made.stamp = stamp;
    made.kind = kind;
    made.nameLength = name.copy(made.name.data(), made.name.size());
    nextModule_ = (nextModule_ + 1) % modules_.size();
}

} // namespace tvut
