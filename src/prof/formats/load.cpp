#include "prof/formats/load.h"

#include "prof/formats/compression.h"
#include "prof/formats/form.h"
#include "prof/formats/load_error.h"
#include "runtime/diagnostics.h"

namespace tvut {

clsLoadException::clsLoadException(std::uint32_t line, std::u16string_view message)
    : clsException("profile contents cannot be parsed"), line_(line), message_(message) {
    clsDiagnosticLine()
        .Put(u"PROF load error line ")
        .Put(static_cast<std::int32_t>(line))
        .Put(u": '")
        .Put(message)
        .Put(u"'")
        .Write();
}

namespace {

namespace readFlags {
constexpr std::uint32_t foreignXfdf = 1;
constexpr std::uint32_t plainIni = 2;
} // namespace readFlags

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
        clsDiagnosticLine()
            .Put(request.inputName)
            .Put(u": error '")
            .Put(error.Message())
            .Put(u"' in line ")
            .Put(static_cast<std::int32_t>(error.Line()))
            .Write();
    }
    return result;
}

} // namespace tvut
