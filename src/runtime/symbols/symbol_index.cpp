// The files are walked twice by the same code: first to count, then to fill the tables. They are views of
// files that others may write meanwhile, so a table takes no more than it has room for. Lines come in
// sequences, ascending within each, which are looked for first; neighbours of the same line are one. Each
// section of code begins and ends with an entry without name, so the nearest name is never that of another
// section.
#include "runtime/symbols/symbol_index.h"

#include "runtime/symbols/coff_symbols.h"

#include <algorithm>

namespace tvut {

namespace {

using scName = clsSymbolIndex::scName;
using scLine = clsSymbolIndex::scLine;
using scSequence = clsSymbolIndex::scSequence;

constexpr std::size_t longestName = 1024, longestFile = 260; // bytes

// A table that counts what it has no room for.
template <class Row>
struct scTable {
    Row* rows = nullptr;
    std::size_t room = 0, count = 0;

    void Put(const Row& row) noexcept {
        if (count < room)
            rows[count] = row;
        ++count;
    }
    std::span<Row> From(std::size_t first) const noexcept {
        const std::size_t there = rows ? std::min(count, room) : 0;
        return std::span(rows, there).subspan(std::min(first, there));
    }
    void* Place(void* at, std::size_t rowCount) noexcept {
        rows = static_cast<Row*>(at);
        room = rowCount;
        return rows + room;
    }
};

struct scTables {
    scTable<scLine> lines;
    scTable<scSequence> sequences;
    scTable<scName> names;
    scTable<char> texts;

    scTables() noexcept = default;
    scTables(const clsSymbolIndex::scSize& size, void* at) noexcept {
        at = lines.Place(at, size.lines);
        at = sequences.Place(at, size.sequences);
        at = names.Place(at, size.names);
        texts.Place(at, size.textBytes);
    }
};

// A text's position; the first one stands for none.
std::uint32_t PutText(scTable<char>& texts, std::string_view text, std::size_t longest) noexcept {
    if (texts.count == 0)
        texts.Put(0);
    if (text.empty())
        return 0;
    const auto position = static_cast<std::uint32_t>(texts.count);
    for (const char c : text.substr(0, longest))
        texts.Put(c);
    texts.Put(0);
    return position;
}

// ---- Lines ----------------------------------------------------------------------------------------

class clsLinesToTables final : public IclsLineTaker {
  public:
    clsLinesToTables(scTables& tables, std::uint32_t baseAddress) noexcept
        : tables_(tables), baseAddress_(baseAddress) {}

    void Unit() noexcept override { files_.fill({}); }

    void File(std::uint64_t number, std::string_view name) noexcept override {
        if (number < files_.size())
            files_[static_cast<std::size_t>(number)] = {name, 0};
    }

    void Row(std::uint64_t address, std::uint64_t file, std::uint32_t line) noexcept override {
        const std::uint64_t offset = address - baseAddress_;
        if (offset > ~std::uint32_t{0}) // left of a function that the linker threw out
            return;
        const scLine next{static_cast<std::uint32_t>(offset), line, FileText(file)};
        if (isOpen_ && next.offset < last_.offset)
            Close(last_.offset);
        if (!isOpen_) {
            isOpen_ = true;
            begin_ = next.offset;
            first_ = tables_.lines.count;
            last_ = next;
        } else if (next.offset == last_.offset) {
            last_ = next;
        } else if (next.line != last_.line || next.file != last_.file) {
            tables_.lines.Put(last_);
            last_ = next;
        }
    }

    void End(std::uint64_t address) noexcept override {
        const std::uint64_t offset = address - baseAddress_;
        if (isOpen_)
            Close(offset > ~std::uint32_t{0} ? last_.offset : static_cast<std::uint32_t>(offset));
    }

  private:
    struct scFile {
        std::string_view name;
        std::uint32_t text = 0; // 0: not put yet
    };

    void Close(std::uint32_t end) noexcept {
        isOpen_ = false;
        tables_.lines.Put(last_);
        if (end > begin_)
            tables_.sequences.Put({begin_, end, static_cast<std::uint32_t>(first_),
                                   static_cast<std::uint32_t>(tables_.lines.count - first_)});
    }

    // Units share most of their files; where the linker keeps one text for all, so is it kept here.
    std::uint32_t FileText(std::uint64_t number) noexcept {
        if (number >= files_.size())
            return 0;
        scFile& file = files_[static_cast<std::size_t>(number)];
        if (file.text != 0 || file.name.empty())
            return file.text;
        scFile& put = put_[reinterpret_cast<std::uintptr_t>(file.name.data()) % put_.size()];
        if (put.name.data() != file.name.data())
            put = {file.name, PutText(tables_.texts, file.name, longestFile)};
        return file.text = put.text;
    }

    scTables& tables_;
    const std::uint32_t baseAddress_;
    std::array<scFile, 1024> files_; // of the unit, by number; files beyond these have no name
    std::array<scFile, 509> put_;    // by address
    bool isOpen_ = false;
    std::uint32_t begin_ = 0;
    std::size_t first_ = 0;
    scLine last_{}; // not put yet
};

std::span<const scSequence> PutLines(const clsPeImage& image, scTables& tables) noexcept {
    const std::size_t first = tables.sequences.count;
    clsLinesToTables taker(tables, image.BaseAddress());
    UtilpWalkSourceLines(image, taker);
    const std::span<scSequence> sequences = tables.sequences.From(first);
    std::ranges::sort(sequences, {}, &scSequence::begin);
    return sequences;
}

// ---- Names ----------------------------------------------------------------------------------------

class clsNamesToTables final : public IclsNameTaker {
  public:
    explicit clsNamesToTables(scTables& tables) noexcept : tables_(tables) {}

