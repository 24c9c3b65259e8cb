// A value's nodes stand together: an array is followed by what is in it, so whoever passes over a value goes
// to its end at once, and nesting of any depth is a list of the values that are still open. The texts of
// names and strings stand in one string.
//
// "12 0 R" is seen at its end: the two numbers before the R become a reference.
#include "docinfo/pdf_syntax.h"

#include "text/digits.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr bool IsDelimiter(char c) {
    return std::string_view("()<>[]{}/%").find(c) != std::string_view::npos;
}
constexpr bool IsRegular(char c) {
    return !UtilpIsPdfSpace(c) && !IsDelimiter(c);
}
unsigned HexOf(char c) {
    return UtilpDigitOf(static_cast<unsigned char>(c));
}

// What is no number of up to 18 digits is a real one, or a word.
std::optional<std::int64_t> IntegerOf(std::string_view word) {
    const bool isSigned = word.starts_with('-') || word.starts_with('+');
    const std::string_view digits = word.substr(isSigned ? 1 : 0);
    if (digits.empty() || digits.size() > 18)
        return {};
    std::int64_t number = 0;
    for (const char c : digits) {
        if (c < '0' || c > '9')
            return {};
        number = number * 10 + (c - '0');
    }
    return word.front() == '-' ? -number : number;
}

// #41 is A.
void AppendName(std::string& to, std::string_view name) {
    for (std::size_t at = 0; at < name.size(); ++at) {
        const bool isNumber =
            name[at] == '#' && at + 2 < name.size() && HexOf(name[at + 1]) < 16 && HexOf(name[at + 2]) < 16;
        to += isNumber ? static_cast<char>(HexOf(name[at + 1]) * 16 + HexOf(name[at + 2])) : name[at];
        at += isNumber ? 2 : 0;
    }
}

void AppendHex(std::string& to, std::string_view hex) {
    unsigned value = 1; // with a mark above the digits
    for (const char c : hex) {
        if (HexOf(c) >= 16)
            continue;
        value = value << 4 | HexOf(c);
        if (value >= 0x100) {
            to += static_cast<char>(value & 0xFF);
            value = 1;
        }
    }
    if (value != 1) // the last digit is taken for 0
        to += static_cast<char>(value << 4 & 0xFF);
}

// After a backslash: returns how many characters belong to it.
std::size_t AppendEscape(std::string& to, std::string_view rest) {
    constexpr std::string_view marks = "nrtbf", characters = "\n\r\t\b\f";
    if (rest.empty())
        return 0;
    if (const std::size_t mark = marks.find(rest[0]); mark != marks.npos) {
        to += characters[mark];
        return 1;
    }
    if (rest.starts_with("\r\n")) // a line that goes on
        return 2;
    if (rest[0] == '\r' || rest[0] == '\n')
        return 1;
    std::size_t digits = 0;
    unsigned value = 0;
    for (; digits < std::min<std::size_t>(rest.size(), 3) && rest[digits] >= '0' && rest[digits] <= '7';
         ++digits)
        value = value * 8 + static_cast<unsigned>(rest[digits] - '0');
    to += digits != 0 ? static_cast<char>(value & 0xFF) : rest[0];
    return std::max<std::size_t>(digits, 1);
}

void AppendString(std::string& to, std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const char c = text[at++];
        if (c == '\\') {
            at += AppendEscape(to, text.substr(at));
            continue;
        }
        to += c == '\r' ? '\n' : c; // whatever ends a line
        at += c == '\r' && text.substr(at).starts_with('\n') ? 1 : 0;
    }
}

} // namespace

PdfToken clsPdfLexer::Next() {
    SkipSpace();
    if (RanOut())
        return PdfToken::end;
    const bool isDouble = at_ + 1 < bytes_.size() && bytes_[at_ + 1] == bytes_[at_];
    switch (bytes_[at_]) {
    case '[':
        ++at_;
        return PdfToken::openArray;
    case ']':
        ++at_;
        return PdfToken::close;
    case '(':
        return ReadString();
    case '<':
        if (!isDouble)
            return ReadHexString();
        at_ += 2;
        return PdfToken::openDictionary;
    case '>':
        if (!isDouble)
            return ReadWord();
        at_ += 2;
        return PdfToken::close;
    default:
        return ReadWord();
    }
}

void clsPdfLexer::SkipSpace() {
    while (at_ < bytes_.size()) {
        if (bytes_[at_] == '%')
            at_ = std::min(bytes_.find_first_of("\r\n", at_), bytes_.size());
        else if (UtilpIsPdfSpace(bytes_[at_]))
            ++at_;
        else
            return;
    }
}

PdfToken clsPdfLexer::ReadWord() {
    const bool isName = bytes_[at_] == '/';
    const std::size_t start = isName ? ++at_ : at_;
    while (at_ < bytes_.size() && IsRegular(bytes_[at_]))
        ++at_;
    if (at_ == start && !isName)
        ++at_; // a delimiter that means nothing here
    text_ = bytes_.substr(start, at_ - start);
    if (isName)
        return PdfToken::name;
    if (const auto number = IntegerOf(text_)) {
        number_ = *number;
        return PdfToken::integer;
    }
    return text_.find_first_not_of("+-.0123456789") == text_.npos ? PdfToken::real : PdfToken::keyword;
}

PdfToken clsPdfLexer::ReadString() {
    const std::size_t start = ++at_;
    for (std::size_t depth = 1; at_ < bytes_.size(); ++at_) {
        if (bytes_[at_] == '\\')
            ++at_;
        else if (bytes_[at_] == '(')
            ++depth;
        else if (bytes_[at_] == ')' && --depth == 0)
            break;
    }
    at_ = std::min(at_, bytes_.size());
    text_ = bytes_.substr(start, at_ - start);
    at_ = std::min(at_ + 1, bytes_.size());
    return PdfToken::string;
}

