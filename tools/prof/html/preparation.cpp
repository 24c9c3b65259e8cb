// The page is read once, from tag to tag. A start tag first closes what HTML closes before it; an end tag
// closes all down to its own element, unless that lies outside of the table cell or list in which the tag
// stands. That an element begins a line or a paragraph is said by the table of elements. What else a tag does
// is a function in the table of BeginningOf, and what its element's end does is in Closed.
#include "preparation.h"

#include "attributes.h"
#include "characters.h"
#include "chosen_option.h"
#include "element_sets.h"
#include "link_list.h"
#include "list_marker.h"
#include "open_elements.h"
#include "page_writer.h"
#include "references.h"
#include "tokenizer.h"

#include <algorithm>
#include <array>

namespace tool::html {

namespace {

constexpr std::size_t indentOfParts = 4;               // quotations, descriptions
constexpr std::int32_t greatestNumber = 1'000'000'000; // of an item, lest counting on overflows

constexpr std::u16string_view rule = u"--------------------";

// What a row knows of its last cell.
enum : std::int32_t { noCell, cellOfOneLine, cellOfLines };

std::int32_t NumberOf(std::u16string_view text, std::int32_t otherwise) {
    text = Trimmed(text);
    const bool negative = text.starts_with(u'-');
    std::int32_t number = 0;
    std::size_t at = negative;
    for (; at < text.size() && IsDigit(text[at]) && number < greatestNumber / 10; ++at)
        number = number * 10 + (text[at] - u'0');
    if (at == static_cast<std::size_t>(negative))
        return otherwise;
    return negative ? -number : number;
}

// The name of a file without folders and ending.
std::u16string_view BareName(std::u16string_view address) {
    address = address.substr(0, address.find_first_of(u"?#"));
    address.remove_prefix(address.find_last_of(u'/') + 1);
    return address.substr(0, address.find_last_of(u'.'));
}

class clsPreparation {
  public:
    clsPreparation(std::u16string_view page, Links links)
        : tokens_(page), writer_(page.size() + page.size() / 8), links_(links) {}

    std::u16string Run();

  private:
    void Text(std::u16string_view text);
    void Contents(Token kind, std::u16string_view text);
    void Start();
    void Begin(Element element);
    void End(Element element);

    void CloseBefore(Closing closing);
    void CloseSelectBefore(Element element);
    void CloseInnermost(std::span<const Element> elements, std::span<const Element> limits);
    void Close();
    void Closed(const scOpenElement& closed);
    void Separate(Element element);
    void IndentBy(scOpenElement& open, std::size_t columns);

    // What tags do beside setting off what they hold.
    using Beginning = void (clsPreparation::*)(scOpenElement& open);
    struct scBeginning;
    static Beginning BeginningOf(Element element);
    void BeginLink(scOpenElement&);
    void BeginIndented(scOpenElement& open);
    void BreakLine(scOpenElement&);
    void BeginHidden(scOpenElement&);
    void BeginList(scOpenElement& open);
    void BeginItem(scOpenElement& open);
    void BeginPreformatted(scOpenElement&);
    void BeginQuote(scOpenElement&);
    void BeginSelect(scOpenElement&);
    void BeginSuperscript(scOpenElement&);
    void BeginTable(scOpenElement&);
    void BeginCell(scOpenElement& open);
    void Image(scOpenElement&);
    void Input(scOpenElement&);
    void Option(scOpenElement&);
    void Rule(scOpenElement&);

    void BeginRowOfCell();
    void EndCell(const scOpenElement& cell);
    void EndLink();
    void EndSelect();

    std::u16string_view Resolved(std::u16string_view text, html::Place place);
    std::u16string_view Attribute(std::u16string_view name); // resolved; empty: there is none

    clsTokenizer tokens_;
    clsPageWriter writer_;
    clsLinkList links_;
    clsOpenElements open_;
    std::size_t indent_ = 0;
    std::size_t lists_ = 0; // that are open, as are those below
    std::size_t tables_ = 0;
    std::size_t preformatted_ = 0;
    std::size_t hidden_ = 0;
    bool afterPre_ = false; // a line end that comes next is none of the text

    bool inLink_ = false;
    std::size_t linkDepth_ = 0; // how many elements were open when it began
    std::u16string address_;

