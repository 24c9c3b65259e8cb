// From bytes to a reader: unwrap while there is a compressed wrapper, decode, look at the first line, and
// hand the lines to the reader of its form. A fault in the contents ends in a diagnostic line and a result;
// faults of the source and of memory are the caller's to handle.
#include "prof/formats/load.h"

#include "prof/formats/compression.h"
#include "prof/formats/flags.h"
#include "prof/formats/form.h"
#include "prof/formats/load_error.h"
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

FormReader ReaderFor(clsLineReader& lines, ReadMode mode) {
    if (mode == ReadMode::plainIni)
        return ProfpReadPlainIni;
    if (!lines.Next())
        return ProfpReadXml; // nothing at all is an empty profile in any form
    const FormReader reader = ProfpDetectForm(lines.Line(), mode == ReadMode::foreignXfdf);
    lines.Unread();
    return reader;
}

// Two lines: where the fault is, and which input it is in.
void Report(const clsLoadException& error, std::u16string_view inputName) {
    const auto line = static_cast<std::int32_t>(error.Line());
    clsDiagnosticLine()
        .Put(u"PROF load error line ")
        .Put(line)
        .Put(u": '")
        .Put(error.Message())
        .Put(u"'")
        .Write();
    clsDiagnosticLine()
        .Put(inputName)
        .Put(u": error '")
        .Put(error.Message())
        .Put(u"' in line ")
        .Put(line)
        .Write();
}

} // namespace

ReadMode ProfpReadMode(std::uint32_t flags) {
    if ((flags & readFlags::plainIni) != 0)
        return ReadMode::plainIni;
    return (flags & readFlags::foreignXfdf) != 0 ? ReadMode::foreignXfdf : ReadMode::detect;
}

scLoadResult ProfpLoad(clsByteSource& source, clsItemList& target, const scLoadRequest& request) {
    scLoadResult result;
    try {
        clsInputText input(source);
        Unwrap(input, result);
        if (request.isFilledUp)
            input.ReadAll();
        input.Decode(request.codePage);
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
