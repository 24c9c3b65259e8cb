// One object, read without recursion: what is nested in it is counted and passed over.
#include "columns_reader.h"
#include "finish_line.h"
#include "saved_line.h"

#include <algorithm>

namespace tool::logpan {

namespace {

struct scValue {
    bool isText = false;
    std::wstring text; // of a text, or the characters of a number or a word
};

class clsJsonReader {
  public:
    explicit clsJsonReader(std::wstring_view json) : rest_(json) {}

    bool Take(wchar_t expected) {
        SkipBlanks();
        const bool there = rest_.starts_with(expected);
        rest_.remove_prefix(there ? 1 : 0);
        return there;
    }

    bool AtEnd() {
        SkipBlanks();
        return rest_.empty();
    }

    bool TakeText(std::wstring& text) {
        text.clear();
        if (!Take(L'"'))
            return false;
        for (;;) {
            const std::size_t run = rest_.find_first_of(L"\"\\");
            if (run == std::wstring_view::npos)
                return false;
            text += rest_.substr(0, run);
            const bool ends = rest_[run] == L'"';
            rest_.remove_prefix(run + 1);
            if (ends)
                return true;
            if (!TakeEscape(text))
                return false;
        }
    }

    bool TakeValue(scValue& value) {
        SkipBlanks();
        value.isText = rest_.starts_with(L'"');
        if (value.isText)
            return TakeText(value.text);
        if (rest_.starts_with(L'{') || rest_.starts_with(L'['))
            return SkipNested();
        const std::size_t length = std::min(rest_.find_first_of(L",} \t"), rest_.size());
        value.text = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return length > 0;
    }

  private:
    void SkipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(L" \t\r\n"), rest_.size())); }

    bool TakeEscape(std::wstring& text) {
        constexpr std::wstring_view marks = L"\"\\/bfnrt";
        constexpr std::wstring_view units = L"\"\\/\b\f\n\r\t";
        if (rest_.starts_with(L'u'))
            return TakeUnit(text);
        const std::size_t known = rest_.empty() ? marks.npos : marks.find(rest_.front());
        if (known == marks.npos)
            return false;
        text += units[known];
        rest_.remove_prefix(1);
        return true;
    }

    bool TakeUnit(std::wstring& text) {
        unsigned unit = 0;
        if (rest_.size() < 5)
            return false;
        for (const wchar_t digit : rest_.substr(1, 4)) {
            const unsigned value =
                clsColumnsReader::DigitOf(digit >= L'A' && digit <= L'F' ? digit | 0x20 : digit);
            if (value > 15)
                return false;
            unit = unit * 16 + value;
        }
        text += static_cast<wchar_t>(unit);
        rest_.remove_prefix(5);
        return true;
    }

    bool SkipNested() {
        std::wstring passed;
        std::size_t depth = 0;
        do {
            const std::size_t at = rest_.find_first_of(L"\"{}[]");
            if (at == std::wstring_view::npos)
                return false;
            rest_.remove_prefix(at);
            const wchar_t unit = rest_.front();
            if (unit == L'"') {
                if (!TakeText(passed))
                    return false;
                continue;
            }
            rest_.remove_prefix(1);
            depth = unit == L'{' || unit == L'[' ? depth + 1 : depth - 1;
        } while (depth > 0);
        return true;
    }

    std::wstring_view rest_;
};

std::uint64_t NumberOf(std::wstring_view text) {
    constexpr std::size_t mostDigits = 10;
    std::uint64_t number = 0;
    if (text.size() <= mostDigits)
        for (const wchar_t digit : text) {
            const unsigned value = clsColumnsReader::DigitOf(digit);
            if (value > 9)
                return 0;
            number = number * 10 + value;
        }
    return number;
}

// A line under construction: what the fields say one by one.
struct scFields {
    scLine line;
    scProcess process;
    bool hasText = false;
};

void SetTime(scFields& fields, const std::wstring& text) {
    scStamp time;
    clsColumnsReader columns{text};
    if (columns.Take(time.year, 4, 10) && columns.Take(L'-') && columns.Take(time.month, 2, 10) &&
        columns.Take(L'-') && columns.Take(time.day, 2, 10) && columns.Take(L'T') && columns.TakeClock(time))
        fields.line.time = time;
}

void SetHexadecimal(std::uint32_t& number, const std::wstring& text) {
    constexpr std::size_t mostDigits = 8;
    std::uint32_t value = 0;
    if (text.size() <= mostDigits && clsColumnsReader{text}.Take(value, text.size(), 16))
        number = value;
}

struct scField {
    std::wstring_view name;
    bool isText;
    void (*set)(scFields& fields, std::wstring& text);
};

constexpr scField known[] = {
    {L"time", true, [](scFields& fields, std::wstring& text) { SetTime(fields, text); }},
    {L"module", true, [](scFields& fields, std::wstring& text) { fields.line.module = std::move(text); }},
    {L"thread", true, [](scFields& fields, std::wstring& text) { SetHexadecimal(fields.line.thread, text); }},
    {L"processor", true,
     [](scFields& fields, std::wstring& text) { SetHexadecimal(fields.line.processor, text); }},
    {L"sequence", false,
     [](scFields& fields, std::wstring& text) {
         fields.line.sequence = text.size() == 1 ? static_cast<std::uint32_t>(text.front()) : 0;
     }},
    {L"port", false,
     [](scFields& fields, std::wstring& text) {
         fields.line.port = static_cast<std::uint16_t>(NumberOf(text));
     }},
    {L"process", true, [](scFields& fields, std::wstring& text) { fields.process.name = std::move(text); }},
    {L"pid", false,
     [](scFields& fields, std::wstring& text) {
         fields.process.id = static_cast<std::uint32_t>(NumberOf(text));
     }},
    {L"level", false,
     [](scFields& fields, std::wstring& text) {
         fields.line.level = static_cast<std::size_t>(NumberOf(text));
     }},
    {L"text", true,
     [](scFields& fields, std::wstring& text) {
         fields.line.text = std::move(text);
         fields.hasText = true;
     }},
};

void Set(scFields& fields, std::wstring_view name, scValue& value) {
    for (const scField& field : known)
        if (field.name == name && field.isText == value.isText)
            field.set(fields, value.text);
}

bool TakeFields(clsJsonReader& reader, scFields& fields) {
    std::wstring name;
    if (!reader.Take(L'{'))
        return false;
    do {
        scValue value;
        if (!reader.TakeText(name) || !reader.Take(L':') || !reader.TakeValue(value))
            return false;
        Set(fields, name, value);
    } while (reader.Take(L','));
    return reader.Take(L'}') && reader.AtEnd();
}

} // namespace

std::optional<scLine> ParseJsonLine(std::wstring_view json) {
    clsJsonReader reader{json};
    scFields fields;
    fields.line.time = noTime;
    if (!TakeFields(reader, fields) || !fields.hasText)
        return std::nullopt;
    CutText(fields.line.text);
    if (fields.process.id != 0 || !fields.process.name.empty())
        fields.line.process = std::make_shared<const scProcess>(std::move(fields.process));
    return std::move(fields.line);
}

} // namespace tool::logpan
