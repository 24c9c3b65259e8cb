// The file of a 32-bit module as it lies on disk: sections, exports, and which debug file belongs to it.
// Published: "PE Format" in Microsoft's documentation of Windows; .gnu_debuglink in GDB's manual, "Debugging
// Information in Separate Files".
//
// All texts lie in the file's bytes. Any bytes may be given: what is damaged is not there. No heap, no lock,
// no C runtime: it serves a process that crashes.
#pragma once

#include "runtime/symbols/bytes.h"

namespace tvut {

struct scPeSection {
    std::string_view name;
    std::uint32_t offset = 0; // within the module, in memory
    std::uint32_t size = 0;   // in memory
    bool isCode = false;
    clsBytes bytes; // of the file; empty where it has none
};

struct scDebugLink {
    std::string_view file; // its name without folder; empty: there is no link
    std::uint32_t crc = 0; // CRC-32 of that file
};

struct scNearestName {
    std::string_view name;    // empty: none
    std::uint32_t offset = 0; // from the beginning of what is named
};

// Takes names of code, each with where it begins within the module.
class IclsNameTaker {
  public:
    // Of two for one place that of the higher rank, 1 to 3, is the better one, else the first.
    virtual void Name(std::uint32_t offset, int rank, std::string_view name) noexcept = 0;

  protected:
    ~IclsNameTaker() = default;
};

class clsPeImage {
  public:
    clsPeImage() noexcept = default; // nothing
    explicit clsPeImage(clsBytes file) noexcept;

    bool IsValid() const noexcept { return sectionCount_ != 0; }
    std::uint32_t BaseAddress() const noexcept { return baseAddress_; } // that it was linked for

    std::uint32_t SectionCount() const noexcept { return sectionCount_; }
    scPeSection Section(std::uint32_t index) const noexcept; // from 0
    scPeSection FindSection(std::string_view name) const noexcept;
    std::uint32_t SectionIndexAt(std::uint32_t offset) const noexcept; // SectionCount() where there is none

    // The symbol table's records of 18 bytes, and the texts of long names after them.
    clsBytes SymbolTable() const noexcept;
    clsBytes StringTable() const noexcept;

    // The exported name at an offset within the module or next before it, in the same section.
    scNearestName NearestExport(std::uint32_t offset) const noexcept;

    void WalkExports(IclsNameTaker& taker) const noexcept;

    // The debug file that the module names.
    scDebugLink DebugLink() const noexcept;

    // Whether a debug file was made from this module: what is loaded of it lies in the same places. That
    // tells other builds apart without reading the whole file, as its CRC would.
    bool HasDebugFile(const clsPeImage& debugFile) const noexcept;

  private:
    // What the directory of exports leads to.
    struct scExports {
        std::uint32_t begin = 0, size = 0; // of the directory
        clsBytes functions, names, ordinals;
        std::uint32_t count = 0; // of names

        std::uint32_t Function(std::size_t i) const noexcept;
    };
    scExports Exports() const noexcept;
    clsBytes SectionHeader(std::uint32_t index) const noexcept;
    std::string_view SectionName(clsBytes header) const noexcept;
    clsBytes At(std::uint32_t offset) const noexcept; // what the file has for the rest of that section

    clsBytes file_;
    std::size_t optionalHeader_ = 0;
    std::size_t sections_ = 0;
    std::uint32_t sectionCount_ = 0;
    std::uint32_t baseAddress_ = 0;
    std::uint32_t symbols_ = 0; // position in the file
    std::uint32_t symbolCount_ = 0;
};

} // namespace tvut
