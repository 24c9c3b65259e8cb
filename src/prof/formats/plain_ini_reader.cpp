// Reads .ini files as their programs do: every section is a list of the root list.
#include "prof/formats/form.h"

namespace tvut {

namespace {

std::u16string_view Trimmed(std::u16string_view text) {
    const std::size_t first = text.find_first_not_of(u" \t");
    if (first == std::u16string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(u" \t") + 1 - first);
}

} // namespace

void ProfpReadPlainIni(clsLineReader& lines, clsItemList& target, const clsLoadWarnings&) {
    clsTree& tree = *target.Tree();
    clsItemList* section = &target;
    while (lines.Next()) {
        switch (lines.First()) {
        case u'#':
        case u';':
            break;
        case u'[':
            section = tree.AppendList(target, scName(lines.HeaderName()));
            break;
        default:
            tree.AppendItem(*section, scName(Trimmed(lines.Name())), Trimmed(lines.Value()));
        }
    }
}

} // namespace tvut
