// From bytes to a reader: unwrap while there is a compressed wrapper, decode, look at the first line, and
// hand the lines to the reader of its form. A fault in the contents ends in a diagnostic line and a result;
// faults of the source and of memory are the caller's to handle.
#include "prof/formats/load.h"

#include "prof/formats/compression.h"
#include "prof/formats/flags.h"
#include "prof/formats/form.h"
#include "prof/formats/load_error.h"
#include "prof/formats/xml_encoding.h"
#include "runtime/diagnostics.h"

namespace tvut {

namespace {

// A wrapper in a wrapper is read like any other input; more than a few are no profile.
constexpr int deepestWrapper = 4;

void Unwrap(clsInputText& input, scLoadResult& result) {
    for (int depth = 0; ProfpIsCompressed(input.Bytes()); ++depth) {
        if (depth == deepestWrapper)
            throw clsLoadException(0, u"prof::compressed: wrapped too often");
        result.compressed = true;
        input.ReadAll();
        input = ProfpInflate(input.Bytes());
    }
}

// Foreign XML may say what it is written in.
void Decode(clsInputText& input, const scLoadRequest& request) {
    const bool mayDeclare = request.mode == ReadMode::foreignXml || request.mode == ReadMode::foreignMarkup;
    const unsigned declared = mayDeclare ? ProfpDeclaredCodePage(input.Bytes()) : 0;
    input.Decode(declared != 0 ? declared : request.codePage, declared != 0);
}

FormReader ReaderFor(clsLineReader& lines, ReadMode mode) {
    if (mode == ReadMode::plainIni)
        return ProfpReadPlainIni;
    if (!lines.Next())
        return ProfpReadXml; // nothing at all is an empty profile in any form
    const std::u16string_view first = lines.Line();
    const bool isForeign = mode == ReadMode::foreignXml || mode == ReadMode::foreignMarkup;
    const FormReader reader =
        isForeign && first.starts_with(u'<')
            ? mode == ReadMode::foreignXml ? ProfpReadForeignXml : ProfpReadForeignMarkup
            : ProfpDetectForm(first, mode == ReadMode::foreignXfdf);
    lines.Unread();
    return reader;
}

// Two lines: where the fault is, and which input it is in.
void Report(const clsLoadException& error, std::u16string_view inputName) {
    const auto number = static_cast<std::int32_t>(error.Line());
    clsDiagnosticLine line;
    line.Put(u"PROF load error line ").Put(number).Put(u": '");
    error.PutMessage(line);
    line.Put(u"'").Write();
    clsDiagnosticLine named;
    named.Put(inputName).Put(u": error '");
    error.PutMessage(named);
    named.Put(u"' in line ").Put(number).Write();
}

} // namespace

ReadMode ProfpReadMode(std::uint32_t flags) {
    if ((flags & readFlags::plainIni) != 0)
        return ReadMode::plainIni;
    const bool xfdf = (flags & readFlags::foreignXfdf) != 0;
    if ((flags & readFlags::foreignXml) != 0)
        return xfdf ? ReadMode::foreignMarkup : ReadMode::foreignXml;
    return xfdf ? ReadMode::foreignXfdf : ReadMode::detect;
}

scLoadResult ProfpLoad(clsByteSource& source, clsItemList& target, const scLoadRequest& request) {
    scLoadResult result;
    try {
        clsInputText input(source);
        Unwrap(input, result);
        if (request.isFilledUp)
            input.ReadAll();
        Decode(input, request);
        if (request.isFilledUp)
            input.DropZerosAtEnd();
        clsLineReader lines(input);
        ReaderFor(lines, request.mode)(lines, target, clsLoadWarnings(request.inputName));
        result.parsed = true;
    } catch (const clsLoadException& error) {
        Report(error, request.inputName);
    }
    return result;
}

} // namespace tvut
