// A document that fits into the room is read at once, whole. Of a larger one the page that nobody asked for
// longest gives way to the next. A read of more than a page goes past the cache, which it would only empty.
// What the file is asked for counts against what is allowed each time anew: damage that leads a reader from
// place to place ends there.
#include "docinfo/paged_source.h"

#include "docinfo/doc_info.h"

#include <algorithm>
#include <cstring>

namespace tvut {

clsPagedSource::clsPagedSource(clsRandomSource& source)
    : source_(source), size_(source.Size()), room_(std::make_unique_for_overwrite<char[]>(roomBytes)) {
    if (size_ <= roomBytes)
        ReadWhole();
}

void clsPagedSource::ReadWhole() {
    std::size_t left = source_.ReadAt(0, room_.get(), static_cast<std::size_t>(size_));
    size_ = left;
    for (std::size_t number = 0; number < pageCount; ++number) {
        pages_[number] = {number, std::min(left, pageBytes), 0};
        left -= pages_[number].filled;
    }
}

std::size_t clsPagedSource::ReadAt(std::uint64_t position, void* buffer, std::size_t bytes) {
    if (position >= size_)
        return 0;
    bytes = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, size_ - position));
    if (bytes > pageBytes && size_ > roomBytes)
        return ReadFromFile(position, buffer, bytes);
    std::size_t done = 0;
    while (done < bytes) {
        const std::uint64_t at = position + done;
        const auto within = static_cast<std::size_t>(at % pageBytes);
        const std::size_t page = PageOf(at / pageBytes);
        if (pages_[page].filled <= within)
            break; // the source has become shorter
        const std::size_t count = std::min(bytes - done, pages_[page].filled - within);
        std::memcpy(static_cast<char*>(buffer) + done, room_.get() + page * pageBytes + within, count);
        done += count;
    }
    return done;
}

std::string clsPagedSource::Read(std::uint64_t position, std::size_t bytes) {
    std::string text;
    if (position >= size_)
        return text;
    text.resize(static_cast<std::size_t>(std::min<std::uint64_t>(bytes, size_ - position)));
    text.resize(ReadAt(position, text.data(), text.size()));
    return text;
}

std::size_t clsPagedSource::ReadFromFile(std::uint64_t position, void* buffer, std::size_t bytes) {
    UtilpRequire(bytes <= allowed_, "too much to read");
    allowed_ -= bytes;
    return source_.ReadAt(position, buffer, bytes);
}

// The place of a page in the room: where it is, or where the one was that nobody asked for longest.
std::size_t clsPagedSource::PageOf(std::uint64_t number) {
    auto page = std::ranges::find(pages_, number, &scPage::number);
    if (page == pages_.end()) {
        page = std::ranges::min_element(pages_, {}, &scPage::used);
        page->number = UINT64_MAX; // until it is read
        const auto place = static_cast<std::size_t>(page - pages_.begin());
        page->filled = ReadFromFile(
            number * pageBytes, room_.get() + place * pageBytes,
            static_cast<std::size_t>(std::min<std::uint64_t>(pageBytes, size_ - number * pageBytes)));
        page->number = number;
    }
    page->used = ++clock_;
    return static_cast<std::size_t>(page - pages_.begin());
}

} // namespace tvut
