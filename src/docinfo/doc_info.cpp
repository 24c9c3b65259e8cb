// Every value passes the same gate: it is cleaned into a buffer, cut, and joined to what its property has.
//
// Whether a value is there already is asked of the hashes of all that were joined, not of the joined text: a
// document with a hundred thousand equal keywords costs a hundred thousand look-ups. Custom names are looked
// for by their hashes, too: a file may have far more of them than are kept, and all alike but for their ends.
#include "docinfo/doc_info.h"

#include "text/encoding/utf8.h"
#include "text/hash.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::array<std::u16string_view, static_cast<std::size_t>(DocProperty::count)> names = {
    u"Format",     u"Title",   u"Author",   u"Subject",     u"Keywords",  u"Comments", u"LastAuthor",
    u"Company",    u"Manager", u"Category", u"Application", u"Producer",  u"Language", u"Copyright",
    u"Revision",   u"Created", u"Modified", u"Printed",     u"Received",  u"Pages",    u"Words",
    u"Characters", u"To",      u"Cc",       u"MessageId",   u"Encrypted", u"Problem"};

constexpr std::u16string_view customPrefix = u"Custom.";
constexpr std::u16string_view between = u"; ";

constexpr char16_t Lower(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

bool IsSameName(std::u16string_view a, std::u16string_view b) noexcept {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                              [](char16_t x, char16_t y) { return Lower(x) == Lower(y); });
}

std::uint32_t HashOfName(std::u16string name) {
    std::ranges::transform(name, name.begin(), Lower);
    return UtilpHashText(name);
}

constexpr bool IsLineEnd(char16_t unit) {
    return unit == u'\n' || unit == u'\r' || unit == 0x0B || unit == 0x0C || unit == 0x85 || unit == 0x2028 ||
           unit == 0x2029;
}
constexpr bool IsBlank(char16_t unit) {
    return unit <= u' ' || (unit >= 0x7F && unit <= 0x9F) || unit == 0x2028 || unit == 0x2029;
}

constexpr char16_t noCharacter = 0xFFFD;

enum class LineEnds { areBlanks, stay };

// A text on its way to a value: control characters and runs of white space become one blank, or one line end
// where there was one and line ends stay; none at the ends; each surrogate has its other half.
std::u16string Clean(std::u16string_view text, std::size_t most, LineEnds lineEnds) {
    std::u16string clean;
    clean.reserve(std::min(text.size(), most));
    std::size_t at = 0;
    while (at < text.size()) {
        char16_t white = 0;
        for (; at < text.size() && IsBlank(text[at]); ++at)
            white = white == u'\n' || (lineEnds == LineEnds::stay && IsLineEnd(text[at])) ? u'\n' : u' ';
        if (at == text.size())
            break;
        if (white != 0 && !clean.empty())
            clean += white;
        const bool isPair = UtilpIsHighSurrogate(text[at]) && at + 1 < text.size() &&
                            text[at + 1] >= 0xDC00 && text[at + 1] < 0xE000;
        if (clean.size() + (isPair ? 2 : 1) > most)
            break;
        if (isPair)
            clean.append(text.substr(at, 2));
        else
            clean += text[at] >= 0xD800 && text[at] < 0xE000 ? noCharacter : text[at];
        at += isPair ? 2 : 1;
    }
    while (!clean.empty() && IsBlank(clean.back()))
        clean.pop_back();
    return clean;
}

std::u16string Clean(std::u16string_view text) {
    return Clean(text, clsDocInfo::longestValue, LineEnds::areBlanks);
}

// The longest beginning that ends with a whole character.
std::u16string_view Cut(std::u16string_view text, std::size_t most) {
    if (text.size() <= most)
        return text;
    return text.substr(0, most != 0 && UtilpIsHighSurrogate(text[most - 1]) ? most - 1 : most);
}

std::u16string Digits(std::uint64_t number) {
    std::u16string digits;
    do
        digits.insert(digits.begin(), static_cast<char16_t>(u'0' + number % 10));
    while ((number /= 10) != 0);
    return digits;
}

} // namespace

// ---- For readers --------------------------------------------------------------------------------

void clsDocInfo::Add(DocProperty property, std::u16string_view text, DocRank rank) {
    scValue& value = ValueOf(property);
    if (!value.text.empty() && rank < value.rank)
        return;
    const LineEnds lineEnds = property == DocProperty::comments ? LineEnds::stay : LineEnds::areBlanks;
    const std::u16string clean = Clean(text, longestValue, lineEnds);
    if (clean.empty())
        return;
    if (rank > value.rank) {
        units_ -= value.text.size();
        value.text.clear();
    }
    value.rank = rank;
    Join(value.text, clean, static_cast<std::size_t>(property));
}

