// Embedding a file and writing it out again against zlib alone, and the memory that embedding takes.
#include "contents.h"
#include "files.h"
#include "profile.h"
#include "sections.h"

#include <windows.h>

#include <psapi.h>
#include <zlib.h>

#include <algorithm>
#include <cstdint>

namespace bench {

namespace {

constexpr std::size_t fileBytes = 16 * 1024 * 1024;
constexpr const wchar_t* item = L"Contents";

const Bytef* Input(const std::vector<std::byte>& bytes) {
    return reinterpret_cast<const Bytef*>(bytes.data());
}

std::vector<std::byte> Deflated(const std::vector<std::byte>& bytes) {
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::vector<std::byte> packed(size);
    Require(compress(reinterpret_cast<Bytef*>(packed.data()), &size, Input(bytes),
                     static_cast<uLong>(bytes.size())) == Z_OK,
            "zlib did not compress");
    packed.resize(size);
    return packed;
}

void InflateTo(std::vector<std::byte>& bytes, const std::vector<std::byte>& packed) {
    uLongf size = static_cast<uLongf>(bytes.size());
    Require(uncompress(reinterpret_cast<Bytef*>(bytes.data()), &size, Input(packed),
                       static_cast<uLong>(packed.size())) == Z_OK,
            "zlib did not inflate");
}

void Embed(ProfJob job, const std::wstring& path) {
    ProfAppendFileW(job, nullptr, item, nullptr, path.c_str());
}

PROCESS_MEMORY_COUNTERS MemoryNow() {
    PROCESS_MEMORY_COUNTERS counters{};
    Require(K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) != FALSE,
            "the process's memory cannot be asked for");
    return counters;
}

void MeasureOne(const std::string& kind, const std::vector<std::byte>& bytes, const scSettings& settings,
                clsReport& report) {
    const std::wstring source = settings.folder + L"source.bin", out = settings.folder + L"out.bin",
                       bare = settings.folder + L"bare.bin";
    WriteWholeFile(source, bytes);
    const clsJob stored;
    Embed(stored, source);
    std::vector<std::byte> packed = Deflated(bytes);
    std::vector<std::byte> unpacked(bytes.size());
    const Round rounds[] = {
        [&] {
            const clsJob job;
            return Timed([&] { Embed(job, source); });
        },
        [&] { return Timed([&] { packed = Deflated(bytes); }); },
        [&] {
            return Timed([&] {
                Require(ProfGetFileW(stored, nullptr, item, nullptr, out.c_str()) == PROF_OK,
                        "ProfGetFileW failed");
            });
        },
        [&] {
            return Timed([&] {
                InflateTo(unpacked, packed);
                WriteWholeFile(bare, unpacked);
            });
        },
        [&] {
            return Timed([&] {
                InflateTo(unpacked, packed);
                BareSave(bare, unpacked);
            });
        },
    };
    const auto ns = Race(rounds, std::min(settings.rounds, 7));
    Require(std::ranges::equal(ReadWholeFile(out), bytes), "the file did not come out as it went in");
    report.Against("ProfAppendFileW, " + kind, ns[0], "zlib's compress, from memory", ns[1], AtMost(1.1));
    report.Against("ProfGetFileW, " + kind, ns[2], "zlib's uncompress, one WriteFile", ns[3], AtMost(1.3));
    report.Against("ProfGetFileW, " + kind, ns[2], "these beside the file, MoveFileEx over it", ns[4]);
}

} // namespace

std::size_t ProbeEmbedding(const std::wstring& path) {
    const clsJob job;
    const std::size_t before = MemoryNow().WorkingSetSize;
    Embed(job, path);
    Require(ProfGetStringLengthW(job, nullptr, item) > 0, "the file was not embedded");
    return MemoryNow().PeakWorkingSetSize - before;
}

void MeasureEmbed(const scSettings& settings, clsReport& report) {
    report.Section("Embed: files of 16 MB");
    MeasureOne("a document", MakeDocument(fileBytes), settings, report);
    const auto noise = MakeNoise(fileBytes);
    MeasureOne("incompressible", noise, settings, report);

    const std::wstring source = settings.folder + L"noise.bin";
    WriteWholeFile(source, noise);
    const double peak = static_cast<double>(RunMemoryProbe(L"embed", source)) / fileBytes;
    report.Bytes("ProfAppendFileW, incompressible, peak memory a byte", peak, "its text alone", 8.0 / 3,
                 AtMost(8));
    report.Remark("Peak memory: the highest working set of a fresh process less the one before the call.");
}

} // namespace bench
