// The wrapper does not say how long its contents are. So room is guessed from the wrapped length and doubled,
// up to one byte beyond the limit: to get there is to be too large.
#include "prof/formats/compression.h"

#include "prof/formats/load_error.h"

#include <algorithm>
#include <cstring>

namespace tvut {

namespace {

constexpr std::string_view magic = "ZZmQ";
constexpr std::size_t leastRoom = 64 * 1024;

std::unique_ptr<char16_t[]> Enlarged(std::unique_ptr<char16_t[]> storage, std::size_t from, std::size_t to) {
    auto larger = clsInputText::Allocate(to);
    std::memcpy(larger.get(), storage.get(), from);
    return larger;
}

} // namespace

bool ProfpIsCompressed(std::string_view bytes) {
    return bytes.starts_with(magic);
}

clsInputText ProfpInflate(std::string_view wrapped, std::size_t limit) {
    wrapped.remove_prefix(magic.size());
    clsInflater inflater;
    inflater.Feed(wrapped.data(), wrapped.size());
    std::size_t capacity = std::min(limit, std::max(leastRoom, wrapped.size() * 4)) + 1;
    auto unfolded = clsInputText::Allocate(capacity);
    for (std::size_t filled = 0;;) {
        filled += inflater.Unfold(reinterpret_cast<char*>(unfolded.get()) + filled, capacity - filled);
        if (filled > limit)
            throw clsLoadException(0, u"prof::compressed: unfolds to more than 256 MiB");
        if (inflater.Now() == clsInflater::State::ended)
            return {std::move(unfolded), filled};
        if (inflater.Now() == clsInflater::State::damaged || filled < capacity)
            throw clsLoadException(0, u"prof::compressed: data damaged or cut off");
        const std::size_t larger = std::min(limit + 1, capacity * 2);
        unfolded = Enlarged(std::move(unfolded), capacity, larger);
        capacity = larger;
    }
}

clsCompressingSink::clsCompressingSink(clsByteSink& target) : target_(target), deflating_(target) {}

void clsCompressingSink::Extend(std::uint64_t) {
    deflating_.Extend(unknownLength);
    target_.Write(magic.data(), magic.size());
}

} // namespace tvut
