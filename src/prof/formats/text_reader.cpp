// Reads the text form: "[name]" and a block in braces a list, name=value an item.
//
// Files that other programs wrote as plain sections are read too: there no brace closes a list, so
// each header opens one inside the list before it.
#include "prof/formats/form.h"
#include "prof/formats/text_marks.h"
#include "prof/formats/tree_builder.h"

#include <string>

namespace tvut {

namespace {

constexpr std::u16string_view rootHeader = u"[/]";

// Skips to a header. The first one of a file is the root's own, or that of the first section of a file
// that has no root: it creates nothing.
bool FindHeader(clsLineReader& lines) {
    while (lines.Next()) {
        if (lines.First() == u'[')
            return true;
    }
    return false;
}

class clsTextParser {
  public:
    clsTextParser(clsLineReader& lines, clsItemList& target) : lines_(lines), tree_(target) {}

    // Reads to the line that ends the list, or to the end of the text.
    void ParseList() {
        while (lines_.Next(areNamesPlain_ ? tree_.ExpectedName() : std::u16string_view())) {
            if (lines_.HasExpectedName()) {
                tree_.AppendExpected(Value());
                continue;
            }
            switch (lines_.First()) {
            case u'#':
            case u';':
            case u'{':
                break;
            case u'[':
                tree_.BeginList(lines_.HeaderName());
                break;
            case u'}':
                if (tree_.AtTop())
                    return;
                tree_.EndList();
                break;
            default:
                AppendItem();
            }
        }
    }

  private:
    void AppendItem() {
        std::u16string_view name = lines_.Name();
        if (lines_.Marked()) {
            name = Unmarked(name, name_, ProfpUnmarkInName);
            areNamesPlain_ &= name == lines_.Name();
        }
        tree_.AppendItem(name, Value());
    }

    std::u16string_view Value() {
        const std::u16string_view value = lines_.Value();
        return lines_.Marked() ? Unmarked(value, value_, ProfpUnmarkInValue) : value;
    }

    static std::u16string_view Unmarked(std::u16string_view text, std::u16string& buffer,
                                        char16_t (*unmark)(char16_t)) {
        buffer.assign(text);
        for (char16_t& c : buffer)
            c = unmark(c);
        return buffer;
    }

    clsLineReader& lines_;
    clsTreeBuilder tree_;
    bool areNamesPlain_ = true; // each stood in the text as it is
    std::u16string name_;
    std::u16string value_;
};

} // namespace

// After the root's closing brace another root may follow, which is read into the same list; any other header
// there is a list of it.
void ProfpReadText(clsLineReader& lines, clsItemList& target, const clsLoadWarnings&) {
    for (bool first = true; FindHeader(lines); first = false) {
        if (!first && lines.Line() != rootHeader)
            lines.Unread();
        clsTextParser(lines, target).ParseList();
    }
}

// Lines before the root are skipped, markup among them. With no root at all it is some other program's file,
// and an empty profile.
void ProfpReadTextAfterMarkup(clsLineReader& lines, clsItemList& target, const clsLoadWarnings& warnings) {
    while (lines.Next()) {
        if (lines.Line() == rootHeader) {
            lines.Unread();
            return ProfpReadText(lines, target, warnings);
        }
    }
    warnings.Tell(u"markup that is no profile of ours");
}

} // namespace tvut
