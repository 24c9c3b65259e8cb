// Functions and lines of a process that has crashed, from the modules' own files, by bare calls.
#pragma once

#include "platform/bare_system.h"
#include "runtime/crash/module_walk.h"
#include "runtime/diagnostics.h"
#include "runtime/symbols/image_symbols.h"

#include <array>
#include <optional>

namespace tvut {

class clsModuleNames {
  public:
    // Appends how a frame reads: its place, function and line, as much of it as is known. `lookedUp`: the
    // address that is looked for, of a caller's frame one byte before where it returns to.
    void Put(clsDiagnosticLine& line, std::span<const scModule> modules, std::uint32_t address,
             std::uint32_t lookedUp) noexcept;

  private:
    // The files of a module while they are mapped.
    struct scMapped {
        std::uint32_t module = 0;
        clsBareView image, debugFile;
        std::optional<clsImageSymbols> symbols;
    };

    scMapped& MappedOf(const scModule& module) noexcept;
    static void Map(scMapped& mapped, const scModule& module) noexcept;

    std::array<scMapped, 8> mapped_; // frames are of few modules
    std::size_t next_ = 0;
};

} // namespace tvut