void clsDocInfo::Add(DocProperty property, const std::optional<scDocDate>& date, DocRank rank) {
    if (date)
        Add(property, UtilpDateText(*date), rank);
}

void clsDocInfo::AddNumber(DocProperty property, std::int64_t number, DocRank rank) {
    if (number >= 0)
        Add(property, Digits(static_cast<std::uint64_t>(number)), rank);
}

void clsDocInfo::AddNumber(DocProperty property, std::u16string_view digits, DocRank rank) {
    const std::u16string clean = Clean(digits);
    const bool isNumber = clean.size() <= 18 && std::ranges::all_of(clean, [](char16_t unit) {
                              return unit >= u'0' && unit <= u'9';
                          });
    if (!isNumber || clean.empty())
        return;
    std::int64_t number = 0;
    for (const char16_t digit : clean)
        number = number * 10 + (digit - u'0');
    AddNumber(property, number, rank);
}

void clsDocInfo::AddCustom(std::u16string_view name, std::u16string_view text) {
    const std::u16string cleanName = Clean(name, longestCustomName, LineEnds::areBlanks);
    const std::u16string clean = Clean(text);
    if (cleanName.empty() || clean.empty())
        return;
    const std::uint32_t hash = HashOfName(cleanName);
    std::size_t place = 0;
    while (place < custom_.size() &&
           !(customHashes_[place] == hash && IsSameName(custom_[place].name, cleanName)))
        ++place;
    if (place == custom_.size()) {
        if (place == mostCustom || !HasRoom(cleanName.size() + clean.size()))
            return SetProblem(u"too many properties");
        customHashes_.push_back(hash);
        custom_.push_back({cleanName, {}});
        units_ += cleanName.size();
    }
    Join(custom_[place].text, clean, values_.size() + place);
}

void clsDocInfo::AddCustom(std::u16string_view name, const std::optional<scDocDate>& date) {
    if (date)
        AddCustom(name, UtilpDateText(*date));
}

void clsDocInfo::SetFormat(std::u16string_view format) {
    ValueOf(DocProperty::format).text = format;
}

void clsDocInfo::SetEncrypted() {
    ValueOf(DocProperty::encrypted).text = u"1";
}

void clsDocInfo::SetProblem(std::u16string_view words) {
    if (!Has(DocProperty::problem))
        ValueOf(DocProperty::problem).text = words;
}

void clsDocInfo::Finish() noexcept {
    std::unordered_set<std::uint64_t>().swap(seen_);
    std::vector<std::uint32_t>().swap(customHashes_);
}

void clsDocInfo::Join(std::u16string& joined, std::u16string_view text, std::size_t owner) {
    const std::size_t taken = joined.empty() ? 0 : joined.size() + between.size();
    if (taken >= longestValue || (!seen_.insert(UtilpHashAfter(owner + 1, text)).second && !joined.empty()))
        return;
    const std::u16string_view cut = Cut(text, longestValue - taken);
    const std::size_t added = cut.size() + (joined.empty() ? 0 : between.size());
    if (cut.empty())
        return;
    if (!HasRoom(added))
        return SetProblem(u"too many properties");
    if (!joined.empty())
        joined += between;
    joined += cut;
    units_ += added;
}

bool clsDocInfo::HasRoom(std::size_t units) {
    return units <= mostUnits - units_;
}

// ---- For callers --------------------------------------------------------------------------------

std::optional<std::u16string_view> clsDocInfo::Find(std::u16string_view name) const noexcept {
    const std::u16string* found = nullptr;
    for (std::size_t number = 0; number < names.size() && !found; ++number)
        found = IsSameName(name, names[number]) ? &values_[number].text : nullptr;
    if (!found && name.size() > customPrefix.size() &&
        IsSameName(name.substr(0, customPrefix.size()), customPrefix)) {
        const auto custom = std::ranges::find_if(custom_, [&](const scCustom& other) {
            return IsSameName(other.name, name.substr(customPrefix.size()));
        });
        found = custom != custom_.end() ? &custom->text : nullptr;
    }
    return found && !found->empty() ? std::optional<std::u16string_view>(*found) : std::nullopt;
}

std::u16string clsDocInfo::Names() const {
    std::u16string list;
    const auto add = [&](std::u16string_view prefix, std::u16string_view name) {
        if (!list.empty())
            list += u'\n';
        list.append(prefix).append(name);
    };
    for (std::size_t number = 0; number < names.size(); ++number) {
        if (!values_[number].text.empty())
            add({}, names[number]);
    }
    for (const scCustom& custom : custom_)
        add(customPrefix, custom.name);
    return list;
}

} // namespace tvut
