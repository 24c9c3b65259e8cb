// From one & to the next. A reference is what a ; ends within 12 characters: no name is longer. Names are
// looked for here and among those of Latin-1 (text/html/entities); what neither knows is text.
#include "docinfo/html_references.h"

#include "text/digits.h"
#include "text/html/entities.h"

#include <algorithm>
#include <cstdint>

namespace tvut {

namespace {

struct scReference {
    std::u16string_view name;
    char16_t unit;
};

// Beside those of Latin-1, which masking knows.
constexpr scReference references[] = {
    {u"euro", 0x20AC},   {u"ndash", 0x2013},  {u"mdash", 0x2014},  {u"lsquo", 0x2018},  {u"rsquo", 0x2019},
    {u"sbquo", 0x201A},  {u"ldquo", 0x201C},  {u"rdquo", 0x201D},  {u"bdquo", 0x201E},  {u"dagger", 0x2020},
    {u"Dagger", 0x2021}, {u"bull", 0x2022},   {u"hellip", 0x2026}, {u"permil", 0x2030}, {u"prime", 0x2032},
    {u"Prime", 0x2033},  {u"lsaquo", 0x2039}, {u"rsaquo", 0x203A}, {u"oline", 0x203E},  {u"frasl", 0x2044},
    {u"ensp", 0x2002},   {u"emsp", 0x2003},   {u"thinsp", 0x2009}, {u"zwnj", 0x200C},   {u"zwj", 0x200D},
    {u"lrm", 0x200E},    {u"rlm", 0x200F},    {u"OElig", 0x152},   {u"oelig", 0x153},   {u"Scaron", 0x160},
    {u"scaron", 0x161},  {u"Yuml", 0x178},    {u"fnof", 0x192},    {u"circ", 0x2C6},    {u"tilde", 0x2DC},
    {u"image", 0x2111},  {u"weierp", 0x2118}, {u"real", 0x211C},   {u"trade", 0x2122},  {u"alefsym", 0x2135},
    {u"larr", 0x2190},   {u"uarr", 0x2191},   {u"rarr", 0x2192},   {u"darr", 0x2193},   {u"harr", 0x2194},
    {u"crarr", 0x21B5},  {u"lArr", 0x21D0},   {u"uArr", 0x21D1},   {u"rArr", 0x21D2},   {u"dArr", 0x21D3},
    {u"hArr", 0x21D4},   {u"forall", 0x2200}, {u"part", 0x2202},   {u"exist", 0x2203},  {u"empty", 0x2205},
    {u"nabla", 0x2207},  {u"isin", 0x2208},   {u"notin", 0x2209},  {u"ni", 0x220B},     {u"prod", 0x220F},
    {u"sum", 0x2211},    {u"minus", 0x2212},  {u"lowast", 0x2217}, {u"radic", 0x221A},  {u"prop", 0x221D},
    {u"infin", 0x221E},  {u"ang", 0x2220},    {u"and", 0x2227},    {u"or", 0x2228},     {u"cap", 0x2229},
    {u"cup", 0x222A},    {u"int", 0x222B},    {u"there4", 0x2234}, {u"sim", 0x223C},    {u"cong", 0x2245},
    {u"asymp", 0x2248},  {u"ne", 0x2260},     {u"equiv", 0x2261},  {u"le", 0x2264},     {u"ge", 0x2265},
    {u"sub", 0x2282},    {u"sup", 0x2283},    {u"nsub", 0x2284},   {u"sube", 0x2286},   {u"supe", 0x2287},
    {u"oplus", 0x2295},  {u"otimes", 0x2297}, {u"perp", 0x22A5},   {u"sdot", 0x22C5},   {u"lceil", 0x2308},
    {u"rceil", 0x2309},  {u"lfloor", 0x230A}, {u"rfloor", 0x230B}, {u"lang", 0x2329},   {u"rang", 0x232A},
    {u"loz", 0x25CA},    {u"spades", 0x2660}, {u"clubs", 0x2663},  {u"hearts", 0x2665}, {u"diams", 0x2666},
    {u"Alpha", 0x391},   {u"Beta", 0x392},    {u"Gamma", 0x393},   {u"Delta", 0x394},   {u"Epsilon", 0x395},
    {u"Zeta", 0x396},    {u"Eta", 0x397},     {u"Theta", 0x398},   {u"Iota", 0x399},    {u"Kappa", 0x39A},
    {u"Lambda", 0x39B},  {u"Mu", 0x39C},      {u"Nu", 0x39D},      {u"Xi", 0x39E},      {u"Omicron", 0x39F},
    {u"Pi", 0x3A0},      {u"Rho", 0x3A1},     {u"Sigma", 0x3A3},   {u"Tau", 0x3A4},     {u"Upsilon", 0x3A5},
    {u"Phi", 0x3A6},     {u"Chi", 0x3A7},     {u"Psi", 0x3A8},     {u"Omega", 0x3A9},   {u"alpha", 0x3B1},
    {u"beta", 0x3B2},    {u"gamma", 0x3B3},   {u"delta", 0x3B4},   {u"epsilon", 0x3B5}, {u"zeta", 0x3B6},
    {u"eta", 0x3B7},     {u"theta", 0x3B8},   {u"iota", 0x3B9},    {u"kappa", 0x3BA},   {u"lambda", 0x3BB},
    {u"mu", 0x3BC},      {u"nu", 0x3BD},      {u"xi", 0x3BE},      {u"omicron", 0x3BF}, {u"pi", 0x3C0},
    {u"rho", 0x3C1},     {u"sigmaf", 0x3C2},  {u"sigma", 0x3C3},   {u"tau", 0x3C4},     {u"upsilon", 0x3C5},
    {u"phi", 0x3C6},     {u"chi", 0x3C7},     {u"psi", 0x3C8},     {u"omega", 0x3C9},   {u"thetasym", 0x3D1},
    {u"upsih", 0x3D2},   {u"piv", 0x3D6}};

// Pages give numbers of code page 1252 for characters that have others.
constexpr char16_t from1252[] = {0x20AC, 0x81,   0x201A, 0x192,  0x201E, 0x2026, 0x2020, 0x2021,
                                 0x2C6,  0x2030, 0x160,  0x2039, 0x152,  0x8D,   0x17D,  0x8F,
                                 0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                 0x2DC,  0x2122, 0x161,  0x203A, 0x153,  0x9D,   0x17E,  0x178};

// 0 when it is none.
std::uint32_t NumberOf(std::u16string_view digits) {
    const bool isHex = digits.starts_with(u'x') || digits.starts_with(u'X');
    digits.remove_prefix(isHex ? 1 : 0);
    std::uint32_t number = 0;
    for (const char16_t digit : digits) {
        const unsigned value = UtilpDigitOf(digit), base = isHex ? 16 : 10;
        if (value >= base || (number = number * base + value) > 0x10FFFF)
            return 0;
    }
    return number >= 0x80 && number < 0xA0 ? from1252[number - 0x80] : number;
}

std::uint32_t CharacterOf(std::u16string_view name, const char16_t* end) {
    if (name.starts_with(u'#'))
        return NumberOf(name.substr(1));
    const auto found = std::ranges::find(references, name, &scReference::name);
    if (found != std::end(references))
        return found->unit;
    return name.size() <= longestReference - 2 ? UtilpNamedUnit(name, end) : 0;
}

} // namespace

std::u16string UtilpResolveReferences(std::u16string_view text) {
    std::u16string resolved;
    resolved.reserve(text.size());
    const char16_t* const end = text.data() + text.size();
    while (!text.empty()) {
        const std::size_t plain = std::min(text.find(u'&'), text.size());
        resolved += text.substr(0, plain);
        text.remove_prefix(plain);
        const std::size_t close = text.substr(0, 12).find(u';');
        const std::uint32_t character = close != text.npos ? CharacterOf(text.substr(1, close - 1), end) : 0;
        if (character >= 0x10000) {
            resolved += static_cast<char16_t>(0xD7C0 + (character >> 10));
            resolved += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
        } else if (character != 0) {
            resolved += static_cast<char16_t>(character);
        } else {
            resolved += text.substr(0, 1);
        }
        text.remove_prefix(character != 0 ? close + 1 : std::min<std::size_t>(1, text.size()));
    }
    return resolved;
}

} // namespace tvut
