// Bytes to text and back: Base64 against a plain pass over the text, compression against zlib alone.
#include "plain_pass.h"
#include "sections.h"

#include <tvut22/text.h>

#include <zlib.h>

#include <optional>
#include <random>
#include <vector>

namespace bench {

namespace {

using Bytes = std::vector<unsigned char>;

Bytes Noise(std::size_t count) {
    std::mt19937 random(1);
    Bytes bytes(count);
    for (auto& byte : bytes)
        byte = static_cast<unsigned char>(random());
    return bytes;
}

// Numbered lines of words, which compress like documents do.
Bytes Document(std::size_t count) {
    static const char* const words[] = {"profile ", "report ", "printer ", "of the ",
                                        "page ",    "a ",      "window ",  "last "};
    std::mt19937 random(2);
    Bytes bytes;
    while (bytes.size() < count) {
        std::string line = std::to_string(random() % 100000) + ": ";
        for (int word = 0; word < 8; ++word)
            line += words[random() % std::size(words)];
        line += '\n';
        bytes.insert(bytes.end(), line.begin(), line.end());
    }
    bytes.resize(count);
    return bytes;
}

// Bytes, their text, and room for either.
struct scWork {
    scWork(Bytes original, BOOL compressed)
        : bytes(std::move(original)), back(bytes.size()), compress(compressed) {
        text.resize(
            static_cast<std::size_t>(UtilConvertBLOBToString(bytes.data(), Size(), nullptr, 0, compress)));
        Encode();
        Decode();
        Require(back == bytes, "the bytes did not come back");
    }
    UINT Size() const { return static_cast<UINT>(bytes.size()); }
    double Encode() {
        return Timed([&] {
            UtilConvertBLOBToString(bytes.data(), Size(), text.data(), static_cast<UINT>(text.size()),
                                    compress);
        });
    }
    double Decode() {
        return Timed([&] { UtilConvertStringToBLOB(text.data(), back.data(), Size()); });
    }
    Bytes bytes, back;
    BOOL compress;
    std::vector<wchar_t> text;
};

void MeasurePlain(const scSettings& settings, clsReport& report, std::size_t size, const std::string& name) {
    scWork work(Noise(size), FALSE);
    const std::size_t length = work.text.size();
    AgainstPlainPass(
        "UtilConvertBLOBToString, " + name, [&] { return work.Encode(); }, length, AtMost(0.5),
        settings.rounds, report);
    AgainstPlainPass(
        "UtilConvertStringToBLOB, " + name, [&] { return work.Decode(); }, length, AtMost(1), settings.rounds,
        report);
    ShowCopy(length, settings.rounds, report);
}

void MeasureCompressed(const scSettings& settings, clsReport& report, const Bytes& bytes,
                       const std::string& name, std::optional<scGoal> unfolding) {
    scWork work(bytes, TRUE);
    Bytes packed(compressBound(static_cast<uLong>(bytes.size())));
    uLongf packedSize = 0;
    Bytes unpacked(bytes.size());
    const auto pack = [&] {
        packedSize = static_cast<uLongf>(packed.size());
        compress(packed.data(), &packedSize, bytes.data(), static_cast<uLong>(bytes.size()));
    };
    const auto unpack = [&] {
        auto size = static_cast<uLongf>(unpacked.size());
        uncompress(unpacked.data(), &size, packed.data(), packedSize);
    };
    const Round rounds[] = {[&] { return work.Encode(); }, [&] { return Timed(pack); },
                            [&] { return work.Decode(); }, [&] { return Timed(unpack); }};
    const auto ns = Race(rounds, std::min(settings.rounds, 7));
    Require(unpacked == bytes, "zlib did not give the bytes back");
    report.Against("compressed, " + name, ns[0], "zlib compress", ns[1], AtMost(1.1));
    report.Against("unfolded, " + name, ns[2], "zlib uncompress", ns[3], unfolding);
}

} // namespace

void MeasureBase64(const scSettings& settings, clsReport& report) {
    const std::size_t size = (settings.quick ? 1 : 16) * 1024 * 1024;
    const std::string large = settings.quick ? "1 MB" : "16 MB";
    report.Section("Bytes as text");
    MeasurePlain(settings, report, megabyte / 4 * 3, "384 KB");
    MeasurePlain(settings, report, size, large);
    MeasureCompressed(settings, report, Document(size), large + " of lines", AtMost(1.3));
    MeasureCompressed(settings, report, Noise(size), large + " of noise", {});
    report.Remark(
        "Base64 of noise against a pass over the UTF-16 text that it makes, 2.7 times the bytes. Compressed: "
        "the whole way between bytes and text, against zlib alone on the same bytes at the same level. "
        "Noise is stored, not compressed, so that unfolding it is little more than copying.");
}

} // namespace bench
