// The modules whose functions and lines are asked for again and again, with an index of each.
//
// To search a module's files takes some hundred microseconds, to make an index of them some hundred times as
// long; so that is done for a module that has been searched often. Names then come without opening a file.
#pragma once

#include "platform/owned.h"
#include "runtime/frame_kinds.h"
#include "runtime/module_symbols.h"
#include "runtime/symbols/symbol_index.h"

namespace tvut {

struct scPagesPolicy {
    using Value = void*;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { VirtualFree(value, 0, MEM_RELEASE); }
};
using clsPages = clsOwned<scPagesPolicy>;

struct scIndexedModule {
    scImageStamp stamp;
    FrameKind kind = FrameKind::caller;
    std::array<char16_t, 128> name; // of its file
    std::size_t nameLength = 0;
    clsPages pages; // the index lies in
    clsSymbolIndex index;

    std::u16string_view Name() const noexcept { return {name.data(), nameLength}; }
};

// Under the global lock. Asks the loader and the heap nothing.
class clsIndexedModules {
  public:
    // Null while there is no index for what is loaded at that address.
    const scIndexedModule* Find(const scImageStamp& stamp) const noexcept;

    // Counts a search in the files of a module, which are read under a guard, and makes an index when it is
    // worth its while. That which was made first of all gives way, as it does to another module at its place.
    void NoteSearch(const scImageStamp& stamp, const clsModuleAt& module, FrameKind kind,
                    const clsModuleSymbols::scModule& files) noexcept;

  private:
    struct scCount {
        scImageStamp stamp;
        unsigned searches = 0;
    };
    static constexpr std::size_t most = 8; // modules

    bool IsWorthwhile(const scImageStamp& stamp) noexcept;

    std::array<scIndexedModule, most> modules_;
    std::array<scCount, 2 * most> counts_;
    std::size_t nextModule_ = 0, nextCount_ = 0;
};

} // namespace tvut
