// An image whose functions have a table of frames: a page of headers, one with the table, then the code.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace tvut {

struct scTableFunction {
    std::uint32_t begin, bytes; // from the beginning of the image
    std::string program;
};

constexpr std::uint32_t tableAt = 4096, imageCodeAt = 8192;

// The augmentation "zR" with relative pointers; the frame begins above the return address.
inline const std::string usualCommon("\0\0\0\0\1zR\0\1\x7C\x08\1\x1B\x0C\4\4\x88\1\0\0", 20);

inline void PutWords(std::string& image, std::size_t at, std::initializer_list<std::uint32_t> words) {
    for (const std::uint32_t word : words) {
        std::memcpy(&image[at], &word, sizeof word);
        at += sizeof word;
    }
}

inline std::string FrameTableImage(const std::vector<scTableFunction>& functions,
                                   const std::string& common = usualCommon) {
    std::string image(imageCodeAt, '\0');
    PutWords(image, 0, {0x5A4D});
    PutWords(image, 0x3C, {0x80});
    PutWords(image, 0x80, {0x4550, 0x0002014C}); // two sections
    PutWords(image, 0x94, {0xE0, 0x10B});        // the size of the optional header, which follows
    PutWords(image, 0x80 + 80, {3 * 4096});      // of the image
    image.replace(0x178, 8, "/4\0\0\0\0\0\0", 8);
    PutWords(image, 0x180, {4096, imageCodeAt}); // code where a table might be
    image.replace(0x1A0, 8, ".eh_frame", 8);
    PutWords(image, 0x1A8, {4096, tableAt});
    std::uint32_t at = tableAt;
    const auto add = [&](const std::string& entry) {
        PutWords(image, at, {static_cast<std::uint32_t>(entry.size())});
        image.replace(at + 4, entry.size(), entry);
        at += 4 + static_cast<std::uint32_t>(entry.size());
    };
    add(common);
    for (const scTableFunction& function : functions) {
        add(std::string(13, '\0') + function.program);
        const auto entry = at - static_cast<std::uint32_t>(13 + function.program.size());
        PutWords(image, entry, {entry - tableAt, function.begin - entry - 4, function.bytes});
    }
    return image;
}

} // namespace tvut
