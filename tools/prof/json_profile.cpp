// A list is an object. Its entries are members, in order; those of one name, which stand together, are one
// member with an array. In an array that is in an array, or in the outermost, is a list whose entries of one
// name do not stand together: an object for each entry.
//
// Writing and reading keep what is open in an array of their own, so that depth costs no stack.
#include "json_profile.h"

#include "exit_code.h"
#include "json_reader.h"
#include "json_text.h"
#include "text_io.h"
#include "xml_text.h"

#include <windows.h>

#include <algorithm>
#include <unordered_set>

namespace tool::prof {

namespace {

// ---- Values -------------------------------------------------------------------------------------

// Any program reads an integer up to 2^53 - 1 and fifteen digits without loss; and six decimals are how the
// library writes a double.
bool IsExactNumber(std::wstring_view text) {
    constexpr std::wstring_view largest = L"9007199254740991";
    constexpr std::size_t decimals = 6, mostDigits = 15;
    if (!IsJsonNumber(text) || text == L"-0")
        return false;
    if (text.starts_with(L'-'))
        text.remove_prefix(1);
    const std::size_t point = text.find_first_of(L".eE");
    if (point == text.npos)
        return text.size() < largest.size() || (text.size() == largest.size() && text <= largest);
    return text[point] == L'.' && text.size() - point - 1 == decimals &&
           text.find_first_of(L"eE") == text.npos && text.size() - 1 <= mostDigits;
}

// ---- Writing ------------------------------------------------------------------------------------

class clsJsonWriter {
  public:
    clsJsonWriter(const clsSnapshot& list, JsonValues values, bool itemsOnly)
        : list_(list), values_(values), itemsOnly_(itemsOnly) {}

    std::wstring Write() {
        std::size_t entry = Entry(0);
        BeginList(entry, list_.End());
        while (!open_.empty()) {
            if (entry < open_.back().end)
                entry = TakeEntry(entry);
            else
                Close();
        }
        json_ += L'\n';
        return std::move(json_);
    }

  private:
    enum class Kind { object, sameNamed, sequence };
    struct scOpen {
        Kind kind;
        std::size_t end; // the entry after the last
        bool isEmpty = true;
    };

    // The entry itself, or the next one that is written.
    std::size_t Entry(std::size_t entry) const {
        while (itemsOnly_ && entry < list_.End() && list_.IsList(entry))
            entry = list_.Next(entry);
        return entry;
    }
    std::size_t After(std::size_t entry) const { return Entry(list_.Next(entry)); }

    std::size_t EndOfSameNamed(std::size_t entry, std::size_t end) const {
        const std::wstring_view name = list_.Name(entry);
        do
            entry = After(entry);
        while (entry < end && list_.Name(entry) == name);
        return entry;
    }

    bool StandTogether(std::size_t entry, std::size_t end) const {
        std::unordered_set<std::wstring_view> names;
        for (; entry < end; entry = EndOfSameNamed(entry, end))
            if (!names.insert(list_.Name(entry)).second)
                return false;
        return true;
    }

    void Open(Kind kind, std::size_t end) {
        json_ += kind == Kind::object ? L'{' : L'[';
        open_.push_back({kind, end});
    }

    void BeginList(std::size_t entry, std::size_t end) {
        Open(StandTogether(entry, end) ? Kind::object : Kind::sequence, end);
    }

    void Close() {
        const scOpen closed = open_.back();
        open_.pop_back();
        if (!closed.isEmpty)
            BeginLine();
        json_ += closed.kind == Kind::object ? L'}' : L']';
    }

    std::size_t TakeEntry(std::size_t entry) {
        scOpen& in = open_.back();
        if (!in.isEmpty)
            json_ += L',';
        in.isEmpty = false;
        BeginLine();
        if (in.kind == Kind::sameNamed)
            return TakeValue(entry);
        if (in.kind == Kind::sequence) {
            Open(Kind::object, After(entry));
            return entry;
        }
        AppendJsonText(json_, list_.Name(entry));
        json_ += L": ";
        const std::size_t end = EndOfSameNamed(entry, in.end);
        if (end == After(entry) && (!list_.IsList(entry) || StandTogether(entry + 1, list_.Next(entry))))
            return TakeValue(entry);
        Open(Kind::sameNamed, end);
        return entry;
    }

    std::size_t TakeValue(std::size_t entry) {
        if (list_.IsList(entry)) {
            BeginList(entry + 1, list_.Next(entry));
            return entry + 1;
        }
        AppendJsonValue(json_, list_.Value(entry), values_);
        return After(entry);
    }

