#include "prof/formats/form.h"
#include "prof/formats/load_error.h"

namespace tvut {

const IclsFormReader& ProfpDetectForm(std::u16string_view firstLine) {
    // An XML file read as text would be an empty profile, and saving that would destroy the file.
    if (firstLine.starts_with(u"<?xml"))
        throw clsLoadException(1, u"prof::xml: this form cannot be read");
    return g_textReader;
}

const IclsFormWriter* ProfpFormToWrite(std::uint32_t flags) {
    return (flags & 0xFu) == 0 ? &g_textWriter : nullptr;
}

} // namespace tvut
