// The sections of a run, one source file each.
#pragma once

#include "harness.h"
#include "report.h"

#include <string>
#include <tvut22/docinfo.h>
#include <vector>

namespace bench {

void MeasureMemory(const scSettings& settings, clsReport& report);
void MeasureModuleStart(const scSettings& settings, clsReport& report);
void MeasureOpen(const scSettings& settings, clsReport& report);
void MeasureSave(const scSettings& settings, clsReport& report);
void MeasureGet(const scSettings& settings, clsReport& report);
void MeasureFiles(const scSettings& settings, clsReport& report);
void MeasureGrow(const scSettings& settings, clsReport& report);
void MeasureDelete(const scSettings& settings, clsReport& report);
void MeasureHeap(const scSettings& settings, clsReport& report);
void MeasureHandles(const scSettings& settings, clsReport& report);
void MeasureDiagnostics(const scSettings& settings, clsReport& report);
void MeasureCrowds(const scSettings& settings, clsReport& report);
void MeasureCrowdOfLines(const scSettings& settings, clsReport& report); // parts of that section
void MeasureCrowdAtHeap(const scSettings& settings, clsReport& report);
void MeasureHtml(const scSettings& settings, clsReport& report);
void MeasureRegEx(const scSettings& settings, clsReport& report);
void MeasureWalk(const scSettings& settings, clsReport& report);
void MeasureEmbed(const scSettings& settings, clsReport& report);
void MeasureXml(const scSettings& settings, clsReport& report);
void MeasureClose(const scSettings& settings, clsReport& report);
void MeasureStrings(const scSettings& settings, clsReport& report);
void MeasureBase64(const scSettings& settings, clsReport& report);
void MeasureZip(const scSettings& settings, clsReport& report);
void MeasureDocInfo(const scSettings& settings, clsReport& report);
void MeasureDownload(const scSettings& settings, clsReport& report);
void MeasurePool(const scSettings& settings, clsReport& report);
void MeasureStack(const scSettings& settings, clsReport& report);
void MeasureWindow(const scSettings& settings, clsReport& report);
void MeasureSecurity(const scSettings& settings, clsReport& report);
void MeasureLocale(const scSettings& settings, clsReport& report);
void MeasureDates(const scSettings& settings, clsReport& report); // a part of the locale section
void MeasureCrash(const scSettings& settings, clsReport& report);

// A child of the crash section: crashes with what is measured in place, "ours" or "usual".
void CrashAs(const std::string& way, const std::wstring& folder);

// The part of the memory section that runs in a process of its own: opens the file the named way and
// returns the bytes that this added. Throws clsBenchError.
std::size_t ProbeMemory(const std::string& way, const std::wstring& path);

// The same for embedding a file: the most bytes that it took at a time.
std::size_t ProbeEmbedding(const std::wstring& path);

// What registering files to be removed at the end takes memory for.
void RegisterTempFiles(const std::vector<std::wstring>& files);

// What waiting jobs of a pool, and idle pools, add to the process.
constexpr unsigned waitingJobs = 300000, idlePools = 200;
void AddWaitingJobs(unsigned jobs);
void OpenIdlePools(unsigned pools);
std::size_t BytesKeptAfterJobs();

// The same for packing a file and unpacking it again.
std::size_t ProbeZip(const std::wstring& path);

// The most that reading a document's properties has in memory at a time; and what many open ones hold.
std::size_t ProbeDocument(const std::wstring& path);
std::vector<UtilDocInfo> OpenManyDocuments(const std::wstring& path);

// The most that a transfer takes: "download" of 1 MiB, "download-large", or the system's, "download-service".
std::size_t ProbeDownload(const std::string& way, const std::wstring& file);

// The highest working set of this process.
std::size_t PeakMemory();

// Runs ProbeMemory in a process of its own.
std::size_t RunMemoryProbe(const wchar_t* way, const std::wstring& path);

} // namespace bench
