// A file is a header and sectors of one size. The table has a number for each sector: the one that follows in
// its chain. The table's own sectors are listed in the header, 109 of them, and in a chain of further
// sectors. Streams below a size of 4,096 lie in sectors of 64 bytes of one stream, the root's, and have a
// table of their own.
//
// Chains are followed only as far as somebody reads. One that runs in a circle never ends, so each is watched
// (Brent): of the sectors at the places 0, 1, 3, 7, ... the last is kept, and who passes it again is in a
// circle. A chain of a circle is followed to at most three times its own sectors.
#include "docinfo/compound_file.h"

namespace tvut {

namespace {

constexpr std::uint32_t endOfChain = 0xFFFFFFFE;
constexpr std::uint32_t noEntry = 0xFFFFFFFF;
constexpr std::uint32_t mostSectors = 0xFFFFFFFA; // numbers from here on have meanings
constexpr std::size_t entryBytes = 128;
constexpr unsigned smallShift = 6, usualShift = 9, largeShift = 12;
constexpr std::size_t tablesInHeader = 109;
constexpr std::size_t longestChain = 256 * 1024; // what is looked at is shorter by far

namespace header {
constexpr std::uint64_t sectorShift = 30, smallSectorShift = 32, directory = 48, leastLarge = 56,
                        smallTable = 60, furtherTables = 68, tables = 76;
} // namespace header

constexpr std::string_view signature = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";

unsigned SectorShift(clsFields& fields) {
    UtilpRequire(clsCompoundFile::IsOne(fields.Text(0, signature.size())), "no compound file");
    const unsigned shift = fields.At<std::uint16_t>(header::sectorShift);
    UtilpRequire((shift == usualShift || shift == largeShift) &&
                     fields.At<std::uint16_t>(header::smallSectorShift) == smallShift,
                 "sectors of an unknown size");
    return shift;
}

} // namespace

std::uint32_t clsSectorChain::At(std::size_t place) {
    UtilpRequire(Reaches(place), "a chain of sectors ends too early");
    return sectors_[place];
}

bool clsSectorChain::Reaches(std::size_t place) {
    while (sectors_.size() <= place && next_ != endOfChain)
        Follow();
    return sectors_.size() > place;
}

void clsSectorChain::Follow() {
    UtilpRequire(sectors_.size() < longestChain, "a chain of sectors is too long");
    UtilpRequire(sectors_.empty() || next_ != mark_, "a chain of sectors runs in a circle");
    if (sectors_.size() == markAt_) {
        mark_ = next_;
        markAt_ = 2 * markAt_ + 1;
    }
    const std::uint32_t after = table_ == Table::sectors ? file_.After(next_) : file_.AfterSmall(next_);
    sectors_.push_back(next_);
    next_ = after;
}

bool clsCompoundFile::IsOne(std::string_view beginning) {
    return beginning.starts_with(signature);
}

clsCompoundFile::clsCompoundFile(clsRandomSource& source)
    : source_(source), fields_(source), sourceSize_(source.Size()), sectorShift_(SectorShift(fields_)),
      leastLarge_(fields_.At<std::uint32_t>(header::leastLarge)),
      nextFurther_(fields_.At<std::uint32_t>(header::furtherTables)),
      directory_(*this, clsSectorChain::Table::sectors, fields_.At<std::uint32_t>(header::directory)),
      smallTable_(*this, clsSectorChain::Table::sectors, fields_.At<std::uint32_t>(header::smallTable)),
      root_(Entry(0)), smallSectors_(*this, clsSectorChain::Table::sectors, root_.first) {
    UtilpRequire(root_.kind == scCompoundEntry::Kind::root, "the directory has no root");
}

void clsCompoundFile::EachChild(const scCompoundEntry& storage,
                                const std::function<void(const scCompoundEntry&)>& visit) {
    std::vector<bool> seen;
    std::vector<std::uint32_t> ahead;
    const auto push = [&](std::uint32_t number) {
        if (number == noEntry)
            return;
        UtilpRequire(number < mostEntries, "the directory is too large");
        if (seen.size() <= number)
            seen.resize(number + 1);
        if (!seen[number])
            ahead.push_back(number);
        seen[number] = true;
    };
    push(storage.child);
    while (!ahead.empty()) {
        const scCompoundEntry entry = Entry(ahead.back());
        ahead.pop_back();
        push(entry.right);
        push(entry.left);
        visit(entry);
    }
}

std::uint64_t clsCompoundFile::PositionOf(std::uint32_t sector) const {
    const std::uint64_t position = (std::uint64_t{sector} + 1) << sectorShift_;
    UtilpRequire(sector < mostSectors && position < sourceSize_, "a sector lies beyond the end");
    return position;
}

std::uint32_t clsCompoundFile::Number(std::uint32_t sector, std::size_t place) {
    return fields_.At<std::uint32_t>(PositionOf(sector) + 4 * place);
}

std::uint32_t clsCompoundFile::After(std::uint32_t sector) {
    PositionOf(sector); // throws for a number that is none
    return Number(TableSector(sector / NumbersInSector()), sector % NumbersInSector());
}

std::uint32_t clsCompoundFile::AfterSmall(std::uint32_t smallSector) {
    return Number(smallTable_.At(smallSector / NumbersInSector()), smallSector % NumbersInSector());
}

// The last number of a further sector leads to the next one.
std::uint32_t clsCompoundFile::TableSector(std::size_t place) {
    if (place < tablesInHeader)
        return fields_.At<std::uint32_t>(header::tables + 4 * place);
    const std::size_t inEach = NumbersInSector() - 1;
    const std::size_t further = (place - tablesInHeader) / inEach;
    while (furtherTables_.size() <= further) { // ends: a place belongs to a sector within the file
        furtherTables_.push_back(nextFurther_);
        nextFurther_ = Number(nextFurther_, inEach);
    }
    return Number(furtherTables_[further], (place - tablesInHeader) % inEach);
}

std::uint64_t clsCompoundFile::PositionOfSmall(std::uint32_t smallSector) {
    const std::uint64_t position = std::uint64_t{smallSector} << smallShift;
    return PositionOf(smallSectors_.At(static_cast<std::size_t>(position >> sectorShift_))) +
           position % SectorSize();
}

scCompoundEntry clsCompoundFile::Entry(std::uint32_t number) {
    const std::uint64_t inDirectory = std::uint64_t{number} * entryBytes;
    const std::uint64_t at =
        PositionOf(directory_.At(static_cast<std::size_t>(inDirectory >> sectorShift_))) +
        inDirectory % SectorSize();
    scCompoundEntry entry;
    const std::size_t nameBytes = fields_.At<std::uint16_t>(at + 64); // with the zero at its end
    UtilpRequire(nameBytes <= 2 * entry.name.size(), "a name in the directory is too long");
    entry.nameLength = static_cast<std::uint8_t>(nameBytes < 2 ? 0 : nameBytes / 2 - 1);
    for (std::size_t place = 0; place < entry.nameLength; ++place)
        entry.name[place] = fields_.At<std::uint16_t>(at + 2 * place);
    entry.kind = static_cast<scCompoundEntry::Kind>(fields_.At<std::uint8_t>(at + 66));
    entry.left = fields_.At<std::uint32_t>(at + 68);
    entry.right = fields_.At<std::uint32_t>(at + 72);
    entry.child = fields_.At<std::uint32_t>(at + 76);
    entry.first = fields_.At<std::uint32_t>(at + 116);
    entry.size = sectorShift_ == largeShift ? fields_.At<std::uint64_t>(at + 120)
                                            : fields_.At<std::uint32_t>(at + 120);
    return entry;
}

clsCompoundStream::clsCompoundStream(clsCompoundFile& file, const scCompoundEntry& entry)
    : file_(file), size_(std::min(entry.size, file.sourceSize_)), isSmall_(entry.size < file.leastLarge_),
      chain_(file, isSmall_ ? clsSectorChain::Table::smallSectors : clsSectorChain::Table::sectors,
             entry.first) {}

std::size_t clsCompoundStream::ReadAt(std::uint64_t position, void* buffer, std::size_t bytes) {
    const unsigned shift = isSmall_ ? smallShift : file_.sectorShift_;
    std::size_t done = 0;
    while (done < bytes && position < size_) {
        const std::uint64_t inSector = position & ((1u << shift) - 1);
        const std::uint64_t rest = std::min((std::uint64_t{1} << shift) - inSector, size_ - position);
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(rest, bytes - done));
        const std::uint32_t sector = chain_.At(static_cast<std::size_t>(position >> shift));
        const std::uint64_t start = isSmall_ ? file_.PositionOfSmall(sector) : file_.PositionOf(sector);
        const std::size_t got =
            file_.source_.ReadAt(start + inSector, static_cast<char*>(buffer) + done, count);
        done += got;
        if (got != count) // a file that was cut in its last sector
            break;
        position += count;
    }
    return done;
}

} // namespace tvut
