// Compound files ([MS-CFB]): streams in storages, in one file of sectors. Only for reading, and only what is
// asked for: a large file costs no more than the streams that are looked at.
//
// All throw clsDocDamage for what cannot be: sectors beyond the file, chains that run in a circle or end too
// early; and std::bad_alloc.
#pragma once

#include "docinfo/fields.h"

#include <functional>
#include <string_view>
#include <vector>

namespace tvut {

class clsCompoundFile;

struct scCompoundEntry {
    enum class Kind : std::uint8_t { none = 0, storage = 1, stream = 2, root = 5 };

    std::u16string_view Name() const { return {name.data(), nameLength}; }

    std::array<char16_t, 32> name;
    std::uint8_t nameLength = 0;
    Kind kind = Kind::none;
    std::uint32_t left, right, child; // other entries, by number
    std::uint32_t first;              // sector
    std::uint64_t size;
};

// The sectors of a chain by their place in it, followed as far as they were asked for.
class clsSectorChain {
  public:
    enum class Table { sectors, smallSectors };

    clsSectorChain(clsCompoundFile& file, Table table, std::uint32_t first)
        : file_(file), table_(table), next_(first) {}

    // The sector at a place. Throws where the chain ends before.
    std::uint32_t At(std::size_t place);
    // The same, or false.
    bool Reaches(std::size_t place);

  private:
    void Follow();

    clsCompoundFile& file_;
    Table table_;
    std::uint32_t next_; // after the last one that is known
    std::uint32_t mark_ = 0;
    std::size_t markAt_ = 0;
    std::vector<std::uint32_t> sectors_;
};

class clsCompoundFile {
  public:
    static constexpr std::size_t mostEntries = 65536;

    static bool IsOne(std::string_view beginning);

    // The source stays the caller's. It should be a cached one: numbers are read one by one.
    explicit clsCompoundFile(clsRandomSource& source);
    clsCompoundFile(const clsCompoundFile&) = delete;
    clsCompoundFile& operator=(const clsCompoundFile&) = delete;

    const scCompoundEntry& Root() const { return root_; }
    // What lies directly in a storage, in no order; each entry once.
    void EachChild(const scCompoundEntry& storage, const std::function<void(const scCompoundEntry&)>& visit);

  private:
    friend class clsSectorChain;
    friend class clsCompoundStream;

    std::uint64_t SectorSize() const { return std::uint64_t{1} << sectorShift_; }
    std::size_t NumbersInSector() const { return static_cast<std::size_t>(SectorSize() / 4); }
    std::uint64_t PositionOf(std::uint32_t sector) const; // in the source
    std::uint32_t Number(std::uint32_t sector, std::size_t place);
    std::uint32_t After(std::uint32_t sector);
    std::uint32_t AfterSmall(std::uint32_t smallSector);
    std::uint32_t TableSector(std::size_t place);
    std::uint64_t PositionOfSmall(std::uint32_t smallSector);
    scCompoundEntry Entry(std::uint32_t number);

    clsRandomSource& source_;
    clsFields fields_;
    std::uint64_t sourceSize_;
    unsigned sectorShift_;
    std::uint32_t leastLarge_;                 // streams of this size and more lie in sectors
    std::vector<std::uint32_t> furtherTables_; // sectors that list sectors of the table
    std::uint32_t nextFurther_;
    clsSectorChain directory_, smallTable_;
    scCompoundEntry root_;
    clsSectorChain smallSectors_;
};

// A stream of a compound file, which must live as long.
class clsCompoundStream final : public clsRandomSource {
  public:
    clsCompoundStream(clsCompoundFile& file, const scCompoundEntry& entry);
    std::uint64_t Size() override { return size_; }
    std::size_t ReadAt(std::uint64_t position, void* buffer, std::size_t bytes) override;

  private:
    clsCompoundFile& file_;
    std::uint64_t size_;
    bool isSmall_;
    clsSectorChain chain_;
};

} // namespace tvut
