// Opening returns a job whatever goes wrong, unless there is no memory for the job itself: Error() says why
// it was not filled. Saving throws, so that no failure can pass for a saved profile.
//
// The clipboard goes through a temporary file both ways. It is open only while bytes are copied: other
// programs wait for it, and a profile may take long to parse.
#include "prof/job.h"

#include "files/file_name.h"
#include "platform/clipboard.h"
#include "platform/exception.h"
#include "platform/settings.h"
#include "platform/stream.h"
#include "platform/temporary_file.h"
#include "prof/formats/save.h"
#include "prof/torn_file.h"
#include "runtime/default_code_page.h"

#include <array>
#include <memory>
#include <new>

namespace tvut {

namespace {

constexpr const wchar_t* temporaryPrefix = L"Prf";

// A job that nobody has a handle of yet.
struct scReleaseJob {
    void operator()(clsProfJob* job) const noexcept { job->Release(); }
};
using clsNewJob = std::unique_ptr<clsProfJob, scReleaseJob>;

void RequireSaved(bool saved) {
    if (!saved)
        throw clsException("profile is too large", reason::tooLarge);
}

// What is put on the open clipboard: the profile, and for programs that know no profiles a text. The text
// is UTF-16 under the format of 8-bit text, as programs in the field have found it all along.
int GiveToClipboard(HANDLE profile) {
    constexpr std::array text = std::to_array(L"PROF data available");
    clsFileSource source(profile);
    clsGlobalMemory contents =
        PlatformClipboardMemory(source, static_cast<std::size_t>(source.SizeHint()) + 1);
    if (!contents)
        return PROF_NO_GLOBAL_MEMORY;
    if (!PlatformGiveToClipboard(PlatformProfileFormat(), std::move(contents)))
        return PROF_CLIPBOARD_FAILED;
    clsSpanSource notice(text.data(), sizeof text);
    clsGlobalMemory textBlock = PlatformClipboardMemory(notice, sizeof text);
    if (!textBlock)
        return PROF_NO_GLOBAL_MEMORY;
    return PlatformGiveToClipboard(CF_TEXT, std::move(textBlock)) ? PROF_OK : PROF_NO_GLOBAL_MEMORY;
}

} // namespace

clsProfJob::clsProfJob(std::u16string_view fileName)
    : fileName_(fileName), tree_(PlatformProfCacheEnabled()) {}

clsProfJob* clsProfJob::OpenFile(std::optional<std::u16string_view> fileName, bool exclusive) {
    clsNewJob job(new clsProfJob(fileName.value_or(std::u16string_view())));
    if (fileName)
        job->LoadFile(exclusive);
    return job.release();
}

clsProfJob* clsProfJob::OpenStream(IStream* stream, std::u16string_view name, std::uint32_t flags) {
    clsNewJob job(new clsProfJob(std::u16string_view()));
    if (stream) {
        clsStreamSource source(stream);
        job->LoadSource(source, {name.empty() ? u"(Stream)" : name, ProfpReadMode(flags), UtilpCodePage()});
    }
    return job.release();
}

clsProfJob* clsProfJob::OpenClipboard(HWND owner) {
    clsNewJob job(new clsProfJob(std::u16string_view()));
    job->LoadClipboard(owner);
    return job.release();
}

void clsProfJob::Release() noexcept {
    if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete this;
}

void clsProfJob::Fail(int error, unsigned long why) {
    error_ = error;
    reason_ = why;
}

void clsProfJob::LoadFile(bool exclusive) {
    if (!UtilpIsFileName(fileName_.View()))
        return Fail(PROF_OPEN_FAILED, reason::invalidName);
    DWORD openError = 0;
    clsPatience patience(openPatience);
    clsFileHandle file =
        PlatformOpenFile(fileName_.Characters(), exclusive ? openToHold : openToRead, patience, openError);
    if (!file) {
        const int error = exclusive ? PROF_EXCLUSIVE_FAILED : PROF_OPEN_FAILED;
        return Fail(openError == ERROR_SHARING_VIOLATION ? PROF_LOCKED : error, openError);
    }
    try {
        clsFileSource source(file.Get());
        LoadSource(source, {fileName_.View(), ReadMode::detect, UtilpCodePage()});
    } catch (const clsException& exception) {
        Fail(PROF_LOCKED, exception.Reason());
    }
    if (exclusive && error_ == PROF_OK)
        heldFile_ = std::move(file);
}

// The clipboard is closed again before the contents are parsed.
void clsProfJob::LoadClipboard(HWND owner) {
    const clsTemporaryFile file(temporaryPrefix);
    if (!file)
        return Fail(PROF_OPEN_FAILED, GetLastError());
    try {
        clsFileSink copy(file.Get());
        if (const clsClipboard clipboard(owner);
            !clipboard || !PlatformReadClipboard(PlatformProfileFormat(), copy))
            return Fail(PROF_OPEN_FAILED, GetLastError());
        clsFileSource source(file.Get());
        LoadSource(source, {u"clipboard", ReadMode::detect, UtilpCodePage(), true});
    } catch (const clsException& exception) { // the temporary file has no room
        Fail(PROF_OPEN_FAILED, exception.Reason());
    }
}

// A source that fails and memory that runs out leave what was read so far.
void clsProfJob::LoadSource(clsByteSource& source, const scLoadRequest& request) {
    try {
        const scLoadResult result = ProfpLoad(source, tree_.Root(), request);
        compressed_ = result.compressed;
        if (!result.parsed)
            Fail(PROF_LOAD_FAILED, reason::invalidData);
    } catch (const clsException& exception) {
        Fail(PROF_LOCKED, exception.Reason());
    } catch (const std::bad_alloc&) {
        Fail(PROF_LOCKED, reason::noMemory);
    }
}

void clsProfJob::Save(std::optional<std::u16string_view> fileName, std::uint32_t flags) {
    const IString target = fileName ? IString(*fileName) : fileName_;
    if (heldFile_ && target == fileName_) {
        clsFileSink sink(heldFile_.Get());
        return RequireSaved(ProfpSave(tree_.Root(), flags, compressed_, sink));
    }
    UtilpRequireFileName(target.View());
    clsReplacingSink sink(target.Characters());
    try {
        RequireSaved(ProfpSave(tree_.Root(), flags, compressed_, sink));
    } catch (const clsTornFile& torn) {
        ProfpTellOfTornFile(target.View(), torn);
        throw;
    }
}

void clsProfJob::SaveToStream(IStream& stream, std::uint32_t flags) {
    clsStreamSink sink(&stream);
    RequireSaved(ProfpSave(tree_.Root(), flags, compressed_, sink));
}

int clsProfJob::SaveToClipboard(HWND owner, std::uint32_t flags) {
    const clsTemporaryFile file(temporaryPrefix);
    if (!file)
        return PROF_CLIPBOARD_FAILED;
    clsFileSink sink(file.Get());
    RequireSaved(ProfpSave(tree_.Root(), flags & saveFlags::form, false, sink));
    const clsClipboard clipboard(owner);
    return clipboard ? GiveToClipboard(file.Get()) : PROF_CLIPBOARD_FAILED;
}

} // namespace tvut
