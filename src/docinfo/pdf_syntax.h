// Objects of PDF (ISO 32000-1, 7.3), read from bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tvut {

constexpr bool UtilpIsPdfSpace(char c) {
    return c == '\0' || c == '\t' || c == '\n' || c == '\f' || c == '\r' || c == ' ';
}

enum class PdfToken : std::uint8_t {
    end, // of the bytes
    integer,
    real,
    name,
    string,
    hexString,
    openArray,
    openDictionary,
    close, // of either
    keyword,
};

// Takes bytes apart.
class clsPdfLexer {
  public:
    explicit clsPdfLexer(std::string_view bytes, std::size_t at = 0) : bytes_(bytes), at_(at) {}

    PdfToken Next();
    std::size_t At() const { return at_; }               // after the last token
    bool RanOut() const { return at_ >= bytes_.size(); } // further bytes might belong to the last token
    std::int64_t Number() const { return number_; }
    std::string_view Text() const { return text_; } // of names, strings, keywords; as it is written
    bool IsKeyword(std::string_view word) { return Next() == PdfToken::keyword && text_ == word; }

  private:
    void SkipSpace();
    PdfToken ReadWord();
    PdfToken ReadString();
    PdfToken ReadHexString();

    std::string_view bytes_;
    std::size_t at_;
    std::int64_t number_ = 0;
    std::string_view text_;
};

struct scPdfReference {
    std::uint32_t number = 0; // 0: none
    std::uint32_t generation = 0;
};

enum class PdfKind : std::uint8_t { none, other, integer, name, string, reference, array, dictionary };

struct scPdfNode {
    PdfKind kind = PdfKind::none;
    std::uint32_t end = 0;   // the node after this one and all that is in it
    std::int64_t number = 0; // of an integer; of a reference; where a text begins
    std::uint32_t more = 0;  // of a reference: generation; of a text: length
};

class clsPdfObject;

// One value of an object, which must live as long. What is asked of a value of another kind is nothing.
class clsPdfValue {
  public:
    clsPdfValue() = default;
    clsPdfValue(const clsPdfObject& object, std::size_t node) : object_(&object), node_(node) {}

    PdfKind Kind() const;
    bool Is(PdfKind kind) const { return Kind() == kind; }
    bool IsName(std::string_view name) const { return Is(PdfKind::name) && Text() == name; }
    std::optional<std::int64_t> Integer() const;
    std::int64_t IntegerOr(std::int64_t other) const { return Integer().value_or(other); }
    bool IsTrue() const;
    std::string_view Text() const; // of a name or a string
    scPdfReference Reference() const;
    clsPdfValue operator[](std::string_view key) const; // of a dictionary
    clsPdfValue At(std::size_t place) const;            // of an array

    // Each entry of a dictionary, each value of an array.
    template <class Visit>
    void EachEntry(Visit visit) const;
    template <class Visit>
    void EachItem(Visit visit) const;

  private:
    const scPdfNode* Node() const;

    const clsPdfObject* object_ = nullptr;
    std::size_t node_ = 0;
};

// An object with all that is directly in it: a flat list, in which each value knows where it ends.
class clsPdfObject {
  public:
    static constexpr std::size_t mostNodes = 16384; // what comes after is left out

    // Reads the object that bytes begin with and returns where it ends; nothing when it may go on after them.
    // With isAll, there are no further bytes, and what is open ends there. Throws std::bad_alloc.
    std::optional<std::size_t> Parse(std::string_view bytes, bool isAll);

    clsPdfValue Value() const { return {*this, 0}; }
    clsPdfValue operator[](std::string_view key) const { return Value()[key]; }

  private:
    friend class clsPdfValue;

    enum class Step { goesOn, done };
    Step Take(PdfToken token, const clsPdfLexer& lexer);
    void TakeKeyword(std::string_view word);
    void FoldReference();
    void Append(PdfKind kind, std::int64_t number = 0, std::uint32_t more = 0);
    void AppendText(PdfKind kind, PdfToken token, std::string_view text);
    void CloseLast();

    std::vector<scPdfNode> nodes_;
    std::vector<std::uint32_t> open_;
    std::size_t integers_ = 0; // that stand last
    std::string text_;
};

template <class Visit>
void clsPdfValue::EachEntry(Visit visit) const {
    if (!Is(PdfKind::dictionary))
        return;
    const std::size_t end = Node()->end;
    for (std::size_t at = node_ + 1; at + 1 < end;) {
        const clsPdfValue key(*object_, at), value(*object_, at + 1);
        at = key.Node()->end;
        if (!key.Is(PdfKind::name)) // a stray value
            continue;
        at = value.Node()->end;
        visit(key.Text(), value);
    }
}

template <class Visit>
void clsPdfValue::EachItem(Visit visit) const {
    if (!Is(PdfKind::array))
        return;
    for (std::size_t at = node_ + 1; at < Node()->end;) {
        const clsPdfValue item(*object_, at);
        at = item.Node()->end;
        visit(item);
    }
}

} // namespace tvut
