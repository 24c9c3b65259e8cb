// The system draws frames, scroll bars and buttons dark where it is told to and can; it is asked through
// functions that older systems do not have, so they are looked up.
#include "theme.h"

#include "system_function.h"

namespace tool::logpan {

namespace {

constexpr scCellColours darkLines{RGB(220, 220, 220), RGB(30, 30, 30)};
constexpr scCellColours darkControls{RGB(225, 225, 225), RGB(45, 45, 45)};

// Light, then dark.
constexpr scCellColours severities[][2] = {
    {{RGB(122, 74, 0), RGB(255, 246, 219)}, {RGB(255, 205, 110), RGB(62, 48, 18)}}, // warning
    {{RGB(168, 0, 28), RGB(253, 233, 235)}, {RGB(255, 150, 150), RGB(74, 26, 30)}}, // error
};
constexpr scCellColours colours[colourCount][2] = {
    {{RGB(110, 0, 0), RGB(255, 205, 205)}, {RGB(255, 215, 215), RGB(110, 30, 30)}},  // red
    {{RGB(96, 48, 0), RGB(255, 222, 180)}, {RGB(255, 225, 195), RGB(112, 62, 14)}},  // orange
    {{RGB(72, 62, 0), RGB(255, 247, 153)}, {RGB(255, 246, 190), RGB(92, 84, 10)}},   // yellow
    {{RGB(0, 70, 16), RGB(200, 240, 204)}, {RGB(205, 250, 210), RGB(20, 84, 36)}},   // green
    {{RGB(0, 66, 74), RGB(196, 241, 246)}, {RGB(200, 246, 250), RGB(10, 82, 92)}},   // cyan
    {{RGB(0, 38, 110), RGB(208, 225, 255)}, {RGB(212, 228, 255), RGB(28, 56, 120)}}, // blue
    {{RGB(74, 0, 100), RGB(236, 212, 250)}, {RGB(240, 220, 255), RGB(78, 36, 104)}}, // violet
    {{RGB(60, 60, 60), RGB(226, 226, 226)}, {RGB(225, 225, 225), RGB(82, 82, 82)}},  // grey
};

bool IsHighContrast() {
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof contrast;
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) &&
           (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

bool SystemIsDark() {
    DWORD light = 1;
    DWORD size = sizeof light;
    RegGetValueW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize",
                 L"AppsUseLightTheme", RRF_RT_REG_DWORD, nullptr, &light, &size);
    return light == 0;
}

} // namespace

void clsTheme::Choose(ThemeChoice choice) {
    choice_ = choice;
    plain_ = IsHighContrast();
    dark_ = !plain_ && (choice == ThemeChoice::system ? SystemIsDark() : choice == ThemeChoice::dark);
    background_.reset(CreateSolidBrush(Controls().background));
}

scCellColours clsTheme::Lines() const {
    return dark_ ? darkLines : scCellColours{GetSysColor(COLOR_WINDOWTEXT), GetSysColor(COLOR_WINDOW)};
}

scCellColours clsTheme::Controls() const {
    return dark_ ? darkControls : scCellColours{GetSysColor(COLOR_BTNTEXT), GetSysColor(COLOR_BTNFACE)};
}

scCellColours clsTheme::Of(Severity severity) const {
    return severities[static_cast<std::size_t>(severity) - 1][dark_];
}

scCellColours clsTheme::Of(Colour colour) const {
    return colours[static_cast<std::size_t>(colour)][dark_];
}

void clsTheme::ApplyToFrame(HWND window) const {
    constexpr DWORD useDarkFrame = 20;
    using Set = HRESULT(WINAPI*)(HWND, DWORD, const void*, DWORD);
    static const Set set = SystemFunction<Set>(L"\\dwmapi.dll", "DwmSetWindowAttribute");
    const BOOL dark = dark_;
    if (set != nullptr)
        set(window, useDarkFrame, &dark, sizeof dark);
}

void clsTheme::ApplyToControl(HWND control, bool paintsItself) const {
    using Set = HRESULT(WINAPI*)(HWND, const wchar_t*, const wchar_t*);
    static const Set set = SystemFunction<Set>(L"\\uxtheme.dll", "SetWindowTheme");
    if (set != nullptr)
        set(control,
            !dark_         ? nullptr
            : paintsItself ? L""
                           : L"DarkMode_Explorer",
            dark_ && paintsItself ? L"" : nullptr);
    InvalidateRect(control, nullptr, TRUE);
}

} // namespace tool::logpan
