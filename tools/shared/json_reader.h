// Reads JSON (RFC 8259) piece by piece, with nothing beside it: no comments, no commas at ends.
//
// The readers that others have written refuse a text that holds half a surrogate pair as an escape, which
// values of profiles may hold, and hand over numbers as what they come to. Here a number is the text that
// stands there. Nothing recurses: depth costs a character a level.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

// What is not JSON, or beyond a bound. Lines are counted from 1, blank ones included.
struct scJsonError {
    std::size_t line;
    const char* reason;
};

// Takes what is read. Views end with the call.
class IclsJsonEvents {
  public:
    virtual void Begin(wchar_t bracket) = 0; // { or [
    virtual void End() = 0;
    virtual void Name(std::wstring_view name) = 0; // of the value that follows
    virtual void Text(std::wstring_view text) = 0;
    virtual void Plain(std::wstring_view text) = 0; // a number, true, false or null

  protected:
    ~IclsJsonEvents() = default;
};

class clsJsonReader {
  public:
    static constexpr std::size_t mostLevels = 2'000'000;

    // json is UTF-16 and outlives the reader.
    explicit clsJsonReader(std::wstring_view json) : json_(json) {}

    // Reads one value, which is all that there is. Throws scJsonError and std::bad_alloc.
    void Read(IclsJsonEvents& events);

    // Where reading stands; for errors of what the JSON means.
    std::size_t Line() const;

  private:
    void TakeValue(IclsJsonEvents& events);
    void TakeEnds(IclsJsonEvents& events);
    void TakeName(IclsJsonEvents& events);
    void TakePlain(IclsJsonEvents& events);
    std::wstring_view TakeText();
    void TakeEscape();
    wchar_t TakeUnit();
    wchar_t Next();
    void Expect(wchar_t unit, const char* otherwise);
    [[noreturn]] void Fail(const char* reason) const;

    std::wstring_view json_;
    std::size_t at_ = 0;
    std::wstring open_; // the brackets
    bool isValueNext_ = true;
    std::wstring text_;
};

} // namespace tool