PdfToken clsPdfLexer::ReadHexString() {
    const std::size_t start = ++at_;
    const std::size_t end = std::min(bytes_.find('>', start), bytes_.size());
    text_ = bytes_.substr(start, end - start);
    at_ = std::min(end + 1, bytes_.size());
    return PdfToken::hexString;
}

std::optional<std::size_t> clsPdfObject::Parse(std::string_view bytes, bool isAll) {
    nodes_.clear();
    open_.clear();
    text_.clear();
    integers_ = 0;
    clsPdfLexer lexer(bytes);
    std::size_t end = 0;
    for (;;) {
        const PdfToken token = lexer.Next();
        if (lexer.RanOut() && !isAll)
            return {};
        if (token == PdfToken::end || nodes_.size() >= mostNodes)
            break;
        // Marks that an object is over, whatever is open; who reads on wants to see them.
        if (token == PdfToken::keyword && (lexer.Text() == "endobj" || lexer.Text() == "stream"))
            break;
        end = lexer.At();
        if (Take(token, lexer) == Step::done)
            break;
    }
    while (!open_.empty())
        CloseLast();
    if (nodes_.empty())
        Append(PdfKind::none);
    return end;
}

auto clsPdfObject::Take(PdfToken token, const clsPdfLexer& lexer) -> Step {
    switch (token) {
    case PdfToken::openArray:
    case PdfToken::openDictionary:
        open_.push_back(static_cast<std::uint32_t>(nodes_.size()));
        Append(token == PdfToken::openArray ? PdfKind::array : PdfKind::dictionary);
        break;
    case PdfToken::close:
        if (!open_.empty())
            CloseLast();
        break;
    case PdfToken::integer:
        Append(PdfKind::integer, lexer.Number());
        break;
    case PdfToken::name:
        AppendText(PdfKind::name, token, lexer.Text());
        break;
    case PdfToken::string:
    case PdfToken::hexString:
        AppendText(PdfKind::string, token, lexer.Text());
        break;
    case PdfToken::keyword:
        TakeKeyword(lexer.Text());
        break;
    default:
        Append(PdfKind::other);
        break;
    }
    integers_ = token == PdfToken::integer ? integers_ + 1 : 0;
    return open_.empty() ? Step::done : Step::goesOn;
}

void clsPdfObject::TakeKeyword(std::string_view word) {
    if (word == "R")
        FoldReference();
    else
        Append(PdfKind::other, word == "true" ? 1 : 0);
}

void clsPdfObject::FoldReference() {
    if (open_.empty() || integers_ < 2)
        return;
    const std::size_t count = nodes_.size();
    const scPdfNode number = nodes_[count - 2], generation = nodes_[count - 1];
    const auto fits = [](const scPdfNode& node) {
        return node.kind == PdfKind::integer && node.number >= 0 && node.number <= INT32_MAX;
    };
    if (!fits(number) || !fits(generation))
        return;
    nodes_.resize(count - 2);
    Append(PdfKind::reference, number.number, static_cast<std::uint32_t>(generation.number));
}

void clsPdfObject::Append(PdfKind kind, std::int64_t number, std::uint32_t more) {
    nodes_.push_back({kind, static_cast<std::uint32_t>(nodes_.size() + 1), number, more});
}

void clsPdfObject::AppendText(PdfKind kind, PdfToken token, std::string_view text) {
    const std::size_t start = text_.size();
    if (token == PdfToken::name)
        AppendName(text_, text);
    else if (token == PdfToken::hexString)
        AppendHex(text_, text);
    else
        AppendString(text_, text);
    Append(kind, static_cast<std::int64_t>(start), static_cast<std::uint32_t>(text_.size() - start));
}

void clsPdfObject::CloseLast() {
    nodes_[open_.back()].end = static_cast<std::uint32_t>(nodes_.size());
    open_.pop_back();
}

const scPdfNode* clsPdfValue::Node() const {
    return object_ && node_ < object_->nodes_.size() ? &object_->nodes_[node_] : nullptr;
}

PdfKind clsPdfValue::Kind() const {
    const scPdfNode* const node = Node();
    return node ? node->kind : PdfKind::none;
}

std::optional<std::int64_t> clsPdfValue::Integer() const {
    if (!Is(PdfKind::integer))
        return {};
    return Node()->number;
}

bool clsPdfValue::IsTrue() const {
    return Is(PdfKind::other) && Node()->number == 1;
}

std::string_view clsPdfValue::Text() const {
    if (!Is(PdfKind::name) && !Is(PdfKind::string))
        return {};
    return std::string_view(object_->text_).substr(static_cast<std::size_t>(Node()->number), Node()->more);
}

scPdfReference clsPdfValue::Reference() const {
    if (!Is(PdfKind::reference))
        return {};
    return {static_cast<std::uint32_t>(Node()->number), Node()->more};
}

clsPdfValue clsPdfValue::operator[](std::string_view key) const {
    clsPdfValue found;
    EachEntry([&](std::string_view name, const clsPdfValue& value) {
        if (name == key && !found.object_)
            found = value;
    });
    return found;
}

clsPdfValue clsPdfValue::At(std::size_t place) const {
    if (!Is(PdfKind::array))
        return {};
    std::size_t at = node_ + 1;
    for (; place > 0 && at < Node()->end; --place)
        at = object_->nodes_[at].end;
    return at < Node()->end ? clsPdfValue(*object_, at) : clsPdfValue();
}

} // namespace tvut
