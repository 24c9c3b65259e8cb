// Opening, loading and saving, with the reason in words when one of them fails.
#include "profile.h"

#include "exit_code.h"
#include "file_access.h"
#include "json_profile.h"
#include "load_report.h"
#include "profile_kind.h"
#include "reading.h"
#include "stream.h"
#include "text_io.h"

#include <new>

namespace tool::prof {

namespace {

ProfJob OpenStream(IStream& stream, const std::string& name, UINT flags) {
    return ProfJobOpenStreamObjectW(&stream, ToWide(name).c_str(), flags);
}

// XML is read as XML, and only what is none line by line: so nothing is lost of what other programs have laid
// out anew, and a file of ours that was edited by hand is read as ever.
JobPtr OpenJob(const std::string& name, bool plainIni) {
    const bool standard = name == standardStream;
    const std::string& input = standard ? StandardInput() : name;
    const scReading reading =
        HowToRead(name, standard ? ContentsOfBytes(input) : ContentsOfFile(ToWide(name)), plainIni);
    if (reading.note != nullptr)
        PrintError("prof", DisplayName(name), reading.note);
    const std::wstring path = ToWide(name);
    if (reading.isJson)
        return ProfileOfJson(standard ? input : ContentsOf(*FileStream(path, name)), DisplayName(name));
    const auto open = [&](UINT flags) {
        if (standard)
            return JobPtr{OpenStream(*MemoryStream(input), DisplayName(name), flags)};
        return JobPtr{flags != 0 ? OpenStream(*FileStream(path, name), name, flags)
                                 : ProfJobOpenW(path.c_str())};
    };
    JobPtr job = open(reading.flags);
    if (reading.isOurs && ProfGetError(job.get()) == PROF_LOAD_FAILED) {
        JobPtr ours = open(0);
        if (ProfGetError(ours.get()) == PROF_OK)
            return ours;
    }
    return job;
}

// The library distinguishes a file that it cannot open from one that it cannot load, but does not say why.
scFailure WhyNotLoaded(const std::string& name, INT error, const std::string& report) {
    const std::string subject = DisplayName(name);
    if (!report.empty())
        return {ExitCode::malformed, subject, report};
    if (error == PROF_LOAD_FAILED)
        return {ExitCode::malformed, subject, "malformed contents"};
    if (name != standardStream)
        if (const std::string reason = WhyNotReadable(ToWide(name)); !reason.empty())
            return {ExitCode::cannotOpen, subject, reason};
    if (error == PROF_OPEN_FAILED)
        return {ExitCode::cannotOpen, subject, "not a valid file name"};
    return {ExitCode::malformed, subject, "the contents cannot be read or are too large"};
}

} // namespace

std::string DisplayName(const std::string& name) {
    return name == standardStream ? "standard input" : name;
}

scFailure WhyNotSaved(const std::string& name) {
    std::string reason = name == standardStream ? std::string{} : WhyNotWritable(ToWide(name));
    if (reason.empty())
        reason = "cannot be written: not permitted, in use, no space left, or nested too deep";
    return {ExitCode::cannotSave, name == standardStream ? "standard output" : name, reason};
}

const std::string& StandardInput() {
    static const std::string input = ReadStandardInput();
    return input;
}

clsProfile::clsProfile(JobPtr job) : job_(std::move(job)) {
    if (!job_)
        throw std::bad_alloc{};
}

clsProfile clsProfile::Open(const std::string& name, bool plainIni) {
    const clsLoadReport report;
    clsProfile profile{OpenJob(name, plainIni)};
    if (const INT error = ProfGetError(profile.Job()); error != PROF_OK)
        throw WhyNotLoaded(name, error, report.Reason());
    if (const std::string warning = report.Warning(); !warning.empty())
        PrintError("prof", DisplayName(name), warning);
    return profile;
}

clsProfile clsProfile::OpenHeld(const std::string& name) {
    const clsLoadReport report;
    clsProfile profile{JobPtr{ProfJobOpenExclusiveW(ToWide(name).c_str())}};
    const INT error = ProfGetError(profile.Job());
    if (error == PROF_EXCLUSIVE_FAILED)
        throw WhyNotSaved(name);
    if (error == PROF_LOCKED && report.Reason().empty())
        if (const std::string reason = WhyNotChangeable(ToWide(name)); !reason.empty())
            throw scFailure{ExitCode::cannotOpen, name, reason};
    if (error != PROF_OK)
        throw WhyNotLoaded(name, error, report.Reason());
    if (const std::string warning = report.Warning(); !warning.empty())
        throw scFailure{ExitCode::malformed, name,
                        warning +
                            "; what was not read would be lost: save it under another name with --output"};
    return profile;
}

clsProfile clsProfile::OfBytes(std::string_view bytes, const std::string& name, UINT flags) {
    clsProfile profile{JobPtr{OpenStream(*MemoryStream(bytes), name, flags)}};
    if (const INT error = ProfGetError(profile.Job()); error != PROF_OK)
        throw WhyNotLoaded(name, error, {});
    return profile;
}

clsProfile clsProfile::Copy() const {
    clsProfile result = MakeEmpty();
    if (ProfCopyList(result.Job(), nullptr, Job(), nullptr) != PROF_OK)
        throw std::bad_alloc{};
    return result;
}

clsProfile clsProfile::MakeEmpty() {
    return clsProfile{JobPtr{ProfJobOpenW(nullptr)}};
}

clsProfile clsProfile::FromClipboard() {
    const clsLoadReport report;
    clsProfile profile{JobPtr{ProfJobOpenClipboard(nullptr)}};
    const INT error = ProfGetError(profile.Job());
    if (error == PROF_OPEN_FAILED)
        throw scFailure{ExitCode::notFound, "clipboard", "holds no profile, or is in use by another program"};
    if (error != PROF_OK)
        throw scFailure{ExitCode::malformed, "clipboard", report.Reason()};
    return profile;
}

void clsProfile::Save(const std::string& name, UINT flags) const {
    if (name == standardStream)
        SaveToStandardOutput(flags);
    else if (ProfSaveW(Job(), ToWide(name).c_str(), flags) != PROF_OK)
        throw WhyNotSaved(name);
}

void clsProfile::SaveToStandardOutput(UINT flags) const {
    const StreamPtr stream = MemoryStream({});
    if (ProfSaveToStream(Job(), stream.get(), flags) != PROF_OK)
        throw WhyNotSaved(standardStream);
    clsOutput::Standard().WriteDocument(ContentsOf(*stream));
}

} // namespace tool::prof