    void Name(std::uint32_t offset, int rank, std::string_view name) noexcept override {
        constexpr std::uint32_t ranks = 4;
        tables_.names.Put({offset, (ranks - static_cast<std::uint32_t>(rank)) << 29 | number_++,
                           PutText(tables_.texts, name, longestName)});
    }

    void Edges(const clsPeImage& image) noexcept {
        for (std::uint32_t i = 0; i < image.SectionCount(); ++i) {
            const scPeSection section = image.Section(i);
            Name(section.offset, 0, {});
            Name(section.offset + section.size, 0, {});
        }
    }

  private:
    scTables& tables_;
    std::uint32_t number_ = 0;
};

template <class Walk>
std::span<const scName> PutNames(const clsPeImage& image, scTables& tables, Walk walk) noexcept {
    const std::size_t first = tables.names.count;
    clsNamesToTables taker(tables);
    walk(taker);
    taker.Edges(image);
    const std::span<scName> names = tables.names.From(first);
    std::ranges::sort(names, [](const scName& a, const scName& b) {
        return a.offset != b.offset ? a.offset < b.offset : a.order < b.order;
    });
    return names;
}

std::span<const scName> PutSymbols(const clsPeImage& image, scTables& tables) noexcept {
    return PutNames(image, tables, [&](IclsNameTaker& taker) { UtilpWalkSymbols(image, taker); });
}

std::span<const scName> PutExports(const clsPeImage& image, scTables& tables) noexcept {
    return PutNames(image, tables, [&](IclsNameTaker& taker) { image.WalkExports(taker); });
}

// The last row of a table that begins at the offset or before it.
template <class Row, class Begin>
const Row* LastUpTo(std::span<const Row> rows, std::uint32_t offset, Begin begin) noexcept {
    const auto after = std::ranges::upper_bound(rows, offset, {}, begin);
    return after == rows.begin() ? nullptr : &*(after - 1);
}

} // namespace

std::uint64_t clsSymbolIndex::scSize::Bytes() const noexcept {
    return std::uint64_t{lines} * sizeof(scLine) + std::uint64_t{sequences} * sizeof(scSequence) +
           std::uint64_t{names} * sizeof(scName) + textBytes;
}

clsSymbolIndex::scSize clsSymbolIndex::Measure(const clsImageSymbols& files) noexcept {
    scTables tables;
    for (const clsPeImage* const file : {&files.DebugFile(), &files.Image()}) {
        PutLines(*file, tables);
        PutSymbols(*file, tables);
    }
    PutExports(files.Image(), tables);
    return {tables.lines.count, tables.sequences.count, tables.names.count, tables.texts.count};
}

clsSymbolIndex::clsSymbolIndex(const clsImageSymbols& files, const scSize& size, std::byte* room) noexcept {
    scTables tables(size, room);
    std::size_t i = 0;
    for (const clsPeImage* const file : {&files.DebugFile(), &files.Image()}) {
        sequences_[i] = PutLines(*file, tables);
        symbols_[i++] = PutSymbols(*file, tables);
    }
    exports_ = PutExports(files.Image(), tables);
    lines_ = tables.lines.From(0);
    texts_ = {reinterpret_cast<const unsigned char*>(tables.texts.rows), tables.texts.From(0).size()};
}

scSourceLine clsSymbolIndex::FindLine(std::span<const scSequence> sequences,
                                      std::uint32_t offset) const noexcept {
    const scSequence* const sequence = LastUpTo(sequences, offset, &scSequence::begin);
    if (!sequence || offset >= sequence->end || sequence->first > lines_.size() ||
        sequence->count > lines_.size() - sequence->first)
        return {};
    const scLine* const line =
        LastUpTo(lines_.subspan(sequence->first, sequence->count), offset, &scLine::offset);
    return line && line->line != 0 ? scSourceLine{texts_.Text(line->file), line->line} : scSourceLine();
}

scNearestName clsSymbolIndex::FindName(std::span<const scName> names, std::uint32_t offset) const noexcept {
    const scName* const last = LastUpTo(names, offset, &scName::offset);
    if (!last)
        return {};
    const auto best = std::ranges::lower_bound(names, last->offset, {}, &scName::offset);
    return {texts_.Text(best->text), offset - best->offset};
}

scCodePlace clsSymbolIndex::Find(std::uint32_t offset) const noexcept {
    scCodePlace place;
    for (std::size_t i = 0; i < sequences_.size() && place.source.line == 0; ++i)
        place.source = FindLine(sequences_[i], offset);
    scNearestName name;
    for (std::size_t i = 0; i < symbols_.size() && name.name.empty(); ++i)
        name = FindName(symbols_[i], offset);
    place.kind = FunctionName::symbol;
    if (name.name.empty()) {
        name = FindName(exports_, offset);
        place.kind = FunctionName::exported;
        if (name.offset >= farthestExport)
            name = {};
    }
    if (name.name.empty())
        return {FunctionName::none, {}, 0, place.source};
    place.function = name.name;
    place.functionOffset = name.offset;
    return place;
}

} // namespace tvut
