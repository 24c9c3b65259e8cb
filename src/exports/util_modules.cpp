// Exports of modules, their jobs, the library's version and the language.
#include "exports/call_trace.h"
#include "exports/wide_text.h"
#include "platform/host.h"
#include "runtime/crash/protection.h"
#include "runtime/jobs.h"
#include "runtime/language.h"
#include "runtime/locked_call.h"
#include "runtime/output/writer.h"
#include "runtime/stack_names.h"
#include "window/process_handles.h"

#include <tvut22/modules.h>

#include <array>

using namespace tvut;

namespace {

static_assert(static_cast<UINT>(clsModuleNode::traceFlag) == UTIL_JOB_TRACE &&
              static_cast<UINT>(clsModuleNode::debugHeapsFlag) == UTIL_JOB_DEBUG_HEAPS);

constexpr UINT version[] = {TVUT22_VERSION, TVUT22_VERSION_MAJOR, TVUT22_VERSION_MINOR, 0};

clsModuleNode* FromHandle(UtilJob job) noexcept {
    return reinterpret_cast<clsModuleNode*>(job);
}

clsDiagnosticLine OpenTrace(const wchar_t* name, UINT flags) noexcept {
    return clsDiagnosticLine()
        .Put(u"UtilJobOpen('")
        .Put(UtilpShown(name))
        .Put(u"',0x")
        .PutHex(flags, 8)
        .Put(u")");
}

clsDiagnosticLine CloseTrace(const clsModuleNode* job) noexcept {
    clsDiagnosticLine line;
    line.Put(u"UtilJobClose(").PutPointer(job).Put(u")");
    return UtilpJobs().Holds(job) ? line.Put(u" ['").Put(job->Name()).Put(u"']") : line;
}

// The file of a loaded module; empty when no module of that name is loaded.
class clsModuleFile {
  public:
    explicit clsModuleFile(const wchar_t* module) noexcept {
        if (const HMODULE loaded = module && *module ? GetModuleHandleW(module) : nullptr)
            length_ = GetModuleFileNameW(loaded, name_.data(), static_cast<DWORD>(name_.size()));
    }
    std::u16string_view View() const noexcept { return {FromWide(name_.data()), length_}; }

  private:
    std::array<wchar_t, MAX_PATH> name_;
    std::size_t length_ = 0;
};

clsDiagnosticLine ModuleLine(std::u16string_view sign, const wchar_t* module) noexcept {
    return clsDiagnosticLine()
        .Put(sign)
        .Put(UtilpShown(module))
        .Put(u" [")
        .Put(PlatformHostFileName())
        .Put(u"]");
}

} // namespace

TVUT22_API UtilJob TVUT22_CALL UtilJobOpen(const wchar_t* name, UINT flags) {
    const clsGlobalLockGuard lock;
    const clsCallTrace trace((flags & UTIL_JOB_TRACE) != 0, [&] { return OpenTrace(name, flags); });
    return reinterpret_cast<UtilJob>(
        trace.Result(UtilpJobs().Open(UtilpView(name), static_cast<std::int32_t>(flags))));
}

TVUT22_API INT TVUT22_CALL UtilJobClose(UtilJob handle) {
    if (!handle)
        return UTIL_OK;
    UtilpPrepareStackNames();
    const clsGlobalLockGuard lock;
    clsModuleNode* const job = FromHandle(handle);
    const clsCallTrace trace(UtilpJobs().Holds(job) && job->Traced(), [&] { return CloseTrace(job); });
    return trace.Result(static_cast<INT>(UtilpJobs().Close(job)));
}

TVUT22_API void TVUT22_CALL UtilModuleOnAttach(const wchar_t* module) {
    UtilpProtectModule();
    UtilpDiagnosticWriter().ModuleComes();
    if (!UtilpDiagnosticsOn())
        return;
    clsDiagnosticLine line = ModuleLine(u"++", module);
    const clsModuleFile file(module);
    if (!file.View().empty())
        line.Put(u" [").Put(file.View()).Put(u"]");
    line.Write();
}

TVUT22_API void TVUT22_CALL UtilModuleOnDetach(const wchar_t* module) {
    if (UtilpDiagnosticsOn())
        ModuleLine(u"--", module).Write();
    UtilpDiagnosticWriter().ModuleGoes(UtilpReportHandlesAtEnd);
}

TVUT22_API UINT TVUT22_CALL UtilGetVersion(UINT which) {
    return which < std::size(version) ? version[which] : 0xFFFFFFFF;
}

TVUT22_API INT TVUT22_CALL UtilLanguageSet(UINT language) {
    return UtilpSetLanguage(language);
}

TVUT22_API UINT TVUT22_CALL UtilLanguageGet() {
    return UtilpLanguage();
}
