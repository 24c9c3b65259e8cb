// Writes a line on where the contents are that a file should have, which was torn while they were copied over
// it.
#pragma once

#include "platform/file.h"
#include "platform/wide.h"
#include "runtime/diagnostics.h"

#include <string_view>

namespace tvut {

inline void ProfpTellOfTornFile(std::u16string_view file, const clsTornFile& torn) noexcept {
    clsDiagnosticLine()
        .Put(u"ERR: '")
        .Put(file)
        .Put(u"' was torn while it was overwritten; what it should hold is in '")
        .Put(FromWide(std::wstring_view(torn.Contents())))
        .Put(u"'")
        .Write();
}

} // namespace tvut