    // Deep levels are not indented any more: an output of the square of its size would be none.
    void BeginLine() {
        constexpr std::size_t deepest = 32;
        json_ += L'\n';
        json_.append(2 * std::min(open_.size(), deepest), L' ');
    }

    const clsSnapshot& list_;
    JsonValues values_;
    bool itemsOnly_;
    std::wstring json_;
    std::vector<scOpen> open_;
};

// ---- Reading ------------------------------------------------------------------------------------

class clsProfileBuilder final : public IclsJsonEvents {
  public:
    explicit clsProfileBuilder(const clsJsonReader& reader) : reader_(reader) {}

    void Begin(wchar_t bracket) override {
        const bool isObject = bracket == L'{';
        if (open_.empty())
            return Open(isObject ? Kind::list : Kind::sequence);
        const Kind in = open_.back().kind;
        if (in == Kind::sequence)
            return isObject ? Open(Kind::entry) : FailInSequence();
        if (in != Kind::sameNamed && !isObject)
            return Open(Kind::sameNamed);
        xml_.BeginList(Name());
        Open(isObject ? Kind::list : Kind::sequence);
    }

    void End() override {
        const scOpen ended = open_.back();
        open_.pop_back();
        names_.resize(ended.name);
        if (!open_.empty() && (ended.kind == Kind::list || ended.kind == Kind::sequence))
            xml_.EndList();
    }

    void Name(std::wstring_view name) override {
        names_.resize(open_.back().name);
        names_ += name;
    }

    void Text(std::wstring_view text) override {
        if (open_.empty())
            throw scJsonError{reader_.Line(), "is JSON, but no profile: neither an object nor an array"};
        if (open_.back().kind == Kind::sequence)
            FailInSequence();
        xml_.Item(Name(), text);
    }

    void Plain(std::wstring_view text) override {
        Text(text == L"true" ? L"TRUE" : text == L"false" ? L"FALSE" : text == L"null" ? L"" : text);
    }

    JobPtr Finish() && { return std::move(xml_).Open(); }

  private:
    enum class Kind { list, entry, sameNamed, sequence };
    struct scOpen {
        Kind kind;
        std::size_t name; // where the name of the entry that is being read begins
    };

    void Open(Kind kind) { open_.push_back({kind, names_.size()}); }

    std::wstring_view Name() const {
        const scOpen& last = open_.back();
        const std::wstring_view names = names_;
        if (last.kind != Kind::sameNamed)
            return names.substr(last.name);
        const std::size_t begin = open_[open_.size() - 2].name;
        return names.substr(begin, last.name - begin);
    }

    [[noreturn]] void FailInSequence() const {
        throw scJsonError{reader_.Line(),
                          "is JSON, but no profile: an array of arrays may hold objects only"};
    }

    const clsJsonReader& reader_;
    clsXmlText xml_;
    std::vector<scOpen> open_;
    std::wstring names_;
};

std::wstring Decoded(std::string_view bytes, const std::string& subject) {
    if (bytes.starts_with("\xff\xfe"))
        return {reinterpret_cast<const wchar_t*>(bytes.data() + 2), bytes.size() / sizeof(wchar_t) - 1};
    if (bytes.starts_with("\xef\xbb\xbf"))
        bytes.remove_prefix(3);
    std::wstring text(bytes.size(), L'\0');
    const int size = static_cast<int>(bytes.size());
    const int length =
        MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), size, text.data(), size);
    if (length == 0 && size != 0)
        throw scFailure{ExitCode::malformed, subject, "is no JSON: not in UTF-8"};
    text.resize(static_cast<std::size_t>(length));
    return text;
}

} // namespace

void AppendJsonValue(std::wstring& json, std::wstring_view value, JsonValues values) {
    if (values == JsonValues::typed && (value == L"TRUE" || value == L"FALSE"))
        json += value == L"TRUE" ? L"true" : L"false";
    else if (values == JsonValues::typed && IsExactNumber(value))
        json += value;
    else
        AppendJsonText(json, value);
}

std::string JsonOf(const clsSnapshot& list, JsonValues values) {
    return ToUtf8(clsJsonWriter{list, values, false}.Write());
}

std::string JsonOfItems(const clsSnapshot& list, JsonValues values) {
    return ToUtf8(clsJsonWriter{list, values, true}.Write());
}

JobPtr ProfileOfJson(std::string_view bytes, const std::string& subject) {
    const std::wstring text = Decoded(bytes, subject);
    clsJsonReader reader{text};
    clsProfileBuilder builder{reader};
    try {
        reader.Read(builder);
    } catch (const scJsonError& error) {
        throw scFailure{ExitCode::malformed, subject,
                        "line " + std::to_string(error.line) + ": " + error.reason};
    }
    return std::move(builder).Finish();
}

} // namespace tool::prof
