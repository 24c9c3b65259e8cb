// Steps over what may come before the first element, one piece at a time, and takes the name in its tag.
// Nothing else is read: a file that is cut off within a piece has no root.
#include "markup_root.h"

#include <algorithm>

namespace tool::prof {

namespace {

constexpr std::string_view blanks = " \t\r\n";

void Skip(std::string_view& text, std::size_t count) {
    text.remove_prefix(std::min(count, text.size()));
}

void SkipPast(std::string_view& text, std::string_view end) {
    const std::size_t at = text.find(end);
    Skip(text, at == std::string_view::npos ? text.size() : at + end.size());
}

// A document type may hold declarations of its own, in brackets.
void SkipDeclaration(std::string_view& text) {
    const std::size_t inner = text.substr(0, text.find('>')).find('[');
    if (inner != std::string_view::npos)
        SkipPast(text, "]");
    SkipPast(text, ">");
}

} // namespace

std::string_view MarkupRoot(std::string_view text) {
    for (;;) {
        Skip(text, std::min(text.find_first_not_of(blanks), text.size()));
        if (text.starts_with("<?"))
            SkipPast(text, "?>");
        else if (text.starts_with("<!--"))
            SkipPast(text, "-->");
        else if (text.starts_with("<!"))
            SkipDeclaration(text);
        else
            break;
    }
    if (!text.starts_with('<'))
        return {};
    text.remove_prefix(1);
    return text.substr(0, std::min(text.find_first_of(" \t\r\n/>"), text.size()));
}

} // namespace tool::prof
