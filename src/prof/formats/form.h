// The persistent forms of a profile: what each can do, and which one is meant.
//
// A reader is a function, a writer a pair of them. Adding a form is adding a file that defines one or both,
// and naming it here and in forms.cpp.
#pragma once

#include "platform/bytes.h"
#include "prof/formats/line_reader.h"
#include "prof/formats/load_warnings.h"
#include "prof/tree.h"

#include <cstdint>
#include <string_view>

namespace tvut {

// Reads all lines into a list. Throws clsLoadException, std::bad_alloc.
using FormReader = void (*)(clsLineReader& lines, clsItemList& target, const clsLoadWarnings& warnings);

void ProfpReadText(clsLineReader& lines, clsItemList& target, const clsLoadWarnings& warnings);
void ProfpReadTextAfterMarkup(clsLineReader& lines, clsItemList& target, const clsLoadWarnings& warnings);
void ProfpReadPlainIni(clsLineReader& lines, clsItemList& target, const clsLoadWarnings& warnings);
void ProfpReadXml(clsLineReader& lines, clsItemList& target, const clsLoadWarnings& warnings);
void ProfpReadXfdf(clsLineReader& lines, clsItemList& target, const clsLoadWarnings& warnings);
void ProfpReadForeignXfdf(clsLineReader& lines, clsItemList& target, const clsLoadWarnings& warnings);
void ProfpReadForeignXml(clsLineReader& lines, clsItemList& target, const clsLoadWarnings& warnings);
void ProfpReadForeignMarkup(clsLineReader& lines, clsItemList& target, const clsLoadWarnings& warnings);

struct scFormWriter {
    // The exact number of bytes that write will write.
    std::uint64_t (*measure)(const clsItemList& root);
    // bytes is what measure returned, or unknownLength for a sink that makes no use of it. The sink hears of
    // them when all memory that writing takes is at hand: from then on old contents may be gone. The sink is
    // not finished. Throws what the sink throws.
    void (*write)(const clsItemList& root, std::uint64_t bytes, clsByteSink& sink);
};

extern const scFormWriter textWriter;
extern const scFormWriter xmlWriter;
extern const scFormWriter xfdfWriter;

// The reader of the form that an input's first line that is not blank belongs to.
FormReader ProfpDetectForm(std::u16string_view firstLine, bool foreignXfdf);

// The writer of the form that the low four bits of save flags ask for.
const scFormWriter& ProfpFormToWrite(std::uint32_t flags);

} // namespace tvut
