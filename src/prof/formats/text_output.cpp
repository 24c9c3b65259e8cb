#include "prof/formats/text_output.h"

#include <algorithm>
#include <cstring>

namespace tvut {

clsTextOutput::clsTextOutput(clsByteSink& sink, std::uint64_t bytes)
    : sink_(sink), block_(std::make_unique_for_overwrite<char16_t[]>(blockLength)) {
    sink_.Extend(bytes);
}

void clsTextOutput::Put(std::u16string_view text) {
    while (!text.empty()) {
        const std::size_t part = Part(text.size());
        std::memcpy(block_.get() + used_, text.data(), part * sizeof(char16_t));
        used_ += part;
        text.remove_prefix(part);
    }
}

void clsTextOutput::PutIndentation(std::uint32_t level) {
    for (std::uint32_t tabs = level / 4; tabs != 0; --tabs)
        Put(u'\t');
    for (std::uint32_t blanks = level % 4; blanks != 0; --blanks)
        Put(u' ');
}

void clsTextOutput::Flush() {
    if (used_ != 0)
        sink_.Write(block_.get(), used_ * sizeof(char16_t));
    used_ = 0;
}

std::size_t clsTextOutput::Part(std::size_t length) {
    Room(1);
    return std::min(length, blockLength - used_);
}

} // namespace tvut
