// What is put line by line and in long pieces; the lines of items go into reserved room.
#include "prof/formats/form_output.h"

#include <algorithm>

namespace tvut {

template <class Unit>
clsFormOutput<Unit>::clsFormOutput(clsByteSink& sink, std::uint64_t bytes)
    : sink_(sink), block_(std::make_unique_for_overwrite<Unit[]>(blockLength + longestReserve)) {
    sink_.Extend(bytes);
}

template <class Unit>
void clsFormOutput<Unit>::Put(Unit c) {
    *Reserve(1) = c;
    Took(1);
}

template <class Unit>
void clsFormOutput<Unit>::Put(View text) {
    PutBy([](Unit* to, View piece) { std::memcpy(to, piece.data(), piece.size() * sizeof(Unit)); }, text);
}

template <class Unit>
void clsFormOutput<Unit>::PutBy(void (*copy)(Unit* to, View piece), View text) {
    while (!text.empty()) {
        PassBlockOn();
        const std::size_t length = std::min(text.size(), blockLength - used_);
        copy(block_.get() + used_, text.substr(0, length));
        used_ += length;
        text.remove_prefix(length);
    }
}

template <class Unit>
void clsFormOutput<Unit>::PutIndentation(std::uint32_t level) {
    for (std::uint32_t tabs = level / 4; tabs != 0; --tabs)
        Put(Unit{'\t'});
    for (std::uint32_t blanks = level % 4; blanks != 0; --blanks)
        Put(Unit{' '});
}

template <class Unit>
void clsFormOutput<Unit>::Flush() {
    PassBlockOn();
    if (used_ != 0)
        sink_.Write(block_.get(), used_ * sizeof(Unit));
    used_ = 0;
}

template <class Unit>
void clsFormOutput<Unit>::WriteBlock() {
    sink_.Write(block_.get(), blockLength * sizeof(Unit));
    used_ -= blockLength;
    std::memcpy(block_.get(), block_.get() + blockLength, used_ * sizeof(Unit));
}

template class clsFormOutput<char16_t>;
template class clsFormOutput<char>;

} // namespace tvut
