// The likely character set by its plain definition: each unit looked up in the table from its start.
#pragma once

#include <map>
#include <string_view>

namespace tvut {

inline unsigned ReferenceScripts(char16_t unit) {
    static constexpr struct {
        char16_t first, last;
        unsigned mask;
    } rows[] = {{0x0370, 0x03FF, 0x020}, {0x0400, 0x052F, 0x040}, {0x0590, 0x05FF, 0x100},
                {0x0600, 0x06FF, 0x080}, {0x0E00, 0x0E7F, 0x010}, {0x1100, 0x11FF, 0x008},
                {0x1F00, 0x1FFF, 0x020}, {0x3040, 0x30FF, 0x001}, {0x3130, 0x318F, 0x008},
                {0x3300, 0x3357, 0x001}, {0x3400, 0x4DFF, 0x008}, {0x4E00, 0x9FAF, 0x007},
                {0xAC00, 0xD7A3, 0x008}, {0xFE70, 0xFEFF, 0x080}};
    unsigned mask = 0;
    for (const auto& row : rows) {
        if (row.first > unit)
            break;
        mask = unit <= row.last ? row.mask : 0;
    }
    return mask;
}

// Of all of a text, which ends where the view does.
inline int ReferenceCharset(std::u16string_view text, unsigned codePage) {
    unsigned mask = 0;
    for (const char16_t unit : text)
        mask |= ReferenceScripts(unit);
    static const std::map<unsigned, int> byCodePage{{932, 128}, {936, 134}, {949, 129}, {950, 136}},
        byScript{{0x020, 161}, {0x040, 204}, {0x100, 177}, {0x080, 178},
                 {0x010, 222}, {0x008, 129}, {0x001, 128}};
    const bool isMixed = (mask & (mask - 1)) != 0;
    const auto& table = isMixed ? byCodePage : byScript;
    const auto row = table.find(isMixed ? codePage : mask);
    return row == table.end() ? 0 : row->second;
}

} // namespace tvut
