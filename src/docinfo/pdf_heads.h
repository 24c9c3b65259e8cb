// Finds the objects of a PDF file whose cross references are wrong: by looking for where each begins.
#pragma once

#include "docinfo/paged_source.h"

#include <optional>
#include <string_view>
#include <vector>

namespace tvut {

class clsPdfHeads {
  public:
    static constexpr std::uint64_t mostBytes = 64 * 1024 * 1024; // that are looked through
    static constexpr std::size_t mostHeads = 256 * 1024, mostStreams = 4096, mostTrailers = 64;

    // Throws what the source throws, std::bad_alloc.
    void Search(clsPagedSource& source);

    // Where the last object of this number begins.
    std::optional<std::uint64_t> Find(std::uint32_t number) const;

    // Positions, the last one of the file first.
    const std::vector<std::uint64_t>& ObjectStreams() const { return objectStreams_; }
    const std::vector<std::uint64_t>& Trailers() const { return trailers_; }               // after the word
    const std::vector<std::uint64_t>& CrossReferences() const { return crossReferences_; } // objects
    const std::vector<std::uint64_t>& Catalogues() const { return catalogues_; }           // objects

  private:
    struct scHead {
        std::uint32_t number;
        std::uint32_t position;
    };

    void SearchHeads(std::string_view window, std::size_t from, std::size_t to, std::uint64_t position);
    void SearchTrailers(std::string_view window, std::size_t from, std::size_t to, std::uint64_t position);
    void TakeHead(std::string_view body, std::uint32_t number, std::uint64_t position);

    std::vector<scHead> heads_; // by number, then by position
    std::vector<std::uint64_t> objectStreams_, trailers_, crossReferences_, catalogues_;
};

} // namespace tvut
