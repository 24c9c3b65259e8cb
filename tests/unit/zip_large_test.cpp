// Archives that need Zip64: more than 4 GiB, more than 65,535 entries. Sparse files hold them, and programs
// of others open them.
#include "unit/zip_support.h"
#include "zip/zip_extra.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

using namespace tvut;

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t gib = 1ull << 30;

// A file whose zeros take no room on the disk. It goes with the object.
class clsSparseFile final : public clsPatchableSink, public clsRandomSource {
  public:
    explicit clsSparseFile(const std::string& name)
        : path_(fs::temp_directory_path() / (name + std::to_string(getpid()) + ".zip")),
          file_(open(path_.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600)) {}
    clsSparseFile(const clsSparseFile&) = delete;
    clsSparseFile& operator=(const clsSparseFile&) = delete;
    ~clsSparseFile() override {
        close(file_);
        fs::remove(path_);
    }

    void Write(const void* data, std::size_t bytes) override {
        const char* const first = static_cast<const char*>(data);
        const bool areZeros = bytes != 0 && *first == 0 && std::memcmp(first, first + 1, bytes - 1) == 0;
        if (!areZeros)
            Patch(size_, data, bytes);
        size_ += bytes;
        EXPECT_EQ(ftruncate(file_, static_cast<off_t>(size_)), 0);
    }
    void Patch(std::uint64_t position, const void* data, std::size_t bytes) override {
        EXPECT_EQ(pwrite(file_, data, bytes, static_cast<off_t>(position)), static_cast<ssize_t>(bytes));
    }
    void Cut(std::uint64_t size) override { size_ = size; }
    std::uint64_t Size() override { return size_; }
    std::size_t ReadAt(std::uint64_t position, void* buffer, std::size_t bytes) override {
        read += bytes;
        return static_cast<std::size_t>(pread(file_, buffer, bytes, static_cast<off_t>(position)));
    }

    // A program's exit code.
    int OpenedBy(const std::string& command, const std::string& entry = {}) const {
        return std::system((command + " '" + path_.string() + "' " + entry + " >/dev/null 2>&1").c_str());
    }

    std::uint64_t read = 0;

  private:
    fs::path path_;
    int file_;
    std::uint64_t size_ = 0;
};

class clsZeros final : public clsByteSource {
  public:
    std::uint64_t SizeHint() override { return left_; }
    std::size_t Read(void* buffer, std::size_t bytes) override {
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, left_));
        std::memset(buffer, 0, count);
        left_ -= count;
        return count;
    }

  private:
    std::uint64_t left_ = 4 * gib + 5;
};

// Unpacks what has one name; gives how many bytes of the archive were read for it.
std::uint64_t UnpackOne(clsSparseFile& archive, std::u16string_view name, clsMemoryTarget& target) {
    clsCaller caller;
    caller.answer = [&](const scShownZipEntry& entry) {
        return !entry.isQuestion || entry.name == name ? ZipAnswer::go : ZipAnswer::skip;
    };
    const scZipExtractionOrder order{u"a.zip", u"C:\\out", {}, gib, false};
    archive.read = 0;
    EXPECT_EQ(clsZIPExtraction(archive, order, &target, &caller).Run(), UtilResult::ok);
    return archive.read;
}

TEST(ZipLarge, AnEntryOfMoreThan4GiBAndWhatComesAfterIt) {
    clsSparseFile archive("zip_large");
    clsZIPWriter writer(archive, ZipCompression::store, {});
    Add(writer, {u"first", "1"});
    clsZeros zeros;
    clsNoProgress progress;
    writer.AddFile({u"large"}, zeros, progress);
    Add(writer, {u"last", "3"});
    writer.Finish();
    EXPECT_EQ(archive.OpenedBy("7z t"), 0);
    EXPECT_EQ(archive.OpenedBy("unzip -tq", "last"), 0);
    clsMemoryTarget target;
    EXPECT_LT(UnpackOne(archive, u"last", target), 1000000u) << "nothing of the others is read";
    EXPECT_EQ(target.files[u"last"].bytes, "3");
    const scZipExtractionOrder order{u"a.zip", {}, {}, 5 * gib, false};
    EXPECT_EQ(clsZIPExtraction(archive, order, nullptr, nullptr).Run(), UtilResult::ok);
}

// Written by hand: what is between is a hole that nobody reads.
TEST(ZipLarge, ASmallFileInAnArchiveOf20GiB) {
    constexpr std::uint64_t hole = 20 * gib;
    clsSparseFile archive("zip_hole");
    std::string sizes(largeRoomBytes, '\0'), numbers(28, '\0');
    UtilpWriteLargeSizes(sizes.data(), hole, hole);
    const auto sizesBytes = static_cast<std::uint16_t>(sizes.size());
    const std::string head =
        BytesOf(scLocalHeader{45, 0, 0, 0, 0, elsewhere32, elsewhere32, 4, sizesBytes}) + "hole" + sizes;
    const std::uint64_t smallAt = head.size() + hole;
    const std::string small = BytesOf(scLocalHeader{45, 0, 0, 0, CrcOf("x"), 1, 1, 5, 0}) + "smallx";
    UtilpWriteLargeNumbers(numbers.data(), {1, 1, smallAt, 0});
    const std::string directory =
        BytesOf(scCentralHeader{45, 45, 0, 0, 0, 0, elsewhere32, elsewhere32, 4, sizesBytes, 0, 0, 0, 0, 0}) +
        "hole" + sizes +
        BytesOf(scCentralHeader{45, 45, 0, 0, 0, CrcOf("x"), 1, 1, 5, 12, 0, 0, 0, 0, elsewhere32}) +
        "small" + numbers.substr(0, 12);
    const std::uint64_t directoryAt = smallAt + small.size(), end = directoryAt + directory.size();
    const std::string records =
        BytesOf(scZip64EndRecord{44, 45, 45, 0, 0, 2, 2, directory.size(), directoryAt}) +
        BytesOf(scZip64Locator{0, end, 1}) +
        BytesOf(scEndRecord{0, 0, 2, 2, static_cast<std::uint32_t>(directory.size()), elsewhere32, 0});
    archive.Patch(0, head.data(), head.size());
    archive.Cut(smallAt);
    for (const std::string& part : {small, directory, records})
        archive.Write(part.data(), part.size());
    clsMemoryTarget target;
    EXPECT_LT(UnpackOne(archive, u"small", target), 1000000u);
    EXPECT_EQ(target.files[u"small"].bytes, "x");
}

// 65,535 is the first count that does not fit.
TEST(ZipLarge, ManyEntriesAndNone) {
    for (const std::uint32_t count : {0u, 65534u, 65535u, 65536u}) {
        clsSparseFile archive("zip_many");
        clsZIPWriter writer(archive, ZipCompression::deflate, {});
        for (std::uint32_t n = 0; n < count; ++n)
            Add(writer, {u"d/" + WideNumber(n), ""});
        writer.Finish();
        clsCaller caller;
        caller.answer = [](const scShownZipEntry&) { return ZipAnswer::skip; };
        clsZIPExtraction(archive, {u"a.zip", {}, {}, 0, false}, nullptr, &caller).Run();
        ASSERT_EQ(caller.seen.size(), count);
        EXPECT_TRUE(count == 0 || caller.seen.back().entry.count == count);
        EXPECT_EQ(archive.OpenedBy("7z t"), 0);
        EXPECT_EQ(archive.OpenedBy("python3 -m zipfile -t"), 0);
        EXPECT_TRUE(count == 0 || archive.OpenedBy("unzip -tq") == 0) << "of an empty one it warns";
    }
}

} // namespace
