#include "prof/job.h"

#include "platform/exception.h"
#include "platform/settings.h"
#include "platform/stream.h"
#include "prof/file_name.h"
#include "prof/formats/save.h"
#include "runtime/default_code_page.h"

#include <memory>
#include <new>

namespace tvut {

namespace {

constexpr std::uint32_t readPlainIni = 2; // flag of ProfJobOpenStreamObject

// A job that nobody has a handle of yet.
struct scReleaseJob {
    void operator()(clsProfJob* job) const noexcept { job->Release(); }
};
using clsNewJob = std::unique_ptr<clsProfJob, scReleaseJob>;

// Makes a sink of one type on one target when the writer asks for it.
template <class Sink, class Target>
class clsSinkMaker final : public IclsSinkMaker {
  public:
    explicit clsSinkMaker(Target target) : target_(target) {}
    clsByteSink& MakeSink() override { return sink_.emplace(target_); }

  private:
    Target target_;
    std::optional<Sink> sink_;
};

template <class Sink, class Target>
clsSinkMaker<Sink, Target> SinkOn(Target target) {
    return clsSinkMaker<Sink, Target>(target);
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
        job->error_ =
            job->LoadSource(source, name, flags & readPlainIni ? ReadMode::plainIni : ReadMode::detect);
    }
    return job.release();
}

void clsProfJob::Release() noexcept {
    if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete this;
}

void clsProfJob::LoadFile(bool exclusive) {
    if (!ProfpIsFileName(fileName_.View())) {
        error_ = profResult::openFailed;
        return;
    }
    DWORD openError = 0;
    clsFileHandle file =
        PlatformOpenFile(fileName_.Characters(), exclusive ? openToHold : openToRead, openError);
    if (!file) {
        if (openError == ERROR_SHARING_VIOLATION)
            error_ = profResult::locked;
        else
            error_ = exclusive ? profResult::exclusiveFailed : profResult::openFailed;
        return;
    }
    try {
        clsFileSource source(file.Get());
        error_ = LoadSource(source, fileName_.View(), ReadMode::detect);
    } catch (const clsException&) {
        error_ = profResult::locked;
    }
    if (exclusive && error_ == profResult::ok)
        heldFile_ = std::move(file);
}

// Gives the job's error. A source that fails and memory that runs out leave what was read so far.
int clsProfJob::LoadSource(clsByteSource& source, std::u16string_view name, ReadMode mode) {
    try {
        const scLoadResult result = ProfpLoad(source, tree_.Root(), {name, mode, UtilpCodePage()});
        compressed_ = result.compressed;
        return result.parsed ? profResult::ok : profResult::loadFailed;
    } catch (const clsException&) {
        return profResult::locked;
    } catch (const std::bad_alloc&) {
        return profResult::locked;
    }
}

bool clsProfJob::Save(std::optional<std::u16string_view> fileName, std::uint32_t flags) {
    const IString target = fileName ? IString(*fileName) : fileName_;
    if (heldFile_ && target == fileName_) {
        auto maker = SinkOn<clsFileSink>(heldFile_.Get());
        return ProfpSave(tree_.Root(), flags, compressed_, maker);
    }
    if (!ProfpIsFileName(target.View()))
        return false;
    auto maker = SinkOn<clsReplacingSink>(target.Characters());
    return ProfpSave(tree_.Root(), flags, compressed_, maker);
}

bool clsProfJob::SaveToStream(IStream& stream, std::uint32_t flags) {
    auto maker = SinkOn<clsStreamSink>(&stream);
    return ProfpSave(tree_.Root(), flags, compressed_, maker);
}

} // namespace tvut
