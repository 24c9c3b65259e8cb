// String: the library's UTF-16 text that is handed around; IString: the same, compared without case.
//
// Copies share one block (reference count, length, characters, terminator) until one of them is
// written to. Counts are atomic: copies of one text may live in several threads, though each String
// object is used by one at a time. Every String carries the code page of its 8-bit conversions.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tvut {

class String {
  public:
    String() noexcept;
    explicit String(std::u16string_view text);
    String(std::u16string_view text, unsigned codePage);
    String(const String& other);
    String(String&& other) noexcept;
    String& operator=(const String& other);
    String& operator=(String&& other) noexcept;
    ~String();

    // Converts 8-bit text, and back.
    static String FromAnsi(std::string_view text, unsigned codePage);
    std::string ToAnsi() const;

    std::u16string_view View() const noexcept;
    const char16_t* Characters() const noexcept; // terminated
    std::size_t Length() const noexcept { return View().size(); }
    bool IsEmpty() const noexcept { return Length() == 0; }
    unsigned CodePage() const noexcept { return codePage_; }
    void SetCodePage(unsigned codePage) noexcept { codePage_ = codePage; }

    // One character; NUL outside the text. Writing outside the text is refused and reported.
    class clsCharacter {
      public:
        clsCharacter& operator=(char16_t c);
        clsCharacter& operator=(const clsCharacter& c) { return *this = static_cast<char16_t>(c); }
        operator char16_t() const noexcept { return static_cast<const String&>(string_)[index_]; }

      private:
        friend class String;
        clsCharacter(String& string, std::size_t index) : string_(string), index_(index) {}
        String& string_;
        std::size_t index_;
    };
    clsCharacter operator[](std::size_t index) noexcept { return {*this, index}; }
    char16_t operator[](std::size_t index) const noexcept { return index < Length() ? View()[index] : u'\0'; }

    void Append(std::u16string_view text);

    // Replaces every occurrence of a text in one pass from left to right; occurrences do not overlap,
    // and what was put in is not looked at again. Returns how many there were; none of an empty text.
    std::size_t Replace(std::u16string_view from, std::u16string_view to);

    // Characters to write to, of a text that is made at least so long; ReleaseBuffer ends the writing
    // and cuts the text at a length. The buffer has room for a terminator, too.
    char16_t* GetBuffer(std::size_t length);
    void ReleaseBuffer(std::size_t length);

    friend bool operator==(const String& a, const String& b) noexcept { return a.View() == b.View(); }
    friend std::strong_ordering operator<=>(const String& a, const String& b) noexcept {
        return a.View() <=> b.View();
    }

  private:
    struct scBlock;

    static scBlock* Allocate(std::size_t length);
    scBlock* BlockForCopy() const;
    void Release() noexcept;
    void Adopt(scBlock* block) noexcept;
    void MakeOwn(std::size_t length); // unshared, with room for a length

    scBlock* block_; // none: the empty text
    unsigned codePage_;
    int bufferUse_ = 0; // buffers taken and not yet released
};

// A String that compares without regard to case; for file names and keys of tables.
class IString : public String {
  public:
    using String::String;

    friend bool operator==(const IString& a, const IString& b) noexcept { return Compare(a, b) == 0; }
    friend std::weak_ordering operator<=>(const IString& a, const IString& b) noexcept {
        return Compare(a, b) <=> 0;
    }

  private:
    static int Compare(const IString& a, const IString& b) noexcept;
};

} // namespace tvut
