// Processes that are killed while they pack and unpack archives: whatever the moment, the archive is the last
// one or the next, each unpacked file is whole, and no more than one temporary file is left.
#include "workloads.h"

#include "support/child.h"
#include "support/zip.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace soak {

namespace {

namespace fs = std::filesystem;

constexpr wchar_t archive[] = L"archive.zip", source[] = L"source", target[] = L"target";
constexpr std::array<const wchar_t*, 2> givenArchives = {L"given 1.zip", L"given 2.zip"};
constexpr unsigned filesGiven = 6;

// What is packed in a generation, half of it shrinking.
std::string DataOf(unsigned generation) {
    const unsigned size = 1000 + generation * 7919 % 300'000;
    return std::to_string(generation) + std::string(size, 'x') + testing_prof::Noise(size, generation);
}

testing_prof::Tree TreeOf(unsigned generation) {
    return {{L"generation", std::to_string(generation)}, {L"d\\data", DataOf(generation)}};
}

// 0 for no archive; -1 for one that is not whole.
int PackedGeneration() {
    if (!fs::exists(archive))
        return 0;
    fs::remove_all(L"check");
    if (UtilExtractZip(archive, L"check", nullptr) != UTIL_OK)
        return -1;
    const int generation = std::atoi(testing_prof::ReadBytes(L"check\\source\\generation").c_str());
    testing_prof::Tree expected = TreeOf(static_cast<unsigned>(generation));
    expected[L"d\\"];
    return testing_prof::treeOf(L"check\\source") == expected ? generation : -1;
}

// What the files of a given archive hold.
std::string GivenData(std::size_t which, unsigned file) {
    return DataOf(1 + static_cast<unsigned>(which) * 100 + file);
}

void MakeGivenArchives() {
    for (std::size_t which = 0; which < givenArchives.size(); ++which) {
        testing_prof::Tree tree;
        for (unsigned file = 0; file < filesGiven; ++file)
            tree[L"d" + std::to_wstring(file % 2) + L"\\file " + std::to_wstring(file)] =
                GivenData(which, file);
        fs::remove_all(L"given");
        testing_prof::makeTree(L"given", tree);
        testing_prof::packed(givenArchives[which], L"given");
    }
}

// Removes temporary files wherever they are; returns how many there were.
int RemoveTemporaries() {
    std::vector<fs::path> found;
    for (const auto& entry : fs::recursive_directory_iterator("."))
        if (entry.path().filename().wstring().starts_with(L"~PRF"))
            found.push_back(entry.path());
    for (const fs::path& path : found)
        fs::remove(path);
    return static_cast<int>(found.size());
}

// Whether each file that is there is one of the two that it may be.
bool AreUnpackedFilesWhole() {
    for (unsigned file = 0; file < filesGiven; ++file) {
        const fs::path path = fs::path(target) / L"given" / (L"d" + std::to_wstring(file % 2)) /
                              (L"file " + std::to_wstring(file));
        if (!fs::exists(path))
            continue;
        const std::string bytes = testing_prof::ReadBytes(path);
        if (bytes != GivenData(0, file) && bytes != GivenData(1, file))
            return false;
    }
    return true;
}

constexpr wchar_t begun[] = L"tvut22_soak has begun";

void TellBegun() {
    const testing_prof::Handle event(OpenEventW(EVENT_MODIFY_STATE, FALSE, begun));
    SetEvent(event.get());
}

// At a moment of its work, not of its start.
void KillOne(clsRun& run, const wchar_t* part) {
    const testing_prof::Handle event(CreateEventW(nullptr, FALSE, FALSE, begun));
    const testing_prof::clsChild child(part);
    WaitForSingleObject(event.get(), 20000);
    Sleep(run.Random(150));
    run.Require(child.Runs(), "a call failed");
    child.Kill();
}

} // namespace

// Packs one generation after another until it is killed.
int PlayPacker(std::span<char*>) {
    TellBegun();
    for (int generation = std::max(PackedGeneration(), 0) + 1;; ++generation) {
        fs::remove_all(source);
        testing_prof::makeTree(source, TreeOf(static_cast<unsigned>(generation)));
        if (const INT result = testing_prof::packed(archive, source); result != UTIL_OK)
            return -result;
    }
}

// Unpacks one of two archives over the other's files until it is killed.
int PlayUnpacker(std::span<char*>) {
    TellBegun();
    for (std::size_t which = 0;; which = 1 - which)
        if (const INT result = UtilExtractZip(givenArchives[which], target, nullptr); result != UTIL_OK)
            return -result;
}

void RunArchives(clsRun& run) {
    MakeGivenArchives();
    int last = 0;
    while (run.GoesOn()) {
        KillOne(run, L"play-packer");
        const int generation = PackedGeneration();
        if (generation < last) {
            run.Found("generation " + std::to_string(generation) + " after " + std::to_string(last));
            run.Keep(archive);
            last = 0;
        }
        run.Require(RemoveTemporaries() <= 1, "temporary files are left by packing");
        run.Count("kills while packing");
        run.Count("archives", std::max(generation - last, 0));
        last = std::max(generation, last);

        KillOne(run, L"play-unpacker");
        run.Require(AreUnpackedFilesWhole(), "an unpacked file is not whole");
        run.Require(RemoveTemporaries() <= 1, "temporary files are left by unpacking");
        run.Count("kills while unpacking");
    }
}

} // namespace soak
