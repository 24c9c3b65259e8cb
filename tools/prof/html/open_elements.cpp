#include "open_elements.h"

#include <algorithm>

namespace tool::html {

scOpenElement& clsOpenElements::Open(Element element) {
    std::uint32_t& last = last_[static_cast<std::size_t>(element)];
    open_.push_back({element, last, 0, 0, 0});
    last = static_cast<std::uint32_t>(open_.size());
    return open_.back();
}

scOpenElement clsOpenElements::Close() {
    const scOpenElement closed = open_.back();
    open_.pop_back();
    last_[static_cast<std::size_t>(closed.element)] = closed.before;
    return closed;
}

std::uint32_t clsOpenElements::LastOf(std::span<const Element> elements) const {
    std::uint32_t last = 0;
    for (const Element element : elements)
        last = std::max(last, last_[static_cast<std::size_t>(element)]);
    return last;
}

std::size_t clsOpenElements::DepthOf(std::span<const Element> elements,
                                     std::span<const Element> limits) const {
    const std::uint32_t last = LastOf(elements);
    return last > LastOf(limits) ? open_.size() + 1 - last : 0;
}

scOpenElement* clsOpenElements::Find(std::span<const Element> elements) {
    const std::uint32_t last = LastOf(elements);
    return last != 0 ? &open_[last - 1] : nullptr;
}

} // namespace tool::html
