// Opening, loading and saving, with the reason in words when one of them fails.
#include "profile.h"

#include "exit_code.h"
#include "file_access.h"
#include "load_report.h"
#include "profile_kind.h"
#include "reading.h"
#include "stream.h"
#include "text_io.h"

#include <new>

namespace tool::prof {

namespace {

ProfJob openStream(IStream& stream, const std::string& name, UINT flags) {
    return ProfJobOpenStreamObjectW(&stream, toWide(name).c_str(), flags);
}

ProfJob openJob(const std::string& name, bool plainIni) {
    const bool standard = name == standardStream;
    const std::string input = standard ? readStandardInput() : std::string{};
    const Reading reading =
        howToRead(name, standard ? contentsOfBytes(input) : contentsOfFile(toWide(name)), plainIni);
    if (reading.note != nullptr)
        printError("prof", displayName(name), reading.note);
    if (standard)
        return openStream(*memoryStream(input), displayName(name), reading.flags);
    const std::wstring path = toWide(name);
    if (reading.flags != 0)
        return openStream(*fileStream(path, name), name, reading.flags);
    return ProfJobOpenW(path.c_str());
}

// The library tells a file that it cannot open from one that it cannot load, but not why.
Failure whyNotLoaded(const std::string& name, INT error, const std::string& report) {
    const std::string subject = displayName(name);
    if (!report.empty())
        return {ExitCode::malformed, subject, report};
    if (error == PROF_LOAD_FAILED)
        return {ExitCode::malformed, subject, "malformed contents"};
    if (name != standardStream)
        if (const std::string reason = whyNotReadable(toWide(name)); !reason.empty())
            return {ExitCode::cannotOpen, subject, reason};
    if (error == PROF_OPEN_FAILED)
        return {ExitCode::cannotOpen, subject, "not a valid file name"};
    return {ExitCode::malformed, subject, "the contents cannot be read or are too large"};
}

Failure whyNotSaved(const std::string& name) {
    std::string reason = name == standardStream ? std::string{} : whyNotWritable(toWide(name));
    if (reason.empty())
        reason = "cannot be written: not permitted, in use, no space left, or nested too deep";
    return {ExitCode::cannotSave, name == standardStream ? "standard output" : name, reason};
}

} // namespace

std::string displayName(const std::string& name) {
    return name == standardStream ? "standard input" : name;
}

Profile::Profile(ProfJob job) : job_(job) {
    if (!job_)
        throw std::bad_alloc{};
}

Profile Profile::open(const std::string& name, bool plainIni) {
    const LoadReport report;
    Profile profile{openJob(name, plainIni)};
    if (const INT error = ProfGetError(profile.job()); error != PROF_OK)
        throw whyNotLoaded(name, error, report.reason());
    if (const std::string warning = report.warning(); !warning.empty())
        printError("prof", displayName(name), warning);
    return profile;
}

Profile Profile::openHeld(const std::string& name) {
    const LoadReport report;
    Profile profile{ProfJobOpenExclusiveW(toWide(name).c_str())};
    const INT error = ProfGetError(profile.job());
    if (error == PROF_EXCLUSIVE_FAILED)
        throw whyNotSaved(name);
    if (error == PROF_LOCKED && report.reason().empty())
        if (const std::string reason = whyNotChangeable(toWide(name)); !reason.empty())
            throw Failure{ExitCode::cannotOpen, name, reason};
    if (error != PROF_OK)
        throw whyNotLoaded(name, error, report.reason());
    if (const std::string warning = report.warning(); !warning.empty())
        throw Failure{ExitCode::malformed, name,
                      warning +
                          "; what was not read would be lost: save it under another name with --output"};
    return profile;
}

Profile Profile::copy() const {
    Profile result = makeEmpty();
    if (ProfCopyList(result.job(), nullptr, job(), nullptr) != PROF_OK)
        throw std::bad_alloc{};
    return result;
}

Profile Profile::makeEmpty() {
    return Profile{ProfJobOpenW(nullptr)};
}

Profile Profile::fromClipboard() {
    const LoadReport report;
    Profile profile{ProfJobOpenClipboard(nullptr)};
    const INT error = ProfGetError(profile.job());
    if (error == PROF_OPEN_FAILED)
        throw Failure{ExitCode::notFound, "clipboard", "holds no profile, or is in use by another program"};
    if (error != PROF_OK)
        throw Failure{ExitCode::malformed, "clipboard", report.reason()};
    return profile;
}

void Profile::save(const std::string& name, UINT flags) const {
    if (name == standardStream)
        saveToStandardOutput(flags);
    else if (ProfSaveW(job(), toWide(name).c_str(), flags) != PROF_OK)
        throw whyNotSaved(name);
}

void Profile::saveToStandardOutput(UINT flags) const {
    const StreamPtr stream = memoryStream({});
    if (ProfSaveToStream(job(), stream.get(), flags) != PROF_OK)
        throw whyNotSaved(standardStream);
    Output::standard().writeDocument(contentsOf(*stream));
}

} // namespace tool::prof
