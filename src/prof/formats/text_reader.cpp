// Reads the text form: "[name]" and a block in braces a list, name=value an item.
//
// Files that other programs wrote as plain sections are read too: there no brace closes a list, so
// each header opens one inside the list before it.
#include "prof/formats/form.h"
#include "prof/formats/text_marks.h"

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
    explicit clsTextParser(clsLineReader& lines) : lines_(lines) {}

    // Reads to the line that ends the list, or to the end of the text.
    void ParseList(clsItemList& target) {
        clsItemList* list = &target;
        while (lines_.Next()) {
            switch (lines_.First()) {
            case u'#':
            case u';':
            case u'{':
                break;
            case u'[':
                list = list->Tree()->AppendList(*list, scName(lines_.HeaderName()));
                break;
            case u'}':
                if (list == &target)
                    return;
                model_ = list;
                list = list->Parent();
                break;
            default:
                AppendItem(*list);
            }
        }
    }

  private:
    void AppendItem(clsItemList& list) {
        std::u16string_view name = lines_.Name();
        std::u16string_view value = lines_.Value();
        if (lines_.Marked()) {
            name = Unmarked(name, name_, ProfpUnmarkInName);
            value = Unmarked(value, value_, ProfpUnmarkInValue);
        }
        if (const clsItem* const alike = ModelOf(list, name))
            list.Tree()->AppendItem(list, *alike, value);
        else
            list.Tree()->AppendItem(list, scName(name), value);
    }

    // Lists beside each other tend to hold items of the same names in the same order: the item at the
    // same place of the list before, if its name is the same, saves hashing and looking for it.
    const clsItem* ModelOf(const clsItemList& list, std::u16string_view name) const {
        if (!model_ || list.End() >= model_->End())
            return nullptr;
        const clsItem& candidate = model_->At(list.End());
        return candidate.IsItem() && UtilpEqual(candidate.Name(), name) ? &candidate : nullptr;
    }

    static std::u16string_view Unmarked(std::u16string_view text, std::u16string& buffer,
                                        char16_t (*unmark)(char16_t)) {
        buffer.assign(text);
        for (char16_t& c : buffer)
            c = unmark(c);
        return buffer;
    }

    clsLineReader& lines_;
    const clsItemList* model_ = nullptr; // the list that ended last
    std::u16string name_;
    std::u16string value_;
};

class clsTextReader final : public IclsFormReader {
  public:
    // Behind the root's closing brace another root may follow, which is read into the same list; any other
    // header there is a list of it.
    void Parse(clsLineReader& lines, clsItemList& target) const override {
        for (bool first = true; FindHeader(lines); first = false) {
            if (!first && lines.Line() != rootHeader)
                lines.Unread();
            clsTextParser(lines).ParseList(target);
        }
    }
};

const clsTextReader textReader;

} // namespace

const IclsFormReader& g_textReader = textReader;

} // namespace tvut
