// Most primary languages of Windows are one language here, and the table's own numbers tell which. Serbian,
// Croatian and Bosnian share one, as do both forms of Norwegian and of Chinese, the languages of the Sami,
// and some that are called by another name: their sub-languages stand in a list.
#include "locale/language_table.h"

#include "locale/ascii_code.h"

#include <iterator>

namespace tvut {

namespace {

struct scIdOfLanguage {
    std::uint16_t langId;
    std::string_view tag; // empty: none of ours
};

constexpr scIdOfLanguage unusualIds[] = {
    {0x0004, "zh"},      {0x0C04, "zh-Hant"}, {0x1404, "zh-Hant"}, {0x7C04, "zh-Hant"}, {0x0014, "no"},
    {0x7814, "nn"},      {0x001A, "hr"},      {0x081A, "sr-Latn"}, {0x0C1A, "sr"},      {0x101A, "hr"},
    {0x181A, "sr-Latn"}, {0x1C1A, "sr"},      {0x201A, "bs"},      {0x2C1A, "sr-Latn"}, {0x301A, "sr"},
    {0x641A, "bs"},      {0x681A, "bs"},      {0x6C1A, "sr"},      {0x701A, "sr-Latn"}, {0x781A, "bs"},
    {0x7C1A, "sr"},      {0x103B, ""},        {0x143B, ""},        {0x183B, ""},        {0x1C3B, ""},
    {0x203B, ""},        {0x243B, ""},        {0x703B, ""},        {0x743B, ""},        {0x773B, ""},
    {0x783B, ""},        {0x7C3B, ""},        {0x043C, "gd"},      {0x008C, "fa"},      {0x048C, "fa"},
    {0x0092, "ku"},      {0x0492, "ku"},
};

struct scOtherCode {
    std::string_view code;
    std::string_view tag;
};

// The bibliographic codes of ISO 639-2, codes that were withdrawn, and those of what counts as another.
constexpr scOtherCode otherCodes[] = {
    {"alb", "sq"}, {"arm", "hy"},     {"baq", "eu"}, {"bur", "my"}, {"chi", "zh"}, {"cze", "cs"},
    {"dut", "nl"}, {"fre", "fr"},     {"geo", "ka"}, {"ger", "de"}, {"gre", "el"}, {"ice", "is"},
    {"mac", "mk"}, {"mao", "mi"},     {"may", "ms"}, {"per", "fa"}, {"rum", "ro"}, {"slo", "sk"},
    {"tib", "bo"}, {"wel", "cy"},     {"in", "id"},  {"iw", "he"},  {"ji", "yi"},  {"jw", "jv"},
    {"mo", "ro"},  {"sh", "sr-Latn"}, {"cmn", "zh"}, {"fil", "tl"}, {"prs", "fa"}, {"quz", "qu"},
};

// Subtags, of which one makes a language that of another script. CHT is an older name of Windows.
constexpr scOtherCode scripts[] = {
    {"zh", "Hant"}, {"zh", "TW"}, {"zh", "HK"}, {"zh", "MO"}, {"zh", "CHT"}, {"sr", "Latn"}, {"sr", "ME"},
};

template <class Wanted>
std::optional<std::size_t> IndexOf(Wanted&& wanted) noexcept {
    const auto found = std::ranges::find_if(g_languages, wanted);
    if (found == g_languages.end())
        return std::nullopt;
    return found - g_languages.begin();
}

std::optional<std::size_t> IndexOfTag(std::string_view tag) noexcept {
    return IndexOf([&](const scLanguage& language) { return language.tag.data() == tag; });
}

std::optional<std::size_t> IndexOfCode(std::u16string_view code) noexcept {
    const auto* const other =
        std::ranges::find_if(otherCodes, [&](const scOtherCode& row) { return UtilpIsCode(code, row.code); });
    if (other != std::end(otherCodes))
        return IndexOfTag(other->tag);
    return IndexOf([&](const scLanguage& language) {
        return UtilpIsCode(code, std::string_view(language.tag.data())) || UtilpIsCode(code, language.code3);
    });
}

std::u16string_view TakeSubtag(std::u16string_view& tag) noexcept {
    const std::size_t length = std::min(tag.find_first_of(u"-_"), tag.size());
    const std::u16string_view subtag = tag.substr(0, length);
    tag.remove_prefix(std::min(length + 1, tag.size()));
    return subtag;
}

// A script that is written decides; a region only where there is none: zh-Hans-HK is simplified.
bool IsInSecondScript(std::string_view language, std::u16string_view subtags) noexcept {
    while (!subtags.empty()) {
        const std::u16string_view subtag = TakeSubtag(subtags);
        const bool isSecond = std::ranges::any_of(scripts, [&](const scOtherCode& row) {
            return row.code == language && UtilpIsCode(subtag, row.tag);
        });
        if (isSecond || subtag.size() == 4)
            return isSecond;
    }
    return false;
}

} // namespace

std::optional<std::size_t> UtilpLanguageOfId(std::uint32_t langId) noexcept {
    constexpr std::uint32_t primary = 0x3FF;
    const auto* const unusual = std::ranges::find(unusualIds, langId, &scIdOfLanguage::langId);
    if (unusual != std::end(unusualIds))
        return IndexOfTag(unusual->tag);
    const auto whole = IndexOf([&](const scLanguage& row) { return langId != 0 && row.langId == langId; });
    return whole ? whole : IndexOf([&](const scLanguage& row) {
        return row.langId != 0 && langId <= 0xFFFF && (row.langId & primary) == (langId & primary);
    });
}

std::optional<std::size_t> UtilpFindLanguage(std::u16string_view text) noexcept {
    if (const auto number = UtilpCodeNumber(text))
        return UtilpLanguageOfId(*number);
    const auto language = IndexOfCode(TakeSubtag(text));
    if (language && IsInSecondScript(g_languages[*language].tag.data(), text))
        return *language + 1; // next to each other, as their tags are
    return language;
}

std::uint32_t UtilpCharsetOfCodePage(std::uint16_t codePage) noexcept {
    constexpr std::uint32_t defaultCharset = 1;
    constexpr struct {
        std::uint16_t codePage;
        std::uint16_t charset;
    } rows[] = {{874, 222}, {932, 128},  {936, 134},  {949, 129},  {950, 136},  {1250, 238}, {1251, 204},
                {1252, 0},  {1253, 161}, {1254, 162}, {1255, 177}, {1256, 178}, {1257, 186}, {1258, 163}};
    for (const auto& row : rows)
        if (row.codePage == codePage)
            return row.charset;
    return defaultCharset;
}

} // namespace tvut
