// The file passes through a window, whose parts overlap: what is found in the middle of one has some bytes on
// either side. An object is recognised by the word obj after two numbers; what it is, by names soon after.
#include "docinfo/pdf_heads.h"

#include "docinfo/pdf_syntax.h"

#include <algorithm>
#include <utility>

namespace tvut {

namespace {

constexpr std::size_t windowBytes = 64 * 1024, marginBytes = 512, bodyBytes = 256;

constexpr bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Passes over what stands before a place and fulfils a condition; returns where it begins.
template <class Condition>
std::size_t Back(std::string_view text, std::size_t at, Condition condition) {
    while (at > 0 && condition(text[at - 1]))
        --at;
    return at;
}

// Where the object begins whose word obj stands at a place; npos: it is no object's.
std::size_t HeadBefore(std::string_view text, std::size_t word) {
    const std::size_t generationEnd = Back(text, word, UtilpIsPdfSpace);
    const std::size_t generation = Back(text, generationEnd, IsDigit);
    const std::size_t numberEnd = Back(text, generation, UtilpIsPdfSpace);
    const std::size_t number = Back(text, numberEnd, IsDigit);
    const bool isOne = generation != generationEnd && number != numberEnd && numberEnd != generation;
    return isOne && numberEnd - number < 10 ? number : text.npos;
}

void AddLast(std::vector<std::uint64_t>& places, std::uint64_t place, std::size_t most) {
    if (places.size() == most)
        places.erase(places.begin());
    places.push_back(place);
}

} // namespace

void clsPdfHeads::Search(clsPagedSource& source) {
    const std::uint64_t end = std::min(source.Size(), mostBytes);
    std::size_t before = 0; // bytes of the window that were looked at, kept for what stands before a word
    for (std::uint64_t position = 0; position < end;) {
        const std::string window = source.Read(position - before, windowBytes);
        const bool isLast = position - before + window.size() >= end || window.size() < windowBytes;
        const std::size_t to = isLast ? window.size() : window.size() - marginBytes;
        if (window.size() <= before)
            break;
        SearchHeads(window, before, to, position - before);
        SearchTrailers(window, before, to, position - before);
        if (isLast)
            break;
        position += to - before;
        before = marginBytes;
    }
    std::ranges::sort(heads_, {}, [](const scHead& head) { return std::pair(head.number, head.position); });
    for (auto* positions : {&objectStreams_, &trailers_, &crossReferences_, &catalogues_})
        std::ranges::reverse(*positions);
}

void clsPdfHeads::SearchHeads(std::string_view window, std::size_t from, std::size_t to,
                              std::uint64_t position) {
    constexpr std::string_view word = "obj";
    for (std::size_t at = window.find(word, from); at < to; at = window.find(word, at + word.size())) {
        const std::size_t head = HeadBefore(window, at);
        if (head == window.npos)
            continue;
        clsPdfLexer lexer(window, head);
        lexer.Next();
        TakeHead(window.substr(at, bodyBytes), static_cast<std::uint32_t>(lexer.Number()), position + head);
    }
}

void clsPdfHeads::TakeHead(std::string_view body, std::uint32_t number, std::uint64_t position) {
    body = body.substr(0, std::min(body.find("endobj"), body.find("stream")));
    if (heads_.size() < mostHeads)
        heads_.push_back({number, static_cast<std::uint32_t>(position)});
    if (body.find("/ObjStm") != body.npos && objectStreams_.size() < mostStreams)
        objectStreams_.push_back(position);
    if (body.find("/XRef") != body.npos)
        AddLast(crossReferences_, position, mostTrailers);
    if (body.find("/Catalog") != body.npos)
        AddLast(catalogues_, position, mostTrailers);
}

void clsPdfHeads::SearchTrailers(std::string_view window, std::size_t from, std::size_t to,
                                 std::uint64_t position) {
    constexpr std::string_view word = "trailer";
    for (std::size_t at = window.find(word, from); at < to; at = window.find(word, at + word.size()))
        AddLast(trailers_, position + at + word.size(), mostTrailers);
}

std::optional<std::uint64_t> clsPdfHeads::Find(std::uint32_t number) const {
    const auto after = std::ranges::upper_bound(heads_, number, {}, &scHead::number);
    if (after == heads_.begin() || after[-1].number != number)
        return {};
    return after[-1].position;
}

} // namespace tvut
