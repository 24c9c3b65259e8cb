// The likely character set by its plain definition: each unit looked up in the table from its start.
#pragma once

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
    if ((mask & (mask - 1)) != 0)
        return codePage == 932   ? 128
               : codePage == 936 ? 134
               : codePage == 949 ? 129
               : codePage == 950 ? 136
                                 : 0;
    switch (mask) {
    case 0x020:
        return 161;
    case 0x040:
        return 204;
    case 0x100:
        return 177;
    case 0x080:
        return 178;
    case 0x010:
        return 222;
    case 0x008:
        return 129;
    case 0x001:
        return 128;
    default:
        return 0;
    }
}

} // namespace tvut
