// Exports of the profile store: opening, closing and saving jobs, options, version.
#include "exports/prof_handles.h"
#include "exports/text_argument.h"
#include "prof/formats/flags.h"
#include "runtime/default_code_page.h"

#include <array>

using namespace tvut;

namespace {

std::optional<std::u16string_view> Optional(bool null, std::u16string_view text) {
    return null ? std::nullopt : std::optional(text);
}

template <class Char>
ProfJob OpenFile(const Char* fileName, bool exclusive) {
    return OpenWithReason([&] {
        const clsTextArgument<Char> name(fileName);
        return clsProfJob::OpenFile(Optional(name.IsNull(), name.View()), exclusive);
    });
}

template <class Char>
ProfJob OpenStream(IStream* stream, const Char* streamName, UINT flags) {
    return OpenWithReason([&] {
        const clsTextArgument<Char> name(streamName);
        return clsProfJob::OpenStream(stream, name.View(), flags);
    });
}

template <class Char>
INT Save(ProfJob handle, const Char* fileName, UINT flags) {
    clsProfJob* const job = FromHandle(handle);
    if (!job)
        return PROF_OK;
    return UtilpGuardWithReason(PROF_SAVE_FAILED, [&] {
        const clsTextArgument<Char> name(fileName);
        job->Save(Optional(name.IsNull(), name.View()), flags);
        return PROF_OK;
    });
}

static_assert(saveFlags::textForm == PROF_FORM_TEXT && saveFlags::xfdfForm == PROF_FORM_XFDF &&
              saveFlags::compressed == PROF_SAVE_COMPRESSED &&
              saveFlags::compressedAsRead == PROF_SAVE_COMPRESSED_AS_READ);
static_assert(readFlags::foreignXfdf == PROF_READ_FOREIGN_XFDF &&
              readFlags::plainIni == PROF_READ_PLAIN_INI && readFlags::foreignXml == PROF_READ_FOREIGN_XML);

} // namespace

ProfJob TVUT22_CALL ProfJobOpenA(const char* fileName) {
    return OpenFile(fileName, false);
}
ProfJob TVUT22_CALL ProfJobOpenW(const wchar_t* fileName) {
    return OpenFile(fileName, false);
}
ProfJob TVUT22_CALL ProfJobOpenExclusiveA(const char* fileName) {
    return OpenFile(fileName, true);
}
ProfJob TVUT22_CALL ProfJobOpenExclusiveW(const wchar_t* fileName) {
    return OpenFile(fileName, true);
}

ProfJob TVUT22_CALL ProfJobOpenStream(IStream* stream) {
    return OpenStream<wchar_t>(stream, nullptr, 0);
}

ProfJob TVUT22_CALL ProfJobOpenStreamObjectA(IStream* stream, const char* name, UINT flags) {
    return OpenStream(stream, name, flags);
}
ProfJob TVUT22_CALL ProfJobOpenStreamObjectW(IStream* stream, const wchar_t* name, UINT flags) {
    return OpenStream(stream, name, flags);
}

void TVUT22_CALL ProfJobAddRef(ProfJob job) {
    if (job)
        FromHandle(job)->AddReference();
}

void TVUT22_CALL ProfJobClose(ProfJob job) {
    if (job)
        FromHandle(job)->Release();
}

INT TVUT22_CALL ProfGetError(ProfJob job) {
    return job ? FromHandle(job)->Error() : PROF_INVALID_JOB;
}

INT TVUT22_CALL ProfSaveA(ProfJob job, const char* fileName, UINT flags) {
    return Save(job, fileName, flags);
}
INT TVUT22_CALL ProfSaveW(ProfJob job, const wchar_t* fileName, UINT flags) {
    return Save(job, fileName, flags);
}

INT TVUT22_CALL ProfSaveToStream(ProfJob job, IStream* stream, UINT flags) {
    if (!job)
        return PROF_OK;
    const clsJobKeeper keeper(*FromHandle(job));
    return UtilpGuardWithReason(PROF_SAVE_FAILED, [&] {
        RequireArguments(stream);
        FromHandle(job)->SaveToStream(*stream, flags);
        return PROF_OK;
    });
}

INT TVUT22_CALL ProfGetVersion(INT selector) {
    constexpr std::array<INT, 3> answers{TVUT22_VERSION_MAJOR * 256 + TVUT22_VERSION_MINOR,
                                         TVUT22_VERSION_MAJOR, TVUT22_VERSION_MINOR};
    return selector >= 0 && selector < static_cast<INT>(answers.size())
               ? answers[static_cast<std::size_t>(selector)]
               : -1;
}

void TVUT22_CALL ProfSetOption(UINT option, UINT value) {
    if (option == PROF_OPTION_CODE_PAGE)
        UtilpSetCodePage(static_cast<std::uint16_t>(value & 0xFFFF));
}

UINT TVUT22_CALL ProfGetOption(UINT option) {
    return option == PROF_OPTION_CODE_PAGE ? UtilpCodePageAsSet() : 0;
}

void TVUT22_CALL ProfSetDebug(BOOL) {}
