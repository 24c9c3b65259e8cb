// Splits and merges any texts: the input's lines are bases and the paths that are meant by somebody there.
#include "require.h"
#include "unit/path_properties.h"

#include <utility>

using namespace tvut;

namespace {

constexpr struct {
    std::u16string_view base;
    std::size_t rootComponents;
} bases[] = {
    {u"C:\\", 1},         {u"C:\\a\\..\\..\\b/c\\", 1},      {u"\\\\srv\\share", 2}, {u"//srv/share/../a", 2},
    {u"\\\\?\\C:\\a", 2}, {u"\\\\?\\UNC\\srv\\share\\a", 4}, {u"\\\\.\\x", 2}};

// What paths are made of, and what they must not be made of.
constexpr std::u16string_view parts[] = {
    u"\\", u"\\", u"\\",  u"/",   u".",     u"..", u"?",
    u"C:", u"c:", u"UNC", u"srv", u"a",     u"b",  u" ",
    u"*",  u":",  u"con", u"nul", u"x.txt", u"<",  u"a long part of a name"};

} // namespace

// Bytes, with 0x80 to 0xBF as units far beyond the letters and the rest as parts.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::u16string base, path;
    for (std::size_t at = 0; at <= size; ++at) {
        if (at < size && data[at] != '\n') {
            if (data[at] >= 0xC0)
                path += parts[data[at] % std::size(parts)];
            else
                path += static_cast<char16_t>(data[at] < 0x80 ? data[at] : data[at] + 0xD790);
            continue;
        }
        Require(FaultOfSplit(path));
        Require(FaultOfMerge(base, path));
        Require(FaultOfName(path));
        for (const auto& [folder, rootComponents] : bases)
            Require(FaultOfInside(folder, rootComponents, path));
        base = std::exchange(path, {});
    }
    return 0;
}
