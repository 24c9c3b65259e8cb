// The temporary files of a process, newest first. The caller sees to it that one thread at a time is here.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace tvut {

// A wished name that was taken before, and what was made of it.
struct scNumberedWish {
    std::uint32_t wish = 0; // its hash
    std::uint32_t number = 0;
};

struct scTempFile {
    std::unique_ptr<char16_t[]> characters;
    std::uint32_t length;
    std::uint32_t hash;
    scNumberedWish wish;
    bool leaving = false; // somebody removes it at the moment
    scTempFile* newer = nullptr;
    scTempFile* older = nullptr;
    scTempFile* next = nullptr; // of those whose hashes share a place

    std::u16string_view Path() const { return {characters.get(), length}; } // terminated
};

// Equal for paths that are the same without regard to case.
std::uint32_t UtilpHashPath(std::u16string_view path) noexcept;

class clsTempFileList {
  public:
    static constexpr std::size_t most = 10000;

    clsTempFileList() = default;
    ~clsTempFileList();
    clsTempFileList(const clsTempFileList&) = delete;
    clsTempFileList& operator=(const clsTempFileList&) = delete;

    static std::unique_ptr<scTempFile> Make(std::u16string_view path, scNumberedWish wish = {});

    bool IsFull() const noexcept { return count_ == most; }
    scTempFile* Newest() const noexcept { return newest_; }

    // The file of a path that nobody removes at the moment; null when there is none.
    scTempFile* Find(std::u16string_view path) const noexcept;

    void Put(std::unique_ptr<scTempFile> file) noexcept; // the list is not full
    std::unique_ptr<scTempFile> Take(scTempFile& file) noexcept;

    // The number to try first for a wished name: those before are taken, as far as is known.
    std::uint32_t FirstNumber(std::uint32_t wish) const noexcept;

  private:
    struct scHint {
        std::uint32_t wish = 0;
        std::uint32_t first = 1;
    };
    scHint& HintOf(std::uint32_t wish) noexcept { return hints_[wish % hints_.size()]; }
    void NoteTaken(const scNumberedWish& wish) noexcept;
    void NoteFree(const scNumberedWish& wish) noexcept;

    std::array<scTempFile*, 2048> places_{};
    std::array<scHint, 64> hints_{}; // of the wishes of late, to spare asking for each number again
    scTempFile* newest_ = nullptr;
    std::size_t count_ = 0;
};

} // namespace tvut