    clsChosenOption option_;
    std::u16string resolved_;
};

std::u16string clsPreparation::Run() {
    while (tokens_.Next()) {
        const bool afterPre = std::exchange(afterPre_, false);
        std::u16string_view text = tokens_.Text();
        switch (tokens_.Kind()) {
        case Token::start:
            Start();
            break;
        case Token::end:
            End(FindElement(text));
            break;
        case Token::text:
            if (afterPre)
                text.remove_prefix(text.starts_with(u"\r\n") ? 2 : text.starts_with(u'\n'));
            Text(Resolved(text, Place::text));
            break;
        default:
            Contents(tokens_.Kind(), text);
        }
    }
    while (open_.Count() > 0)
        Close();
    EndLink();
    links_.WriteList(writer_);
    return writer_.Take();
}

void clsPreparation::Text(std::u16string_view text) {
    if (hidden_ > 0 || option_.HidesText())
        return;
    if (preformatted_ > 0)
        writer_.Preformatted(text);
    else
        writer_.Text(text);
}

void clsPreparation::Contents(Token kind, std::u16string_view text) {
    if (kind == Token::literal) {
        Text(text);
    } else if (kind == Token::textArea) {
        Text(Resolved(text, Place::text));
    } else if (kind == Token::preformatted) {
        Begin(Element::pre);
        Text(text);
        End(Element::pre);
    }
}

void clsPreparation::Separate(Element element) {
    const Space space = ElementOf(element).space;
    const bool isInner = (lists_ > 0 && IsList(element)) || (tables_ > 0 && element == Element::table);
    if (space == Space::paragraph && !isInner)
        writer_.EndParagraph();
    else if (space != Space::none)
        writer_.EndLine();
}

// ---- What is open ----------------------------------------------------------------------------------------

void clsPreparation::CloseBefore(Closing closing) {
    constexpr std::array paragraph{Element::p};
    constexpr std::array item{Element::li};
    constexpr std::array term{Element::dt, Element::dd};
    switch (closing) {
    case Closing::none:
        return;
    case Closing::paragraph:
        return CloseInnermost(paragraph, cells);
    case Closing::item:
        CloseInnermost(paragraph, cells);
        return CloseInnermost(item, limitsOfItems);
    case Closing::term:
        CloseInnermost(paragraph, cells);
        return CloseInnermost(term, limitsOfTerms);
    case Closing::cell:
        return CloseInnermost(cells, tables);
    case Closing::row:
        return CloseInnermost(rows, tables);
    }
}

// Options hold texts: a <select> that is never closed ends where something else begins or ends, so that it
// hides no more than texts. A link within would be taken back with an option.
void clsPreparation::CloseSelectBefore(Element element) {
    constexpr std::array select{Element::select};
    const bool isSetOff = ElementOf(element).space != Space::none && element != Element::hr;
    if (isSetOff || element == Element::a || element == Element::input || element == Element::select)
        CloseInnermost(select, {});
}

void clsPreparation::CloseInnermost(std::span<const Element> elements, std::span<const Element> limits) {
    for (std::size_t depth = open_.DepthOf(elements, limits); depth > 0; --depth)
        Close();
}

void clsPreparation::Close() {
    const scOpenElement closed = open_.Close();
    if (inLink_ && open_.Count() < linkDepth_)
        EndLink();
    indent_ -= closed.indent;
    writer_.Indent(indent_);
    Closed(closed);
    Separate(closed.element);
}

void clsPreparation::Closed(const scOpenElement& closed) {
    const Element element = closed.element;
    if (IsList(element))
        --lists_;
    else if (element == Element::table)
        --tables_;
    else if (IsPreformatted(element))
        --preformatted_;
    else if (IsHidden(element))
        --hidden_;
    else if (element == Element::li)
        writer_.EndItem();
    else if (IsCell(element))
        EndCell(closed);
    else if (element == Element::tr)
        writer_.EndRow();
    else if (element == Element::select)
        EndSelect();
}

void clsPreparation::End(Element element) {
    const scElement& known = ElementOf(element);
    if (hidden_ > 0 && !IsHidden(element))
        return;
    CloseSelectBefore(element);
    if (element == Element::a)
        EndLink();
    else if (element == Element::br)
        Begin(element);
    else if (element == Element::q)
        Text(u"\u201D");
    else if (known.holds)
        CloseInnermost(EndedBy(element), LimitsOf(element));
    if (!known.holds || element == Element::p) // closing has set it off
        Separate(element);
}

// ---- What begins -----------------------------------------------------------------------------------------

void clsPreparation::Start() {
    const Element element = FindElement(tokens_.Text());
    if (hidden_ > 0 && !IsHidden(element))
        return;
    CloseSelectBefore(element);
    CloseBefore(ElementOf(element).closing);
    Separate(element);
    Begin(element);
}

void clsPreparation::Begin(Element element) {
    if (IsCell(element))
        BeginRowOfCell();
    scOpenElement none{};
    scOpenElement& open = ElementOf(element).holds ? open_.Open(element) : none;
    if (const auto begin = BeginningOf(element))
        (this->*begin)(open);
}

void clsPreparation::IndentBy(scOpenElement& open, std::size_t columns) {
    open.indent = static_cast<std::uint32_t>(columns);
    indent_ += columns;
    writer_.Indent(indent_);
}

struct clsPreparation::scBeginning {
    Element element;
    Beginning begin;
};

clsPreparation::Beginning clsPreparation::BeginningOf(Element element) {
    static constexpr scBeginning beginnings[] = {
        {Element::a, &clsPreparation::BeginLink},
        {Element::blockquote, &clsPreparation::BeginIndented},
        {Element::br, &clsPreparation::BreakLine},
        {Element::datalist, &clsPreparation::BeginHidden},
        {Element::dd, &clsPreparation::BeginIndented},
        {Element::dir, &clsPreparation::BeginList},
        {Element::dl, &clsPreparation::BeginList},
        {Element::hr, &clsPreparation::Rule},
        {Element::img, &clsPreparation::Image},
        {Element::input, &clsPreparation::Input},
        {Element::li, &clsPreparation::BeginItem},
        {Element::listing, &clsPreparation::BeginPreformatted},
        {Element::menu, &clsPreparation::BeginList},
        {Element::ol, &clsPreparation::BeginList},
        {Element::option, &clsPreparation::Option},
        {Element::pre, &clsPreparation::BeginPreformatted},
        {Element::q, &clsPreparation::BeginQuote},
        {Element::select, &clsPreparation::BeginSelect},
        {Element::sup, &clsPreparation::BeginSuperscript},
        {Element::table, &clsPreparation::BeginTable},
        {Element::td, &clsPreparation::BeginCell},
        {Element::templates, &clsPreparation::BeginHidden},
        {Element::th, &clsPreparation::BeginCell},
        {Element::ul, &clsPreparation::BeginList},
    };
    static constexpr auto byElement = [] {
        std::array<Beginning, elementCount + 1> all{};
        for (const scBeginning& row : beginnings)
            all[static_cast<std::size_t>(row.element)] = row.begin;
        return all;
    }();
    return byElement[static_cast<std::size_t>(element)];
}

void clsPreparation::BeginIndented(scOpenElement& open) {
    IndentBy(open, indentOfParts);
}

void clsPreparation::BreakLine(scOpenElement&) {
    if (preformatted_ > 0)
        Text(u"\n");
    else
        writer_.BreakLine();
}

void clsPreparation::BeginHidden(scOpenElement&) {
    ++hidden_;
}

void clsPreparation::BeginPreformatted(scOpenElement&) {
    ++preformatted_;
    afterPre_ = true;
}

void clsPreparation::BeginQuote(scOpenElement&) {
    Text(u"\u201C");
}

void clsPreparation::BeginSuperscript(scOpenElement&) {
    Text(u"^"); // 10^6 is not 106
}

void clsPreparation::Rule(scOpenElement&) {
    Text(rule);
    writer_.EndLine();
}

// ---- Lists -----------------------------------------------------------------------------------------------

void clsPreparation::BeginList(scOpenElement& open) {
    ++lists_;
    const std::u16string_view style = Attribute(u"type");
    open.style = style.size() == 1 ? style[0] : u'1';
    open.number = NumberOf(Attribute(u"start"), 1);
}

void clsPreparation::BeginItem(scOpenElement& open) {
    std::u16string marker;
    scOpenElement* const list = open_.Find(itemLists);
    if (list && list->element == Element::ol) {
        const std::int32_t number = NumberOf(Attribute(u"value"), list->number);
        list->number = std::min(number, greatestNumber) + 1;
        marker = ListMarker(number, list->style);
    }
    const std::size_t width = marker.empty() ? 2 : marker.size() + 1;
    writer_.BeginItem(std::move(marker));
    IndentBy(open, width);
}

// ---- Tables ----------------------------------------------------------------------------------------------

void clsPreparation::BeginTable(scOpenElement&) {
    ++tables_;
}

void clsPreparation::BeginRowOfCell() {
    constexpr std::array row{Element::tr};
    if (open_.DepthOf(row, tables) > 0)
        return;
    writer_.EndLine();
    open_.Open(Element::tr);
}

void clsPreparation::BeginCell(scOpenElement& open) {
    constexpr std::array row{Element::tr};
    const std::int32_t before = open_.Find(row)->number;
    if (before == cellOfOneLine)
        writer_.SeparateCell();
    else if (before == cellOfLines)
        writer_.EndLine();
    writer_.BeginCell();
    open.number = writer_.LinesBeforeNext();
}

// Another cell goes on in the line where this one has stood, unless it had lines of its own.
void clsPreparation::EndCell(const scOpenElement& cell) {
    constexpr std::array row{Element::tr};
    writer_.EndCell();
    const std::int32_t lines = writer_.LinesBefore() - cell.number;
    if (lines == 0)
        writer_.DropLineEnds();
    open_.Find(row)->number = lines > 0 ? cellOfLines : cellOfOneLine;
}

// ---- Links, pictures, forms ------------------------------------------------------------------------------

void clsPreparation::BeginLink(scOpenElement&) {
    EndLink();
    address_ = Trimmed(Attribute(u"href"));
    std::erase_if(address_, [](char16_t c) { return c == u'\n' || c == u'\r' || c == u'\t'; });
    inLink_ = true;
    linkDepth_ = open_.Count();
    writer_.BeginLink();
}

void clsPreparation::EndLink() {
    if (std::exchange(inLink_, false))
        links_.End(writer_, address_);
}

void clsPreparation::Image(scOpenElement&) {
    if (AttributeOf(tokens_.Attributes(), u"alt")) {
        Text(Attribute(u"alt"));
        return;
    }
    const std::u16string_view address = Attribute(u"src");
    const std::u16string_view name = BareName(address);
    if (!name.empty() && !address.starts_with(u"data:"))
        Text(u"[" + std::u16string(name) + u"]");
}

void clsPreparation::Input(scOpenElement&) {
    const std::u16string_view type = AttributeOf(tokens_.Attributes(), u"type").value_or(u"text");
    if (IsSame(type, u"hidden") || IsSame(type, u"password"))
        return;
    if (IsSame(type, u"checkbox") || IsSame(type, u"radio")) {
        Text(AttributeOf(tokens_.Attributes(), u"checked") ? u"[x]" : u"[ ]");
        return;
    }
    const std::u16string_view text = Attribute(IsSame(type, u"image") ? u"alt" : u"value");
    if (!text.empty())
        Text(u"[" + std::u16string(text) + u"]");
}

void clsPreparation::BeginSelect(scOpenElement&) {
    Text(u" ");
    option_.BeginSelect(writer_);
}

void clsPreparation::EndSelect() {
    option_.EndSelect();
    Text(u" ");
}

void clsPreparation::Option(scOpenElement&) {
    constexpr std::array select{Element::select};
    if (open_.Find(select))
        option_.BeginOption(AttributeOf(tokens_.Attributes(), u"selected").has_value(), writer_);
    else
        writer_.EndLine();
}

std::u16string_view clsPreparation::Attribute(std::u16string_view name) {
    return Resolved(AttributeOf(tokens_.Attributes(), name).value_or(u""), Place::attribute);
}

std::u16string_view clsPreparation::Resolved(std::u16string_view text, html::Place place) {
    resolved_.clear();
    AppendResolved(resolved_, text, place);
    return resolved_;
}

} // namespace

std::u16string PreparedPage(std::u16string_view page, Links links) {
    return clsPreparation(page, links).Run();
}

} // namespace tool::html
