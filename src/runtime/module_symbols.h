// The symbols of loaded modules, from their files and debug files.
#pragma once

#include "platform/file_view.h"
#include "platform/module_at.h"
#include "runtime/symbols/image_symbols.h"

#include <array>

namespace tvut {

// Files of the modules that were asked for last stay open while this lives. One thread at a time.
class clsModuleSymbols {
  public:
    struct scModule {
        const void* base = nullptr;
        clsFileView image, debugFile;

        // Views of files, to be used under a guard.
        clsImageSymbols Symbols() const noexcept {
            return {{image.Data(), image.Size()}, {debugFile.Data(), debugFile.Size()}};
        }
    };
    const scModule& Of(const clsModuleAt& module) noexcept;

  private:
    std::array<scModule, 8> modules_;
    std::size_t next_ = 0; // to be given up
};

} // namespace tvut
