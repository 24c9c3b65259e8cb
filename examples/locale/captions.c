/* Captions in their users' languages: each gets a font with the character set that its text needs. */
#include <tvut22/locale.h>

#include <stdio.h>

static LOGFONTW font_for(const wchar_t* caption) {
    LOGFONTW font = {0};
    font.lfHeight = -12;
    font.lfCharSet = (BYTE)UtilGetLikelyCharsetFromString(caption);
    return font;
}

int main(void) {
    static const struct {
        const char* language;
        const wchar_t* caption;
    } captions[] = {
        {"English", L"Report"},
        {"Greek", L"\x0391\x03BD\x03B1\x03C6\x03BF\x03C1\x03AC"},
        {"Russian", L"\x041E\x0442\x0447\x0451\x0442 2018"}, /* digits belong to no script */
        {"Hebrew", L"\x05D3\x05D5\x05D7"},
        {"Thai", L"\x0E23\x0E32\x0E22\x0E07\x0E32\x0E19"},
        {"Korean", L"\xBCF4\xACE0\xC11C"},
        {"Japanese", L"\x30EC\x30DD\x30FC\x30C8"},
    };
    size_t i;
    for (i = 0; i < sizeof captions / sizeof *captions; ++i)
        printf("%s: character set %d\n", captions[i].language, font_for(captions[i].caption).lfCharSet);
    return 0;
}
