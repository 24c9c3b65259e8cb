// A document read through a cache of 16 pages: a reader asks for a few bytes anywhere, and the file sees few
// reads.
#pragma once

#include "platform/bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace tvut {

class clsPagedSource final : public clsRandomSource {
  public:
    static constexpr std::size_t pageBytes = 4096;
    static constexpr std::size_t pageCount = 16;
    static constexpr std::size_t roomBytes = pageBytes * pageCount;

    // The source must stay while the object does. Asks for its size; throws what that throws, std::bad_alloc.
    explicit clsPagedSource(clsRandomSource& source);

    std::uint64_t Size() override { return size_; }

    // More than a page is read past the cache, in one call. Throws what the source throws, and clsDocDamage
    // when more is read than is allowed.
    std::size_t ReadAt(std::uint64_t position, void* buffer, std::size_t bytes) override;

    // The same as a string. Throws std::bad_alloc, too.
    std::string Read(std::uint64_t position, std::size_t bytes);

    // From now on no more than this may be read of the document.
    void Allow(std::uint64_t bytes) noexcept { allowed_ = bytes; }

  private:
    struct scPage {
        std::uint64_t number = UINT64_MAX;
        std::size_t filled = 0;
        std::uint64_t used = 0; // when it was last asked for
    };

    void ReadWhole(); // a document that has no more bytes than the room
    std::size_t ReadFromFile(std::uint64_t position, void* buffer, std::size_t bytes);
    std::size_t PageOf(std::uint64_t number);

    clsRandomSource& source_;
    std::uint64_t size_;
    std::uint64_t allowed_ = UINT64_MAX;
    std::uint64_t clock_ = 0;
    std::array<scPage, pageCount> pages_;
    std::unique_ptr<char[]> room_;
};

} // namespace tvut
